// SPDX-License-Identifier: MIT
// Moves pixels from one grey to another, as their updates have it.
#include "hw_linux/epaper.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "hw_linux/area.h"
#include "hw_linux/display_mode.h"

namespace hw {
namespace {

constexpr uint8_t no_residue = 128; // less is darker, more is lighter

// Where an update is: between two pictures, of which either may be all black or all white.
enum class Picture { former, black, white, target };
struct Phase {
    Picture from, to;
    unsigned weight; // of the second one, of 256
};

// Without a flash there is one leg, from the former picture to the target. Each flash puts a black
// and a white one between them.
Picture station(int index, int legs) {
    if (index == 0) return Picture::former;
    if (index == legs) return Picture::target;
    return index % 2 == 1 ? Picture::black : Picture::white;
}

Phase phase_of(const Waveform &waveform, int64_t elapsed_us) {
    const int64_t frame = elapsed_us * panel_frames_a_second / 1'000'000;
    const int64_t frames = int64_t{waveform.ms} * panel_frames_a_second / 1000;
    const int legs = 2 * waveform.flashes + 1;
    const int64_t way = std::min(frame, frames) * 256 * legs / frames;
    const int leg = std::min(static_cast<int>(way / 256), legs - 1);
    return {station(leg, legs), station(leg + 1, legs), static_cast<unsigned>(way - 256 * leg)};
}

const uint8_t *row_of(Picture picture, const uint8_t *former, const uint8_t *target) {
    static constexpr std::array<uint8_t, longest_side> black{};
    static constexpr auto white = [] {
        std::array<uint8_t, longest_side> row{};
        row.fill(255);
        return row;
    }();
    switch (picture) {
    case Picture::former:
        return former;
    case Picture::black:
        return black.data();
    case Picture::white:
        return white.data();
    case Picture::target:
        return target;
    }
    return target;
}

void mix(const uint8_t *from, const uint8_t *to, uint8_t *row, int count, unsigned weight) {
    const auto other = static_cast<uint16_t>(weight), one = static_cast<uint16_t>(256 - weight);
    for (int i = 0; i < count; ++i)
        row[i] = static_cast<uint8_t>(static_cast<uint16_t>(from[i] * one + to[i] * other) >> 8);
}

// What is left of a change without a flash lies on the side of the former grey, on top of most of
// what was left there before. A pixel that does not change keeps its residue.
int residue_after(const Waveform &waveform, int residue, int former, int grey) {
    if (waveform.flashes > 0) return 0;
    if (former == grey) return residue;
    const int way = std::abs(former - grey);
    const int left =
        (std::abs(residue) * older_residue_percent + way * waveform.residue_percent) / 100;
    return former > grey ? left : -left;
}

constexpr bool fits_in_a_byte(const Waveform &waveform) {
    return waveform.residue_percent * 255 / (100 - older_residue_percent) < no_residue;
}
static_assert(std::all_of(std::begin(waveforms), std::end(waveforms), fits_in_a_byte));

} // namespace

Epaper::Epaper(const Plane &shown)
    : shown_(shown), residue_(shown.width, shown.height, no_residue) {}

void Epaper::add(int seq, const irect &area, const Waveform &waveform, int64_t start_us) {
    Update update{seq, area, &waveform, start_us, {}, {}};
    const size_t pixels = static_cast<size_t>(area.w) * static_cast<size_t>(area.h);
    update.target.resize(pixels);
    update.former.reserve(pixels); // so that time passes without a need of memory
    finished_.reserve(finished_.size() + updates_.size() + 1);
    updates_.push_back(std::move(update));
}

void Epaper::add_row(int y, const uint8_t *former, const uint8_t *grey) {
    Update &update = updates_.back();
    const int width = update.area.w;
    uint8_t *residue = residue_.at(update.area.x, y);
    uint8_t *target = update.target.data() + int64_t{y - update.area.y} * width;
    for (int i = 0; i < width; ++i) {
        const int left =
            residue_after(*update.waveform, residue[i] - no_residue, former[i], grey[i]);
        residue[i] = static_cast<uint8_t>(left + no_residue);
        target[i] = static_cast<uint8_t>(std::clamp(grey[i] + left, 0, 255));
    }
}

void Epaper::begin(Update &update) {
    const irect &area = update.area;
    for (int y = area.y; y < area.y + area.h; ++y)
        update.former.insert(update.former.end(), shown_.at(area.x, y),
                             shown_.at(area.x, y) + area.w);
}

void Epaper::end(const Update &update) {
    const irect &area = update.area;
    for (int i = 0; i < area.h; ++i)
        std::memcpy(shown_.at(area.x, area.y + i), update.target.data() + int64_t{i} * area.w,
                    static_cast<size_t>(area.w));
    moved_ = joined(moved_, area);
    finished_.push_back(update.seq);
}

void Epaper::draw(const Update &update, int64_t now_us) {
    const Phase phase = phase_of(*update.waveform, now_us - update.start_us);
    const irect &area = update.area;
    for (int i = 0; i < area.h; ++i) {
        const int64_t row = int64_t{i} * area.w;
        const uint8_t *former = update.former.data() + row, *target = update.target.data() + row;
        mix(row_of(phase.from, former, target), row_of(phase.to, former, target),
            shown_.at(area.x, area.y + i), area.w, phase.weight);
    }
    moved_ = joined(moved_, area);
}

// An update that begins takes what those that ended before it have left.
void Epaper::advance(int64_t now_us) {
    for (;;) {
        const auto next = std::min_element(
            updates_.begin(), updates_.end(),
            [](const Update &a, const Update &b) { return a.next_us() < b.next_us(); });
        if (next == updates_.end() || next->next_us() > now_us) break;
        if (next->former.empty()) {
            begin(*next);
        } else {
            end(*next);
            updates_.erase(next);
        }
    }
    for (const Update &update : updates_)
        if (!update.former.empty()) draw(update, now_us);
}

int64_t Epaper::next_end_us() const {
    int64_t first = no_time;
    for (const Update &update : updates_) first = std::min(first, update.end_us());
    return first;
}

std::optional<int> Epaper::take_finished() {
    if (finished_.empty()) return std::nullopt;
    const int seq = finished_.front();
    finished_.erase(finished_.begin());
    return seq;
}

int Epaper::residue(const irect &area) const {
    int64_t sum = 0;
    for (int y = area.y; y < area.y + area.h; ++y)
        for (const uint8_t *p = residue_.at(area.x, y), *past = p + area.w; p < past; ++p)
            sum += std::abs(*p - no_residue);
    return is_empty(area) ? 0 : static_cast<int>(sum * 100 / (int64_t{area.w} * area.h));
}

void Epaper::turn(int before, int after) {
    shown_ = turned(shown_, before, after, 255);
    residue_ = turned(residue_, before, after, no_residue);
}

} // namespace hw
