// SPDX-License-Identifier: MIT
// Numbers the pictures and keeps their times.
#include "hw_linux/film.h"

#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "hw_linux/picture.h"
#include "hw_linux/waveform.h"

namespace hw {
namespace {

constexpr int64_t longest_rest_us = 1'000'000;

} // namespace

bool Film::open(int64_t now_us) {
    *this = {};
    const char *setting = std::getenv("KELVANE_FILM");
    const std::string_view text = setting ? setting : "";
    if (text.empty()) return true;
    const size_t colon = text.rfind(':');
    const char *end = text.data() + text.size();
    int rate = 0;
    const bool has_rate = colon != std::string_view::npos && colon > 0 &&
                          std::from_chars(text.data() + colon + 1, end, rate).ptr == end;
    if (!has_rate || rate < 1 || rate > panel_frames_a_second) {
        std::fprintf(stderr, "KELVANE_FILM=%s: directory:fps is meant, fps from 1 to %d\n", setting,
                     panel_frames_a_second);
        return false;
    }
    directory_ = text.substr(0, colon);
    picture_us_ = 1'000'000 / rate;
    std::error_code error;
    std::filesystem::create_directories(directory_, error);
    if (error)
        std::fprintf(stderr, "KELVANE_FILM=%s: %s\n", setting, error.message().c_str());
    else
        note_change(now_us);
    return !error;
}

void Film::note_change(int64_t now_us) {
    if (picture_us_ == 0) return;
    last_change_us_ = now_us;
    if (next_us_ == INT64_MAX) next_us_ = now_us;
}

bool Film::take() {
    char file[PATH_MAX];
    std::snprintf(file, sizeof file, "%s/%06d.png", directory_.c_str(), ++count_);
    if (!save_picture(file, "KELVANE_FILM")) {
        *this = {};
        return false;
    }
    const bool rests = next_us_ - last_change_us_ >= longest_rest_us;
    next_us_ = rests ? INT64_MAX : next_us_ + picture_us_;
    return true;
}

} // namespace hw
