// SPDX-License-Identifier: MIT
// Saves what a person sees as a film: numbered pictures at even times (KELVANE_FILM=directory:fps).
#pragma once

#include <cstdint>
#include <string>

namespace hw {

class Film {
  public:
    // True when the variable is not set, or the directory is there; otherwise says what is wrong.
    // Numbered pictures of an earlier film are removed from it, and nothing else.
    bool open(int64_t now_us);
    // When the next picture is due; INT64_MAX while nothing moves, and when there is no film.
    int64_t next_us() const { return next_us_; }
    int64_t picture_us() const { return picture_us_; }
    // What a person sees changes, or begins to. Where nothing moves for longer than a second the
    // film leaves the rest of that time out.
    void note_change(int64_t now_us);
    // Saves the picture that is due. False after saying what is wrong; then the film has ended.
    bool take();

  private:
    std::string directory_;
    int64_t picture_us_ = 0; // from one to the next
    int64_t next_us_ = INT64_MAX;
    int64_t last_change_us_ = 0;
    int count_ = 0;
};

} // namespace hw
