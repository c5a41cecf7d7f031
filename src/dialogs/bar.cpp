// SPDX-License-Identifier: MIT
// Draws progress as a thin bar with its percentage, or with the theme's pictures.
#include "dialogs/bar.h"

#include <algorithm>
#include <cstdio>

#include "dialogs/look.h"
#include "kelvane/events.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "raster/bitmap.h"

namespace dialogs {
namespace {

constexpr int bar_h = 8;
constexpr int least_label_w = 68, label_margin = 4;
constexpr int beside_label = 15;
constexpr int pictures_style = 0, drawn_style = 1;

int middle_y(const irect &area, int h) {
    return area.y + (area.h - h) / 2;
}

void draw_outline(const irect &r) {
    const int right = r.x + r.w - 1, bottom = r.y + r.h - 1;
    DrawLine(r.x, r.y, right, r.y, BLACK);
    DrawLine(r.x, bottom, right, bottom, BLACK);
    DrawLine(r.x, r.y, r.x, bottom, BLACK);
    DrawLine(right, r.y, right, bottom, BLACK);
}

void draw_custom_progress(const irect &area, int percent) {
    char label[16];
    std::snprintf(label, sizeof label, "%d %%", percent);
    const int label_w = std::max(least_label_w, StringWidth(label) + label_margin);
    const int gap = std::max(ScreenWidth(), ScreenHeight()) / 200;
    const irect bar{area.x, middle_y(area, bar_h),
                    std::max(area.w - label_w - gap - beside_label, 0), bar_h, 0};
    if (bar.w > 0) {
        FillAreaRect(&bar, WHITE);
        draw_outline(bar);
        FillArea(bar.x, bar.y, bar.w * percent / 100, bar.h, BLACK);
    }
    DrawTextRect(bar.x + bar.w + gap, area.y, label_w, area.h, label, ALIGN_RIGHT | VALIGN_MIDDLE);
}

// The trough between the ends goes on as the last column of its left end.
void draw_trough(const irect &bar) {
    const theme::Picture &left = look().bar_left_empty, &right = look().bar_right_empty;
    if (left) {
        DrawBitmap(bar.x, bar.y, left.get());
        for (int x = bar.x + left.width(); x < bar.x + bar.w - right.width(); ++x)
            raster::draw_bitmap_part(x, bar.y, *left.get(), left.width() - 1, 0, 1, left.height());
    }
    if (right) DrawBitmap(bar.x + bar.w - right.width(), bar.y, right.get());
}

void draw_filling(const irect &bar) {
    const theme::Picture &left = look().bar_left, &right = look().bar_right;
    DrawBitmap(bar.x, bar.y, left.get());
    TileBitmap(bar.x + left.width(), bar.y, bar.w - left.width() - right.width(), bar.h,
               look().bar_middle.get());
    DrawBitmap(bar.x + bar.w - right.width(), bar.y, right.get());
}

// The full bar shows as far as the progress goes. A high one keeps half its height from the foot.
void draw_pictures(const irect &area, int percent) {
    const int h = look().bar_middle.height();
    const int y = std::min(middle_y(area, h), area.y + area.h - h - h / 2);
    const irect bar{area.x, y, area.w, h, 0};
    draw_trough(bar);
    const irect clip = GetClipRect();
    SetClip(bar.x, bar.y, bar.w * percent / 100, bar.h);
    draw_filling(bar);
    SetClipRect(&clip);
}

} // namespace

void draw_bar(const irect &area, int percent) {
    const int drawn = std::clamp(percent, 0, 100);
    if (GetThemeInt("dialog.style", drawn_style) == pictures_style)
        draw_pictures(area, drawn);
    else
        draw_custom_progress(area, drawn);
}

} // namespace dialogs
