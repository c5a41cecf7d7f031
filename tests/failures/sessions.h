// SPDX-License-Identifier: MIT
// What applications do, area by area, to be done while memory or the system fails.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace failures {

class Session {
  public:
    Session() = default;
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    virtual ~Session() = default;

    // Does everything once, without an allocation of its own. False when something did not come
    // out as it does when nothing fails.
    virtual bool run() = 0;
    // What was lost that must be there whatever failed; empty when nothing was.
    virtual std::string loss() const;

  protected:
    // From now on that file has the content of this moment.
    void keep(const char *path);

  private:
    struct Kept {
        std::string path, content;
    };
    std::vector<Kept> kept_;
};

struct Area {
    const char *name;
    std::unique_ptr<Session> (*make)();
    bool bears_short_memory = true; // false where a library below ours does not
};

template <class Made>
std::unique_ptr<Session> make() {
    return std::make_unique<Made>();
}

// Each makes a working directory, and maybe a screen, of its own.
extern const std::span<const Area> files_areas, look_areas, picture_areas, book_areas, device_areas,
    dictionary_areas, settings_areas;
std::vector<Area> areas();

// The long form of a sweep lets each step fail. The short one lets the first 16 of them fail, and
// then fewer and fewer.
long next_step(long step);

// Descriptors of the process that are open.
long open_descriptors();

} // namespace failures
