// SPDX-License-Identifier: MIT
// Keeps what updates have asked for, the panel's model where there is one, and the film.
#include "hw_linux/shown.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

#include "ground/guard.h"
#include "hw_linux/area.h"
#include "hw_linux/change.h"
#include "hw_linux/device.h"
#include "hw_linux/epaper.h"
#include "hw_linux/film.h"
#include "hw_linux/plane.h"
#include "hw_linux/schedule.h"
#include "hw_linux/screen.h"

namespace hw {
namespace {

constexpr int64_t watched_picture_us = 30'000; // leaves the application most of the time
constexpr uint8_t white = 255;

struct Shown {
    std::optional<Plane> asked; // the greys that updates asked for, in a window
    std::optional<Plane>
        levels; // the same in the levels of their modes, for a trace or for e-paper
    std::optional<Epaper> epaper;
    Schedule schedule;
    Film film;
    int64_t next_picture_us = 0; // in a window
};
Shown shown;

std::optional<bool> wants_epaper() {
    const char *name = std::getenv("KELVANE_PANEL");
    if (!name || !*name || std::strcmp(name, "plain") == 0) return false;
    if (std::strcmp(name, "epaper") == 0) return true;
    std::fprintf(stderr, "KELVANE_PANEL=%s: no such panel (plain or epaper)\n", name);
    return std::nullopt;
}

void paint(const icanvas &canvas, const irect &area) {
    eink_waveform(panel_view(), canvas, area, device()->pixels());
    shown.film.note_change(boot_time_us());
}

void paint_whole(const icanvas &canvas) {
    paint(canvas, {0, 0, canvas.width, canvas.height, 0});
}

// Paints what has moved on the panel until then.
void step_to(int64_t us) {
    if (!shown.epaper) return;
    shown.epaper->advance(us);
    const irect moved = shown.epaper->take_moved();
    if (is_empty(moved)) return;
    eink_waveform(panel_view(), as_canvas(shown.epaper->shown()), moved, device()->pixels());
    device()->present();
    shown.film.note_change(us);
}

// The pictures of updates that have ended.
void save_finished() {
    while (const std::optional<int> seq = shown.epaper->take_finished()) save_frame(*seq);
}

// Updates that ended and pictures of a film that were due, in the order of their times.
void catch_up(int64_t until_us) {
    for (;;) {
        const int64_t end_us = shown.epaper ? shown.epaper->next_end_us() : no_time;
        const int64_t at_us = std::min(end_us, shown.film.next_us());
        if (at_us > until_us) return;
        step_to(at_us);
        if (end_us == at_us) save_finished();
        if (shown.film.next_us() == at_us && !shown.film.take()) end_process(1);
    }
}

// Ends at once what runs.
void settle() {
    shown.epaper->finish();
    step_to(boot_time_us());
    save_finished();
    shown.schedule.clear();
}

void show_plainly() {
    if (shown.epaper) settle();
    shown.epaper.reset();
    paint_whole(shown.asked ? as_canvas(*shown.asked) : *framebuffer());
}

void show_as_epaper() {
    if (!shown.levels) shown.levels = *shown.asked;
    std::vector<uint8_t> &greys = shown.levels->bytes;
    to_levels(greys.data(), greys.data(), static_cast<int>(greys.size()), panel_levels);
    shown.epaper.emplace(*shown.levels);
    paint_whole(as_canvas(shown.epaper->shown()));
}

// What is short of memory goes on without the model.
void rescue() {
    std::fputs("out of memory: the panel is shown plainly\n", stderr);
    show_plainly();
}

// Time passes until the panel's own, and a window lives on, whose user may leave the model. Other
// tasks and controllers are not heard meanwhile, so what they say must not end the pauses.
void wait_until(int64_t (Schedule::*time_us)() const) {
    while (device() && shown.epaper) {
        const int64_t left_us = (shown.schedule.*time_us)() - boot_time_us();
        if (left_us <= 0) return;
        device()->pause(device()->is_watched ? std::min(left_us, watched_picture_us) : left_us);
        let_work();
    }
}

// Goes through the rows of an update of a part of the screen. Only the model, and modes of few
// greys, need the greys as they are shown; a row that is the same as before is nothing new to a
// trace.
void take_rows(UpdateRecord &update, const irect &area, const Waveform &waveform) {
    const icanvas &canvas = *framebuffer();
    const bool is_exact = !shown.epaper && waveform.levels == panel_levels;
    const auto width = static_cast<size_t>(area.w);
    Change change;
    Greys greys;
    std::array<uint8_t, longest_side> row;
    for (int y = area.y; y < area.y + area.h; ++y) {
        const uint8_t *pixels = canvas.addr + int64_t{y} * canvas.scanline + area.x;
        uint8_t *former = shown.levels->at(area.x, y);
        greys.add_row(pixels, area.w);
        if (is_exact && std::memcmp(pixels, former, width) == 0) continue;
        if (!is_exact) to_levels(pixels, row.data(), area.w, waveform.levels);
        const uint8_t *now = is_exact ? pixels : row.data();
        change.add_row(area.x, y, former, now, area.w);
        if (shown.epaper) shown.epaper->add_row(y, former, now);
        std::memcpy(former, now, width);
    }
    update.changed = change.pixels();
    update.changed_area = change.area();
    update.greys = greys.count();
}

void keep_asked(const irect &area) {
    const icanvas &canvas = *framebuffer();
    for (int y = area.y; y < area.y + area.h; ++y)
        std::memcpy(shown.asked->at(area.x, y), canvas.addr + int64_t{y} * canvas.scanline + area.x,
                    static_cast<size_t>(area.w));
}

void take_in(UpdateRecord &update, const irect &area) {
    const Waveform &waveform = waveform_of(update.kind, update.mode);
    const int64_t now_us = boot_time_us();
    const int64_t start_us = shown.schedule.add(area, now_us, int64_t{waveform.ms} * 1000);
    if (shown.epaper) shown.epaper->add(update.seq, area, waveform, start_us);
    take_rows(update, area, waveform);
    update.wait_ms = start_us / 1000 - update.time_ms;
    update.panel_ms = waveform.ms;
    if (shown.epaper) update.residue = shown.epaper->residue(area);
}

} // namespace

bool open_shown() {
    const std::optional<bool> epaper = wants_epaper();
    if (!epaper || !shown.film.open(boot_time_us())) return false;
    const icanvas &canvas = *framebuffer();
    if (device()->is_watched) shown.asked.emplace(canvas.width, canvas.height, white);
    if (*epaper || is_traced()) shown.levels.emplace(canvas.width, canvas.height, white);
    if (*epaper) shown.epaper.emplace(*shown.levels);
    return true;
}

// What still runs comes to its end, for the pictures of it.
void close_shown() {
    if (device()) {
        const int64_t now_us = boot_time_us();
        const int64_t end_us = std::max(now_us, shown.epaper ? shown.schedule.idle_us() : now_us);
        catch_up(end_us + shown.film.picture_us());
    }
    shown = {};
}

void switch_panel() {
    if (!shown.asked) return;
    catch_up(boot_time_us());
    if (shown.epaper)
        show_plainly();
    else
        ground::guarded_or(show_as_epaper, rescue);
    device()->present();
}

bool begin_update(UpdateRecord &update) {
    wait_until(&Schedule::free_us);
    if (!device()) return false;
    catch_up(boot_time_us());
    const icanvas &canvas = *framebuffer();
    const irect area =
        clipped({update.x, update.y, update.w, update.h, 0}, canvas.width, canvas.height);
    if (is_empty(area)) return false;
    if (shown.asked) keep_asked(area);
    if (shown.levels) ground::guarded_or([&] { take_in(update, area); }, rescue);
    if (shown.epaper) shown.film.note_change(boot_time_us());
    return shown.epaper.has_value();
}

void paint_update(const irect &area) {
    if (shown.epaper) return play_panel();
    paint(*framebuffer(), area);
}

void repeat_update() {
    if (shown.epaper) return play_panel();
    shown.film.note_change(boot_time_us());
}

void play_panel() {
    if (!device()) return;
    const int64_t now_us = boot_time_us();
    catch_up(now_us);
    if (!device()->is_watched || !shown.epaper || !shown.epaper->is_moving()) return;
    if (now_us < shown.next_picture_us) return;
    shown.next_picture_us = now_us + watched_picture_us;
    step_to(now_us);
}

void refresh_pixels() {
    if (!device()) return;
    catch_up(boot_time_us());
    step_to(boot_time_us());
}

bool panel_is_busy() {
    return shown.epaper && boot_time_us() < shown.schedule.idle_us();
}

// Without the model nobody waits: by now the panel that the trace tells of would rest.
void wait_for_panel() {
    if (!shown.epaper) return shown.schedule.clear();
    wait_until(&Schedule::idle_us);
}

void prepare_turn() {
    catch_up(boot_time_us());
    if (shown.epaper) settle();
}

void turn_shown(int before, int after) {
    if (before == after) return;
    shown.schedule.clear();
    const auto turn = [=] {
        for (std::optional<Plane> *plane : {&shown.asked, &shown.levels})
            if (*plane) *plane = turned(**plane, before, after, white);
        if (shown.epaper) shown.epaper->turn(before, after);
    };
    ground::guarded_or(turn, [] {
        shown.asked.reset();
        shown.levels.reset();
        rescue();
    });
}

} // namespace hw
