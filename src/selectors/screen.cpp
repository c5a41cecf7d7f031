// SPDX-License-Identifier: MIT
// Opens screens over each other, hands events to the top one, and closes them.
#include "selectors/screen.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "ground/guard.h"
#include "internal.h"
#include "kelvane/panel.h"
#include "kelvane/updates.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "runtime/queue.h"

namespace selectors {

void close_top();
bool dispatch(Screen &screen, int type, int par1, int par2);

namespace {

constexpr size_t most_open = 8;
constexpr int first_repeat_ms = 750, next_repeat_ms = 240;

std::vector<std::shared_ptr<Screen>> screens;
int last_number = 0;
int unheard = 0; // events that were queued for screens that are gone

// But for the status panel.
bool is_whole_screen(const irect &r) {
    return r.w >= ScreenWidth() && r.h >= ScreenHeight() - PanelHeight();
}

int screen_handler(int type, int par1, int par2) {
    if (screens.empty()) return 1;
    if (unheard > 0) {
        unheard--;
        return 1;
    }
    const std::shared_ptr<Screen> top = screens.back();
    return ground::guarded(1, [&] { return dispatch(*top, type, par1, par2) ? 1 : 0; });
}

} // namespace

bool Screen::is_on_top() const {
    return !screens.empty() && screens.back().get() == this && GetEventHandler() == screen_handler;
}

bool Screen::is_current() const {
    return is_on_top() && !is_outdated();
}

bool Screen::is_open() const {
    return std::any_of(screens.begin(), screens.end(),
                       [this](const auto &s) { return s.get() == this; });
}

void Screen::place() {
    Surroundings now;
    covered_ = lay_out();
    laid_out_for_ = std::move(now);
}

// To where it belongs now: it keeps what it covers there. After a turn there is nothing to keep,
// as all that lies beneath was drawn for another orientation.
void Screen::move() {
    const bool is_kept = !is_turned();
    if (!is_kept) {
        const raster::ScreenScope screen;
        ClearScreen();
    }
    place();
    if (is_kept && taken_.under.restore()) taken_.under.save(covered_);
}

// A screen opens and closes with a flash, a box without.
void Screen::update() const {
    if (!is_whole_screen(covered_)) return modal::update(raster::Box(covered_));
    WaitForUpdateComplete();
    FullUpdate();
}

void Screen::show() {
    is_stale_ = !is_on_top();
    if (is_stale_) return;
    const irect before = covered_;
    const bool has_turned = is_turned();
    if (is_outdated()) move();
    draw();
    if (!has_turned) return modal::update(raster::Box(raster::joined(before, covered_)));
    WaitForUpdateComplete();
    FullUpdate();
}

bool dispatch(Screen &screen, int type, int par1, int par2) {
    if (type == EVT_ORIENTATION && screen.turning_ == Turning::with_device) SetOrientation(par1);
    const bool is_turned = screen.is_turned();
    const bool is_due = type == EVT_SHOW || (type == EVT_RESTORE && screen.is_stale_) ||
                        (type != EVT_HIDE && screen.is_outdated());
    if (is_due) ground::guarded([&] { screen.show(); }); // without memory it still closes
    if (type == EVT_SHOW) SetKeyboardRate(first_repeat_ms, next_repeat_ms);
    if (modal::is_system_event(type)) return true;
    return screen.handle(type, par1, par2) || is_turned || modal::is_pointer_event(type);
}

int open(const std::shared_ptr<Screen> &screen) {
    if (!kvstate.framebuffer || screens.size() >= most_open) return 0;
    screen->place();
    screens.push_back(screen);
    if (screens.size() == 1) unheard = queue_count(screen_handler);
    screen->number_ = ++last_number;
    screen->taken_.under.save(screen->covered_);
    screen->taken_.take_input(screen_handler, 0, close_top);
    SetKeyboardRate(first_repeat_ms, next_repeat_ms);
    ground::guarded([&] { screen->draw(); }); // without memory it is open all the same
    screen->update();
    return screen->number_;
}

std::shared_ptr<Screen> find(int number) {
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [&](const auto &s) { return s->number() == number; });
    return found != screens.end() ? *found : nullptr;
}

// Whoever has the input next draws what could not be put back.
void close_top() {
    if (screens.empty()) return;
    const std::shared_ptr<Screen> top = screens.back();
    top->taken_.close_above();
    if (screens.empty() || screens.back() != top) return;
    screens.pop_back();
    if (top->taken_.under.restore())
        top->update();
    else
        SendEvent(top->taken_.previous(), EVT_SHOW, 0, 0);
    top->taken_.give_input_back();
}

void close_with_above(int number) {
    const std::shared_ptr<Screen> wanted = find(number);
    constexpr size_t most_closed = 64; // callbacks may open what was closed again
    for (size_t i = 0; wanted && wanted->is_open() && i < most_closed; ++i) close_top();
}

void reset() {
    screens.clear();
    unheard = 0;
}

} // namespace selectors
