// SPDX-License-Identifier: MIT
// The update modes: each button draws the next picture and shows it in its own mode.
#include <algorithm>
#include <cstdio>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

struct Mode {
    const char *name;
    const char *note;
    void (*show)(int x, int y, int w, int h);
};

void animate(int x, int y, int w, int h);

const Mode modes[] = {
    {"Partial", "All greys, no flash: the ordinary choice", PartialUpdate},
    {"Partial BW", "Black and white: faster", PartialUpdateBW},
    {"Partial black", "For areas that were black", PartialUpdateBlack},
    {"Partial DU4", "Four levels, no flash", PartialUpdateDU4},
    {"Partial HQ", "Best quality of an area", PartialUpdateHQ},
    {"Dynamic", "For what changes often", DynamicUpdate},
    {"Dynamic BW", "For what changes often, black and white", DynamicUpdateBW},
    {"Dynamic A2", "Fastest, two levels: press to animate", animate},
    {"Soft", "Whole screen, no flash", [](int, int, int, int) { SoftUpdate(); }},
    {"Full", "Whole screen, flashes: clears all ghosts", [](int, int, int, int) { FullUpdate(); }},
};
constexpr int mode_count = int(std::size(modes));

constexpr int frames = 24, frame_ms = 60;

int selected = 0, picture = 0, frame = 0;
irect sample;

irect button_area(const irect &area, int index) {
    const bool upright = area.h > area.w;
    const irect list = upright ? iRect(area.x, area.y + area.h * 2 / 5, area.w, area.h * 3 / 5, 0)
                               : iRect(area.x + area.w / 2, area.y, area.w - area.w / 2, area.h, 0);
    return grid_cell(list, 1, mode_count, index, unit());
}

irect sample_area(const irect &area) {
    if (area.h > area.w) return iRect(area.x, area.y, area.w, area.h * 2 / 5 - 3 * unit(), 0);
    return iRect(area.x, area.y, area.w / 2 - 4 * unit(), area.h, 0);
}

// The sixteen greys, alternately from either end, behind a disc that moves on.
void draw_sample(const irect &r, int step) {
    for (int i = 0; i < 16; i++) {
        const int left = r.w * i / 16, right = r.w * (i + 1) / 16;
        const int level = step % 2 == 0 ? i : 15 - i;
        FillArea(r.x + left, r.y, right - left, r.h, level * 0x111111);
    }
    const int radius = std::min(r.w, r.h) / 5;
    const int travel = std::max(1, r.w - 2 * radius - 4 * unit());
    const int x = r.x + 2 * unit() + radius + travel * (step % 5) / 4;
    DrawCircle(x, r.y + r.h / 2, radius, WHITE);
    DrawCircle(x, r.y + r.h / 2, radius - unit(), BLACK);
    char text[16];
    std::snprintf(text, sizeof text, "%d", step % 100);
    draw_text(x, r.y + r.h / 2 - radius / 3, text,
              {.height = radius * 2 / 3, .color = WHITE, .bold = true}, Align::centre);
    DrawRect(r.x, r.y, r.w, r.h, BLACK);
}

// A ball and its shadow: two levels are all that the fastest mode shows.
void draw_frame(const irect &r, int step) {
    FillAreaRect(&r, WHITE);
    DrawRect(r.x, r.y, r.w, r.h, BLACK);
    const int radius = std::min(r.w, r.h) / 8;
    const int phase = step % 12, bounce = phase < 6 ? phase : 12 - phase;
    const int ground = r.y + r.h - radius - 2 * unit();
    const int x = r.x + radius + (r.w - 2 * radius) * step / frames;
    const int y = ground - (r.h - 3 * radius) * (36 - (6 - bounce) * (6 - bounce)) / 36;
    DrawCircle(x, y, radius - 2, BLACK);
    FillArea(x - radius / 2, ground + radius, radius, std::max(2, unit() / 2), BLACK);
}

void next_frame(void *) {
    if (frame >= frames) {
        ExitUpdateA2();
        draw_sample(sample, picture);
        PartialUpdate(sample.x, sample.y, sample.w, sample.h);
        return;
    }
    draw_frame(sample, frame++);
    DynamicUpdateA2(sample.x, sample.y, sample.w, sample.h);
    SetHardTimer("gallery animation", next_frame, frame_ms);
}

void animate(int, int, int, int) {
    frame = 0;
    next_frame(nullptr);
}

void leave() {
    ClearTimer(next_frame);
    ExitUpdateA2();
}

void draw_button(const irect &area, int index) {
    const irect r = button_area(area, index);
    const bool active = index == selected;
    FillAreaRect(&r, active ? BLACK : WHITE);
    if (!active) DrawBorder(&r, 2 + unit() / 8, ROUND_ALL, unit(), DGRAY);
    const bool upright = area.h > area.w;
    const Ink name = {
        .height = std::min(2 * unit(), r.h / 3), .color = active ? WHITE : BLACK, .bold = true};
    const Ink note = {.height = name.height * 3 / 4, .color = active ? LGRAY : DGRAY};
    // The note stands at the right end, or below the name where the button is narrow.
    const int left = r.x + 2 * unit(), middle = r.y + (r.h - name.height) / 2;
    draw_text(left, upright ? middle : r.y + unit(), modes[index].name, name);
    if (upright) {
        draw_text(r.x + r.w - 2 * unit(), middle, modes[index].note, note, Align::right);
    } else {
        draw_text(left, r.y + r.h - unit() - note.height, modes[index].note, note);
    }
}

void draw(const irect &area) {
    sample = sample_area(area);
    draw_sample(sample, picture);
    for (int i = 0; i < mode_count; i++) draw_button(area, i);
}

void select(const irect &area, int index) {
    const int former = selected;
    selected = index;
    for (int i : {former, selected}) {
        const irect r = button_area(area, i);
        draw_button(area, i);
        PartialUpdateBW(r.x, r.y, r.w, r.h);
    }
}

void run(const irect &area) {
    sample = sample_area(area);
    ClearTimer(next_frame);
    draw_sample(sample, ++picture);
    modes[selected].show(sample.x, sample.y, sample.w, sample.h);
}

int key_pressed(int key, const irect &area) {
    switch (key) {
    case KEY_UP:
    case KEY_DOWN:
        select(area, (selected + (key == KEY_UP ? mode_count - 1 : 1)) % mode_count);
        return 1;
    case KEY_OK:
        run(area);
        return 1;
    default:
        return 0;
    }
}

int handle(int type, int par1, int par2, const irect &area) {
    static int pressed = -1;
    if (type == EVT_KEYPRESS) return key_pressed(par1, area);
    if (type != EVT_POINTERDOWN && type != EVT_POINTERUP) return 0;
    int hit = -1;
    for (int i = 0; i < mode_count; i++)
        if (inside(button_area(area, i), par1, par2)) hit = i;
    if (type == EVT_POINTERDOWN) {
        pressed = hit;
        return 0;
    }
    if (hit < 0 || hit != pressed) return 0;
    if (hit != selected) select(area, hit);
    run(area);
    return 0;
}

} // namespace

const Page updates_page = {"Updates", "Up, down and OK, or a tap, show the picture in a mode", draw,
                           handle, leave};
