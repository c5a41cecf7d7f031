// SPDX-License-Identifier: MIT
// Pictures: a photograph at several sizes, in fewer and fewer greys, through masks, turned, tiled,
// and through files.
#include <algorithm>
#include <iterator>

#include "lettering.h"
#include "page.h"
#include "photograph.h"

namespace {

const ibitmap *photograph() {
    static const Bitmap bm = make_photograph(480, 360);
    return bm.get();
}

void outline(const irect &r) {
    DrawRect(r.x, r.y, r.w, r.h, BLACK);
}

void photo(const irect &r) {
    DrawBitmapRect(r.x, r.y, r.w, r.h, photograph(), BITMAP_STRETCH);
    outline(r);
}

// The largest at the left, the others below each other beside it.
void sizes(const irect &r) {
    int width = r.w * 5 / 8, y = r.y;
    StretchBitmap(r.x, r.y, width, width * 3 / 4, photograph(), 0);
    const int x = r.x + width + unit();
    for (width = r.x + r.w - x; y + width * 3 / 4 <= r.y + r.h; width = width * 5 / 8) {
        StretchBitmap(x, y, width, width * 3 / 4, photograph(), 0);
        y += width * 3 / 4 + unit();
    }
}

// The photograph from left to right in the greys that each way makes of it.
void in_strips(const irect &r, const int (&levels)[3], const int (&methods)[3]) {
    photo(r);
    for (int i = 0; i < 3; i++) {
        const int left = r.w * i / 3, right = r.w * (i + 1) / 3;
        DitherArea(r.x + left, r.y, right - left, r.h, levels[i], methods[i]);
        if (i > 0) DrawLine(r.x + left, r.y, r.x + left, r.y + r.h - 1, BLACK);
    }
    outline(r);
}

void sixteen_greys(const irect &r) {
    photo(r);
    QuickFloyd16Dither(r.x + r.w / 2, r.y, r.w - r.w / 2, r.h);
    DrawLine(r.x + r.w / 2, r.y, r.x + r.w / 2, r.y + r.h - 1, BLACK);
    outline(r);
}

void four_greys(const irect &r) {
    in_strips(r, {4, 4, 4}, {DITHER_THRESHOLD, DITHER_PATTERN, DITHER_DIFFUSION});
}

void fewer_greys(const irect &r) {
    in_strips(r, {8, 4, 2}, {DITHER_DIFFUSION, DITHER_DIFFUSION, DITHER_DIFFUSION});
}

void two_greys(const irect &r) {
    photo(r);
    DitherAreaPattern4x4(r.x, r.y, r.w / 2, r.h);
    DitherAreaPattern8x8(r.x + r.w / 2, r.y, r.w - r.w / 2, r.h);
    DrawLine(r.x + r.w / 2, r.y, r.x + r.w / 2, r.y + r.h - 1, BLACK);
    outline(r);
}

// The photograph in a ring. What is outside gets a grey of its own, which is then left out.
Bitmap make_medal(int size) {
    constexpr int key = 1;
    Bitmap bm = make_grey_bitmap(size, size);
    if (!bm) return bm;
    icanvas canvas = {size, size, size, 8, 0, size - 1, 0, size - 1, bm->data};
    {
        const kelvane::CanvasGuard drawn_on(&canvas);
        StretchBitmap(-size / 6, 0, size * 4 / 3, size, photograph(), 0);
    }
    const int outer = size / 2, inner = outer - 1 - size / 40;
    for (int i = 0; i < size * size; i++) {
        const int dx = i % size - size / 2, dy = i / size - size / 2;
        const int distance = dx * dx + dy * dy;
        unsigned char &grey = bm->data[i];
        if (distance >= inner * inner || grey == key) grey = 0;
        if (distance >= outer * outer) grey = key;
    }
    bm.set_transparent(key);
    return bm;
}

void masks(const irect &r) {
    DrawDiagonalHatch(r.x, r.y, r.w, r.h, 6, DGRAY);
    const int size = std::min(r.w, r.h);
    const Bitmap medal = make_medal(size);
    DrawBitmap(r.x, r.y + (r.h - size) / 2, medal.get());
    StretchBitmap(r.x + size, r.y, r.w - size, r.h / 2, medal.get(), 0);
    StretchBitmap(r.x + size, r.y + r.h / 2, r.w - size, r.h / 2, medal.get(), 0);
}

// What the screen shows of an R on the photograph, copied as seen from each side.
void turned(const irect &r) {
    const int side = std::min(r.w, r.h) / 2 - unit() / 2;
    StretchBitmap(r.x, r.y, side, side, photograph(), 0);
    draw_text(r.x + side / 2, r.y + side / 4, "R", {.size = side * 2 / 3, .bold = true},
              Align::centre);
    // Where a place of the screen lies when the screen is seen turned.
    const int w = ScreenWidth(), h = ScreenHeight();
    const irect seen[] = {iRect(h - r.y - side, r.x, side, side, 0),
                          iRect(r.y, w - r.x - side, side, side, 0),
                          iRect(w - r.x - side, h - r.y - side, side, side, 0)};
    for (int i = 0; i < 3; i++) {
        const Bitmap copy(BitmapFromScreenR(seen[i].x, seen[i].y, side, side, i + 1));
        const irect cell = grid_cell(iRect(r.x, r.y, 2 * side + unit(), 2 * side + unit(), 0), 2, 2,
                                     i + 1, unit());
        DrawBitmap(cell.x, cell.y, copy.get());
    }
    const int x = r.x + 2 * side + 2 * unit();
    for (int i = 0; i < 2; i++) {
        const Bitmap copy(BitmapFromScreen(r.x, r.y, side, side));
        if (copy) MirrorBitmap(copy.get(), i == 0 ? MIRROR_HORIZONTAL : MIRROR_VERTICAL);
        DrawBitmapRect(x, r.y + i * (side + unit()), r.x + r.w - x, side, copy.get(),
                       BITMAP_CENTER);
    }
}

void tiles(const irect &r) {
    const int side = 6 * unit();
    const Bitmap medal = make_medal(side);
    FillAreaRect(&r, LGRAY);
    DrawBitmapRect(r.x, r.y, r.w, r.h, medal.get(), BITMAP_TILE);
    outline(r);
}

void placed(const irect &r) {
    constexpr int flags[] = {0,
                             BITMAP_CENTER,
                             BITMAP_RIGHT,
                             BITMAP_MIDDLE,
                             BITMAP_CENTER | BITMAP_MIDDLE,
                             BITMAP_RIGHT | BITMAP_BOTTOM};
    const Bitmap small = make_medal(7 * unit());
    for (int i = 0; i < 6; i++) {
        const irect cell = grid_cell(r, 3, 2, i, unit());
        const bool larger = i % 2 != 0;
        DrawBitmapRect(cell.x, cell.y, cell.w, cell.h, larger ? photograph() : small.get(),
                       flags[i]);
        outline(cell);
    }
}

void enlarged(const irect &r) {
    const ibitmap *bm = photograph();
    const int w = 60, h = 45;
    if (!bm) return;
    kv_stretch(bm->data, 8, 330, 75, w, h, bm->scanline, r.x, r.y, r.w, r.h, 0, nullptr, 0);
    outline(r);
}

// Saved to a file of each kind and loaded again, which leaves 16 greys.
void from_files(const irect &r) {
    const ibitmap *bm = photograph();
    if (!bm) return;
    const irect cells[] = {grid_cell(r, 3, 1, 0, unit()), grid_cell(r, 3, 1, 1, unit()),
                           grid_cell(r, 3, 1, 2, unit())};
    const Bitmap four(CopyBitmapDepth8To4(bm));
    SaveBitmap("./system/tmp/photo.bmp", bm);
    SavePNG("./system/tmp/photo.png", four.get());
    SaveJPEG("./system/tmp/photo.jpg", bm, 90);
    const Bitmap loaded[] = {
        Bitmap(LoadBitmap("./system/tmp/photo.bmp")),
        Bitmap(LoadPNGStretch("./system/tmp/photo.png", cells[1].w, cells[1].h, 1, 0)),
        Bitmap(LoadJPEG("./system/tmp/photo.jpg", cells[2].w, cells[2].h, 110, 120, 1))};
    for (int i = 0; i < 3; i++) {
        DrawBitmapRect(cells[i].x, cells[i].y, cells[i].w, cells[i].h, loaded[i].get(), BITMAP_FIT);
        outline(cells[i]);
    }
}

struct Cell {
    const char *name;
    void (*draw)(const irect &r);
};

constexpr Cell cells[] = {
    {"Photograph", photo},
    {"Sizes", sizes},
    {"Enlarged", enlarged},
    {"256 and 16 greys", sixteen_greys},
    {"4 greys, 3 ways", four_greys},
    {"8, 4, 2 greys", fewer_greys},
    {"2 patterns", two_greys},
    {"Masks", masks},
    {"Turned, mirrored", turned},
    {"Tiled", tiles},
    {"Placed", placed},
    {"BMP, PNG, JPEG", from_files},
};

void draw(const irect &area) {
    const bool upright = area.h > area.w;
    const int columns = upright ? 3 : 4, rows = 12 / columns, caption = 5 * unit();
    for (int i = 0; i < int(std::size(cells)); i++) {
        irect cell = grid_cell(area, columns, rows, i, 5 * unit());
        draw_text(cell.x, cell.y, cells[i].name, {});
        cell.y += caption;
        cell.h -= caption;
        cells[i].draw(cell);
    }
}

int handle(int, int, int, const irect &) {
    return 0;
}

} // namespace

const Page pictures_page = {"Pictures", "A photograph in many sizes, greys and places", draw,
                            handle, nullptr};
