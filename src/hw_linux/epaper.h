// SPDX-License-Identifier: MIT
// A model of the panel: the grey that each pixel shows, and the residue of what it showed before.
// An update runs for the time of its waveform. Times are those of the boot clock; the same updates
// at the same times give the same pixels.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "hw_linux/plane.h"
#include "hw_linux/waveform.h"

namespace hw {

inline constexpr int64_t no_time = INT64_MAX;

class Epaper {
  public:
    // A panel that shows this, without any residue.
    explicit Epaper(const Plane &shown);

    // Takes in an update of an area of the panel, which begins at start_us: not before the present
    // time of the model, and not before the end of an update that touches it. Its rows follow.
    void add(int seq, const irect &area, const Waveform &waveform, int64_t start_us);
    // A row of the update that was added last, from the top: the greys that its pixels were asked
    // to show before, and those that it asks for.
    void add_row(int y, const uint8_t *former, const uint8_t *grey);

    // Lets time pass.
    void advance(int64_t now_us);
    // Ends all updates at once.
    void finish() { advance(no_time); }
    bool is_moving() const { return !updates_.empty(); }
    // When the next update ends; no_time for none.
    int64_t next_end_us() const;

    Plane &shown() { return shown_; }
    // The part of the panel that has changed since this was asked last.
    irect take_moved() { return std::exchange(moved_, {}); }
    // The next update that has ended, in the order of their ends.
    std::optional<int> take_finished();
    // The mean over an area when all updates have ended, in hundredths of a grey of 255.
    int residue(const irect &area) const;
    // The canvas was turned, while no update was running.
    void turn(int before, int after);

  private:
    struct Update {
        int seq;
        irect area;
        const Waveform *waveform;
        int64_t start_us;
        std::vector<uint8_t> target, former; // former: empty until it begins

        int64_t end_us() const { return start_us + int64_t{waveform->ms} * 1000; }
        // When something is to be done: it begins, or it ends.
        int64_t next_us() const { return former.empty() ? start_us : end_us(); }
    };

    void begin(Update &update);
    void end(const Update &update);
    void draw(const Update &update, int64_t now_us);

    Plane shown_, residue_;
    std::vector<Update> updates_;
    irect moved_{};
    std::vector<int> finished_; // has room for all that run
};

} // namespace hw
