// SPDX-License-Identifier: MIT
// Lays sheets out in the theme's window frame, as dialogs are.
#include "selectors/sheet.h"

#include <algorithm>

#include "chrome/panel.h"
#include "kelvane/events.h"
#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "lists/row.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace selectors {
namespace {

constexpr int title_units = 14, button_units = 13;

// What a frame of that size leaves inside its sides, or inside its corners.
irect frame_inside(const irect &r, int flags) {
    irect sizeless;
    DrawFrame(0, 0, 0, 0, nullptr, "", flags, &sizeless);
    return {r.x + sizeless.x, r.y + sizeless.y, std::max(r.w + sizeless.w, 1),
            std::max(r.h + sizeless.h, 1), 0};
}

int corner_radius(const irect &r, const irect &inside) {
    if (GetThemeInt("dialog.corner.use_raunding", 1) == 0) return 0;
    const irect corners = frame_inside(r, 0);
    return std::max(inside.y + inside.h - corners.y - corners.h, 0);
}

} // namespace

irect Sheet::lay_out() {
    look_ = lists::look();
    hand_.state = 0;
    const int u = look_->unit;
    big_.reset(
        OpenFont("defaultb", std::max(7 * u, look_->body ? look_->body->size * 6 / 5 : 0), 1));
    const int row_h = std::max(look_->row_h, u * 12);
    const int title_h = row_h * title_units / 12, buttons_h = row_h * button_units / 12;
    constexpr int large = 1 << 12;
    const int sides_h = large - frame_inside({0, 0, large, large, 0}, FRAME_INNER_SIDES).h;
    const int around = sides_h + 2 * u;
    const int foot = ScreenHeight() - PanelHeight(), w = std::min(ScreenWidth(), ScreenHeight());
    const int h = std::min(title_h + body_h() + buttons_h + around, foot);
    frame_ = {(ScreenWidth() - w) / 2, foot - h, w, h, 0};
    inside_ = frame_inside(frame_, FRAME_INNER_SIDES);
    corner_ = corner_radius(frame_, inside_);
    title_place_ = {inside_.x + look_->margin, inside_.y, inside_.w - 2 * look_->margin, title_h,
                    0};
    const int buttons_y = inside_.y + inside_.h - buttons_h, half = inside_.w / 2;
    ok_ = {inside_.x, buttons_y, half, buttons_h, 0};
    cancel_ = {inside_.x + half, buttons_y, inside_.w - half, buttons_h, 0};
    body_ = {title_place_.x, inside_.y + title_h, title_place_.w,
             std::max(std::min(body_h(), buttons_y - inside_.y - title_h), 1), 0};
    place_body(body_);
    return frame_;
}

void Sheet::draw_button(const irect &r, const char *label, bool is_first) const {
    modal::fill_button(r, is_first ? std::min(corner_, r.h) : 0,
                       is_first ? 0 : std::min(corner_, r.h), WHITE);
    const text::FontScope font(look_->counter.get());
    lists::draw_line_of_text(r, GetLangText(label), ALIGN_CENTER);
}

// The default is what the key OK does; as a finger has both, neither of them is marked.
void Sheet::draw_buttons() const {
    const int rule = 2 * look_->hairline;
    draw_button(ok_, "@OK", true);
    draw_button(cancel_, "@Cancel", false);
    FillArea(ok_.x, ok_.y, ok_.w + cancel_.w, rule, BLACK);
    FillArea(cancel_.x, cancel_.y, look_->hairline, cancel_.h, BLACK);
}

void Sheet::draw() {
    const raster::ScreenScope screen;
    DrawFrame(frame_.x, frame_.y, frame_.w, frame_.h, nullptr, "", 0, nullptr);
    const text::FontScope font(look_->bold.get());
    lists::draw_line_of_text(title_place_, GetLangText(title_.c_str()),
                             ALIGN_LEFT | TEXT_RTL_MIRROR);
    draw_body();
    draw_buttons();
}

void Sheet::draw_key(const irect &r) const {
    FillAreaRect(&r, WHITE);
    DrawBorder(&r, look_->hairline, 0, 0, BLACK);
}

void Sheet::touch(int, int, int) {}

void Sheet::hold(int, int) {}

void Sheet::show_part(const irect &part) {
    {
        const raster::ScreenScope screen;
        SetClipRect(&part);
        FillAreaRect(&part, WHITE);
        draw_body();
    }
    PartialUpdateBW(part.x, part.y, part.w, part.h);
}

void Sheet::finish(bool is_accepted) {
    close_with_above(number());
    answer(is_accepted);
}

bool Sheet::handle(int type, int par1, int par2) {
    if (modal::is_pointer_event(type)) {
        const auto is_on = [&](const irect &r) {
            return raster::contains(raster::Box(r), hand_.x, hand_.y);
        };
        const int gesture = RecogniseGesture(&hand_, type, par1, par2);
        touch(type, par1, par2);
        if (gesture == GESTURE_LONG_PRESS) hold(hand_.x, hand_.y);
        if (gesture != GESTURE_TAP && gesture != GESTURE_DOUBLE_TAP) return true;
        if (is_on(ok_) || is_on(cancel_))
            finish(is_on(ok_));
        else
            tap(hand_.x, hand_.y);
        return true;
    }
    if (type == EVT_RESTORE || type == EVT_SHOW) hand_.state = 0;
    if (type == EVT_KEYPRESS && (par1 == KEY_OK || par1 == KEY_BACK)) {
        finish(par1 == KEY_OK);
        return true;
    }
    if (type == EVT_KEYPRESS) return key(par1, 0);
    return type == EVT_KEYREPEAT && key(par1, par2);
}

} // namespace selectors
