/* SPDX-License-Identifier: MIT */
/* The figure of docs/canvas.md: what draws on a canvas, a cell each. BACK ends it. */
#include <stdlib.h>

#include <kelvane.h>

static void greys(irect r) {
    for (int i = 0; i < 16; i++) FillArea(r.x + i * 10, r.y, 10, r.h, i * 0x111111);
}

static void pixels(irect r) {
    for (int x = 0; x < r.w; x++) DrawPixel(r.x + x, r.y + r.h - 1 - x * x / r.w, BLACK);
}

static void lines(irect r) {
    for (int x = 0; x < r.w; x += 12) DrawLine(r.x, r.y + r.h - 1, r.x + x, r.y, BLACK);
}

static void steps(irect r) {
    for (int y = 0; y < r.h; y += 12)
        DrawLineEx(r.x, r.y + y, r.x + r.w - 1, r.y + y, BLACK, y / 12 + 1);
}

static void dashes(irect r) {
    for (int y = 0; y < r.h; y += 12)
        DrawDashLine(r.x, r.y + y, r.x + r.w - 1, r.y + y, BLACK, y / 4 + 1, 4);
}

static void outlines(irect r) {
    DrawRect(r.x, r.y, r.w, r.h, BLACK);
    DrawSelection(r.x + 16, r.y + 16, r.w - 32, r.h - 32, BLACK);
}

static void discs(irect r) {
    const int x = r.x + r.w / 2, y = r.y + r.h / 2;
    DrawCircle(x, y, 72, LGRAY);
    DrawCircle(x, y, 48, DGRAY);
    DrawCircle(x, y, 24, WHITE);
}

static void hatch(irect r) {
    DrawDiagonalHatch(r.x, r.y, r.w, r.h, 8, BLACK);
}

static void dimmed(irect r) {
    discs(r);
    DimArea(r.x, r.y, r.w, r.h / 2, WHITE);
}

static void inverted(irect r) {
    discs(r);
    InvertArea(r.x, r.y, r.w / 2, r.h);
}

static void clipped(irect r) {
    const irect before = GetClipRect();
    SetClip(r.x + 16, r.y + 16, r.w - 32, r.h - 32);
    lines(r);
    SetClipRect(&before);
}

/* Draws elsewhere than on the screen, and the result as a pattern. */
static void own_canvas(irect r) {
    static unsigned char memory[32 * 32];
    icanvas own = {.width = 32, .height = 32, .scanline = 32, .depth = 8, .addr = memory};
    SetCanvas(&own);
    SetClip(0, 0, 32, 32);
    ClearScreen();
    DrawCircle(16, 16, 12, BLACK);
    ibitmap *pattern = BitmapFromScreen(0, 0, 32, 32);
    SetCanvas(NULL); /* the screen again, before `own` is gone */
    TileBitmap(r.x, r.y, r.w, r.h, pattern);
    free(pattern);
}

static const struct {
    const char *name;
    void (*draw)(irect cell);
} cells[] = {
    {"DrawPixel", pixels},
    {"DrawLine", lines},
    {"DrawLineEx", steps},
    {"DrawDashLine", dashes},
    {"DrawRect, DrawSelection", outlines},
    {"FillArea", greys},
    {"DrawCircle", discs},
    {"InvertArea", inverted},
    {"DimArea", dimmed},
    {"DrawDiagonalHatch", hatch},
    {"SetClip", clipped},
    {"SetCanvas, TileBitmap", own_canvas},
};
enum { columns = 3, count = sizeof cells / sizeof cells[0], side = 160, pitch = 192 };

static void draw(void) {
    ifont *font = OpenFont("default", 14, 1);
    ClearScreen();
    SetFont(font, BLACK);
    for (int i = 0; i < count; i++) {
        const int x = 28 + i % columns * pitch, y = 20 + i / columns * pitch;
        cells[i].draw(iRect(x, y, side, side, 0));
        DrawString(x, y + side + 4, cells[i].name);
    }
    CloseFont(font);
    FullUpdate();
}

static int handler(int type, int par1, int par2) {
    (void)par2;
    if (type == EVT_SHOW) draw();
    if (type == EVT_KEYPRESS && par1 == KEY_BACK) CloseApp();
    return type == EVT_SHOW || type == EVT_KEYPRESS;
}

int main(void) {
    KelvaneMain(handler);
    return 1; /* only reached when the screen could not be opened */
}
