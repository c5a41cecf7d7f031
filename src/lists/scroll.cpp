// SPDX-License-Identifier: MIT
// Goes through content by pages: on e-paper nothing follows a finger.
#include "lists/scroll.h"

#include <algorithm>
#include <utility>

#include "internal.h"
#include "kelvane/events.h"
#include "lists/capture.h"
#include "lists/drawing.h"
#include "lists/keys.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace lists {
namespace {

constexpr int bar_w = 4;         // in units: the column beside the content
constexpr int bar_target_w = 8;  // what a finger may touch
constexpr int least_thumb_w = 5; // pixels, as in menus
constexpr int most_numbers = 1 << 20;
int last_number = 0;

} // namespace

ScrollArea::ScrollArea(kv_scrollproc drawer, void *context)
    : draw_(drawer), context_(context), number_(last_number = last_number % most_numbers + 1) {}

void ScrollArea::set_place(const irect &place) {
    place_ = raster::to_rect(raster::Box(place));
    if (kvstate.framebuffer)
        place_ = raster::shared(place_, {0, 0, ScreenWidth(), ScreenHeight(), 0});
    hand_.state = 0;
    set_top(top_);
}

void ScrollArea::set_content(int height, int line) {
    height_ = std::max(height, 0);
    line_ = std::max(line, 1);
    set_top(top_);
}

int ScrollArea::sight_h() const {
    const bool is_cut = is_scrolled() && line_ > 1 && place_.h >= line_;
    return is_cut ? place_.h / line_ * line_ : std::max(place_.h, 0);
}

// A part of a line may follow the end of the content, but some of that is always in sight.
int ScrollArea::last_top() const {
    const int64_t beyond = std::max(int64_t{height_} - sight_h(), int64_t{0});
    const int64_t last_line = int64_t{std::max(height_ - 1, 0)} / line_ * line_;
    return static_cast<int>(std::min((beyond + line_ - 1) / line_ * line_, last_line));
}

void ScrollArea::set_top(int64_t top) {
    top_ = static_cast<int>(std::clamp<int64_t>(top, 0, last_top()));
    top_ -= top_ % line_;
}

int ScrollArea::content_w() const {
    const int unit = kvstate.framebuffer ? look()->unit : 0;
    return std::max(place_.w - bar_w * unit, 0);
}

int ScrollArea::page(int parts) const {
    return std::max(place_.h / parts / line_ * line_, line_);
}

irect ScrollArea::bar() const {
    const int w = bar_w * look_->unit;
    return {look_->is_rtl ? place_.x : place_.x + place_.w - w, place_.y, w, place_.h, 0};
}

irect ScrollArea::thumb() const {
    const irect b = bar();
    const int64_t part = int64_t{b.h} * b.h / std::max(height_, 1);
    const int h =
        static_cast<int>(std::min<int64_t>(std::max<int64_t>(part, 4 * look_->unit), b.h));
    const auto y = int64_t{b.h - h} * top_ / std::max(last_top(), 1);
    const int w = std::max(least_thumb_w, 3 * look_->hairline);
    return {b.x + (b.w - w) / 2, b.y + static_cast<int>(y), w, h, 0};
}

void ScrollArea::draw_bar() const {
    if (!is_scrolled()) return;
    const irect b = bar(), t = thumb();
    FillArea(b.x + (b.w - look_->hairline) / 2, b.y, look_->hairline, b.h, BLACK);
    FillAreaRect(&t, BLACK);
}

void ScrollArea::draw() {
    if (!kvstate.framebuffer || is_drawing_ || place_.w < 1 || place_.h < 1) return;
    look_ = look();
    const Drawing drawing(is_drawing_);
    const raster::ScreenScope screen;
    const text::FontScope font;
    SetClipRect(&place_);
    FillAreaRect(&place_, WHITE);
    draw_bar();
    const int w = content_w();
    const irect area{look_->is_rtl ? place_.x + place_.w - w : place_.x, place_.y, w, sight_h(), 0};
    SetClipRect(&area);
    if (draw_ && height_ > 0) draw_(&area, top_, context_);
}

void ScrollArea::go_to(int64_t top) {
    const int before = top_;
    set_top(top);
    if (top_ == before) return;
    draw();
    modal::update(raster::Box(place_));
}

bool ScrollArea::key(int code, bool is_held) {
    const int half = page(is_held ? 1 : 2);
    switch (mirrored_key(*look_, code)) {
    case KEY_UP:
        go_to(int64_t{top_} - half);
        return true;
    case KEY_DOWN:
        go_to(int64_t{top_} + half);
        return true;
    case KEY_LEFT:
    case KEY_PREV:
    case KEY_PREV2:
        go_to(int64_t{top_} - page(1));
        return true;
    case KEY_RIGHT:
    case KEY_NEXT:
    case KEY_NEXT2:
        go_to(int64_t{top_} + page(1));
        return true;
    default:
        return false;
    }
}

bool ScrollArea::is_on_bar(int x, int y) const {
    const int w = bar_target_w * look_->unit;
    const int left = look_->is_rtl ? place_.x : place_.x + place_.w - w;
    return raster::contains({left, place_.y, w, place_.h}, x, y);
}

// The middle of the thumb goes to where the finger is.
void ScrollArea::jump(int y) {
    const irect b = bar(), t = thumb();
    const int64_t room = std::max(b.h - t.h, 1);
    go_to((int64_t{y} - b.y - t.h / 2) * last_top() / room);
}

void ScrollArea::swipe(int gesture) {
    if (gesture == GESTURE_SWIPE_UP) go_to(int64_t{top_} + page(1));
    if (gesture == GESTURE_SWIPE_DOWN) go_to(int64_t{top_} - page(1));
}

bool ScrollArea::pointer(int type, int par1, int par2) {
    if (type == EVT_POINTERDOWN) {
        if (!raster::contains(raster::Box(place_), par1, par2)) {
            hand_.state = 0;
            return false;
        }
        capture_finger(number_);
        is_bar_held_ = is_on_bar(par1, par2);
    }
    if (type != EVT_POINTERDOWN && hand_.state == 0) return false;
    const int gesture = RecogniseGesture(&hand_, type, par1, par2);
    if (!is_bar_held_)
        swipe(gesture);
    else if (type == EVT_POINTERUP)
        jump(par2);
    return true;
}

bool ScrollArea::handle(int type, int par1, int par2) {
    if (!kvstate.framebuffer) return false;
    look_ = look();
    if (type == EVT_SHOW || type == EVT_HIDE || type == EVT_RESTORE) hand_.state = 0;
    if (!is_scrolled() || place_.w < 1 || place_.h < 1) return false;
    if (modal::is_pointer_event(type)) return pointer(type, par1, par2);
    if (type != EVT_KEYPRESS && type != EVT_KEYREPEAT) return false;
    return key(par1, type == EVT_KEYREPEAT);
}

} // namespace lists
