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
    {"Partial", "All greys, no flash: ordinary", PartialUpdate},
    {"Partial BW", "Black and white: faster", PartialUpdateBW},
    {"Partial black", "For areas that were black", PartialUpdateBlack},
    {"Partial DU4", "Four levels, no flash", PartialUpdateDU4},
    {"Partial HQ", "Best quality of an area", PartialUpdateHQ},
    {"Dynamic", "Changes often", DynamicUpdate},
    {"Dynamic BW", "Changes often, black and white", DynamicUpdateBW},
    {"Dynamic A2", "Fastest, two levels: an animation", animate},
    {"Soft", "Whole screen, no flash", [](int, int, int, int) { SoftUpdate(); }},
    {"Full", "Whole screen, flash: clears ghosts", [](int, int, int, int) { FullUpdate(); }},
};
constexpr int mode_count = int(std::size(modes));

constexpr int frames = 24, frame_ms = 60;

int selected = 0, picture = 0, frame = 0;
irect sample;

irect button_area(const irect &area, int index) {
    const bool upright = area.h > area.w;
    const int height = std::min(12 * unit(), area.h / mode_count);
    const irect list = upright
                           ? iRect(area.x, area.y + area.h - mode_count * height, area.w, 0, 0)
                           : iRect(area.x + area.w * 2 / 5, area.y, area.w - area.w * 2 / 5, 0, 0);
    return iRect(list.x, list.y + index * height, list.w, height, 0);
}

irect sample_area(const irect &area) {
    const irect list = button_area(area, 0);
    if (area.h > area.w) return iRect(area.x, area.y, area.w, list.y - area.y - 4 * unit(), 0);
    return iRect(area.x, area.y, list.x - area.x - 6 * unit(), area.h, 0);
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
              {.size = radius * 11 / 12, .color = WHITE, .bold = true}, Align::centre);
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
    FillArea(r.x, r.y + r.h - hairline(), r.w, hairline(), BLACK);
    const int color = active ? WHITE : BLACK;
    const Ink name = {.size = size_of(Type::label), .color = color, .bold = active};
    const Ink note = {.color = color};
    // On one baseline.
    const int bottom = r.y + (r.h + capital_height(name.size)) / 2;
    draw_text(r.x + 2 * unit(), bottom - capital_height(name.size), modes[index].name, name);
    draw_text(r.x + r.w - 2 * unit(), bottom - capital_height(note.size), modes[index].note, note,
              Align::right);
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
