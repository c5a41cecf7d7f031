// SPDX-License-Identifier: MIT
// Night: areas of the screen on their way to the panel, turned but for pictures.
#pragma once

#include <utility>

#include "kelvane/canvas.h"
#include "raster/clip.h"

namespace night {

// The screen as the panel is to show it, for as long as it lives: the device has read the
// framebuffer when an update returns. By day, and without a screen, it is as it is.
class Turned {
  public:
    explicit Turned(const raster::Area &area) : area_(area) { turn(); }
    ~Turned() { turn(); }
    Turned(const Turned &) = delete;
    Turned &operator=(const Turned &) = delete;

  private:
    void turn() const;
    raster::Area area_;
};

// What is drawn above pictures, an area of the screen: there are none below it for as long as it
// lives, whichever the application says meanwhile.
class Cover {
  public:
    Cover() = default;
    // Without memory what it covers stays pictures.
    explicit Cover(const raster::Area &area);
    ~Cover() { drop(); }
    Cover(Cover &&other) noexcept : id_(std::exchange(other.id_, 0)) {}
    Cover &operator=(Cover &&other) noexcept {
        std::swap(id_, other.id_);
        return *this;
    }
    Cover(const Cover &) = delete;
    Cover &operator=(const Cover &) = delete;

    void drop();
    // Goes, but leaves what it shows: what it covers are pictures no more.
    void stay();

  private:
    unsigned id_ = 0; // 0: none
};

// A picture has been drawn, which stays as it is: on the last cover that it lies within, until that
// goes; on the application's page until that says what its pictures are.
void stays(const irect &area);
// Something else has been drawn there, which turns.
void turns(const irect &area);

// It is day, as when the screen opens.
void reset();

} // namespace night
