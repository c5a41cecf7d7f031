// SPDX-License-Identifier: MIT
// Frames, the caption, the pager and the key-lock icon on an open screen, with and without a theme.
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "chrome/chrome.h"
#include "kelvane/bitmaps.h"
#include "kelvane/frames.h"
#include "kelvane/pager.h"
#include "kelvane/theme.h"
#include "keylock/keylock.h"
#include "raster/bitmap_tracker.h"
#include "support/headless.h"
#include "text/font_scope.h"
#include "theme/builtin.h"
#include "theme/parameters.h"
#include "unit/theme_support.h"

namespace {

class Chrome : public headless::Test {
  protected:
    Chrome() { ClearScreen(); }
    ~Chrome() override { chrome::reset(); }
    static int grey(int x, int y) { return kvstate.canvas->addr[y * kvstate.canvas->scanline + x]; }
    static std::string last_update() {
        if (headless::updates().empty()) return "";
        const headless::Update &u = headless::updates().back();
        return std::to_string(u.x) + "," + std::to_string(u.y) + " " + std::to_string(u.w) + "x" +
               std::to_string(u.h);
    }
    static std::vector<uint8_t> screen() {
        const icanvas &c = *kvstate.canvas;
        return {c.addr, c.addr + c.scanline * c.height};
    }
};

bool operator==(const irect &a, const irect &b) {
    return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

class Theme : public Chrome {};

TEST_F(Theme, DefaultsComeBackUnchanged) {
    const char *text = "some default";
    ibitmap *bitmap = NewBitmap(3, 3);
    EXPECT_EQ(GetThemeString("a.name", text), text);
    EXPECT_EQ(GetThemeString(nullptr, nullptr), nullptr);
    EXPECT_EQ(GetThemeInt("a.name", -7), -7);
    EXPECT_EQ(GetThemeFont("a.name", nullptr), nullptr);
    EXPECT_EQ(GetResource("a.name", bitmap), bitmap);
    EXPECT_EQ(GetResource(nullptr, nullptr), nullptr);
    std::free(bitmap);
    struct {
        const char *deflt;
        int w, h;
    } const blanks[] = {{"*(20, 30)", 20, 30}, {"*(0,5)", 1, 5}, {"*(7)", 7, 7}, {"*(-3,x)", 1, 1}};
    for (const auto &b : blanks) {
        alignas(ibitmap) char buffer[16] = {};
        std::snprintf(buffer, sizeof buffer, "%s", b.deflt);
        const raster::BitmapPtr blank(GetResource("missing", reinterpret_cast<ibitmap *>(buffer)));
        EXPECT_TRUE(blank->width == b.w && blank->height == b.h) << b.deflt;
        EXPECT_EQ(blank->data[0], 0xFF);
    }
    char too_wide[] = "*(70000,1)"; // no bitmap, and no text in place of one
    EXPECT_EQ(GetResource("missing", reinterpret_cast<ibitmap *>(too_wide)), nullptr);
}

TEST_F(Theme, AListenerGetsCopiesOfDefaults) {
    static std::string heard;
    raster::bitmap_tracker.found = [](const ibitmap *bm, const char *name) {
        heard += name + (" " + std::to_string(bm->width)) + ";";
    };
    const raster::BitmapPtr deflt(NewBitmap(3, 3)), copy(GetResource("one", deflt.get())),
        blank(GetResource("two", nullptr));
    raster::bitmap_tracker.found = nullptr;
    EXPECT_TRUE(copy && copy != deflt);
    EXPECT_EQ(heard, "one 3;two 2;");
}

TEST_F(Theme, RectsCountNegativeValuesFromTheFarEdge) {
    irect r;
    GetThemeRect("a.name", &r, -10, 0, -1, 50, 2);
    EXPECT_TRUE((r == irect{590, 0, 10, 50, 0}) && r.flags == 2);
    GetThemeRect("a.name", &r, 5, -800, 10, -1, 0);
    EXPECT_TRUE((r == irect{5, 0, 10, 800, 0}));
    kv_getthemerect("a.name", &r, -10, 0, -1, 50, 0);
    EXPECT_TRUE((r == irect{-10, 0, -1, 50, 0}));
    GetThemeRect("a.name", &r, INT_MIN, INT_MAX, INT_MIN, INT_MIN, 0);
    GetThemeRect("a.name", nullptr, 0, 0, 0, 0, 0);
}

TEST_F(Theme, FontValues) {
    struct {
        const char *text, *face;
        int size, antialias, color;
    } const cases[] = {{"default", "default", 12, 1, 0},
                       {"#defaultb,16,0xffffff", "defaultb", 16, 0, 0xFFFFFF},
                       {"a b,9", "a b", 9, 1, 0},
                       {"", "", 12, 1, 0},
                       {"x,99999999999,010", "x", INT_MAX, 1, 8}};
    for (const auto &c : cases) {
        const theme::FontSpec spec = theme::parse_font(c.text);
        EXPECT_TRUE(spec.face == c.face && spec.size == c.size && spec.antialias == c.antialias &&
                    spec.color == c.color)
            << c.text;
    }
}

TEST_F(Theme, OpeningMakesThePlainPairOfButtons) {
    OpenTheme("none");
    const theme::UiParameters &ui = theme::ui_parameters();
    EXPECT_TRUE(ui.button_normal->width == 124 && ui.button_normal->height == 32);
    EXPECT_EQ(ui.button_normal->data[100], 0xFF);
    EXPECT_EQ(ui.button_selected->data[100], 0xAA);
    EXPECT_TRUE(ui.button_back && ui.button_prev && ui.button_next);
    EXPECT_EQ(ui.menu_color_disabled, 0x555555);
}

TEST_F(Theme, BuiltInPicturesAreFoundByName) {
    for (const auto &image : theme::builtin_images) {
        const ibitmap *bm = theme::builtin_image(image.name);
        ASSERT_EQ(bm, image.bitmap) << image.name;
        EXPECT_TRUE(raster::depth_of(*bm) == 4 && bm->scanline == (bm->width + 1) / 2);
    }
    for (const char *name :
         {"", "nothing", "zzz", "edge_top_left", static_cast<const char *>(nullptr)})
        EXPECT_EQ(theme::builtin_image(name), nullptr);
    EXPECT_NE(theme::builtin_image("keylock"), nullptr);
}

class Frame : public Chrome {};

TEST_F(Frame, ClientAreaAndTitleBar) {
    struct {
        int flags;
        irect inside;
    } const cases[] = {{0, {112, 120, 276, 168, 0}},
                       {FRAME_HEADER, {112, 160, 276, 128, 0}},
                       {FRAME_BUTTON_CLOSE, {112, 160, 276, 128, 0}},
                       {FRAME_DICTIONARY, {112, 160, 276, 128, 0}},
                       {FRAME_OVERLAP | FRAME_INNER_SIDES, {112, 120, 276, 168, 0}}};
    for (const auto &c : cases) {
        FillArea(0, 0, 600, 800, DGRAY);
        irect inside;
        DrawFrame(100, 100, 300, 200, nullptr, "title", c.flags, &inside);
        EXPECT_TRUE(inside == c.inside) << std::hex << c.flags;
        EXPECT_EQ(grey(250, 100), 255); // a white rim above
        EXPECT_EQ(grey(250, 107), 255);
        EXPECT_EQ(grey(250, 151), c.inside.y == 160 ? 0 : 255); // the title bar
        EXPECT_EQ(grey(250, 108), 0);                           // the outline on all sides
        EXPECT_EQ(grey(250, 299), 0);
        EXPECT_EQ(grey(100, 200), 0);
        EXPECT_EQ(grey(399, 200), 0);
        EXPECT_EQ(grey(250, 200), 255);
        EXPECT_EQ(grey(100, 108), (c.flags & FRAME_OVERLAP) != 0 ? 0 : 255); // square or round
        EXPECT_EQ(grey(399, 299), 0x55);
        EXPECT_EQ(grey(99, 200), 0x55);
        EXPECT_EQ(grey(400, 200), 0x55);
    }
    EXPECT_TRUE(headless::updates().empty());
}

TEST_F(Frame, FlagsChooseAmongThePiecesOfTheTheme) {
    constexpr int dictionary = FRAME_DICTIONARY, header = FRAME_HEADER, overlap = FRAME_OVERLAP,
                  sides = FRAME_INNER_SIDES;
    TestTheme theme;
    struct {
        const char *name;
        int w, h;
    } const pieces[] = {{"frame_topleft", 10, 11},
                        {"frame_topright", 12, 13},
                        {"frame_top", 4, 7},
                        {"frame_left", 3, 5},
                        {"frame_right", 5, 5},
                        {"frame_bottomleft", 9, 8},
                        {"frame_bottom", 4, 6},
                        {"frame_bottomright", 7, 9},
                        {"frame_topleft_overlap", 6, 15},
                        {"frame_topright_overlap", 8, 6},
                        {"header_topleft", 14, 20},
                        {"header_topright", 15, 20},
                        {"header_top", 4, 19},
                        {"dictionary_left", 25, 5},
                        {"dictionary_topright", 16, 18}};
    for (int level = 0; const auto &p : pieces) theme.add(p.name, p.w, p.h, level++);
    theme.texts["header.margin.right"] = "20";
    theme.texts["dictionary.margin.right"] = "40";
    struct {
        int flags;
        irect inside;
        int top_left, top_right, left; // which piece is there
    } const cases[] = {{0, {110, 111, 278, 181, 0}, 0, 1, 3},
                       {sides, {103, 107, 292, 187, 0}, 0, 1, 3},
                       {overlap, {106, 115, 286, 177, 0}, 8, 9, 3},
                       {overlap | sides, {103, 107, 292, 187, 0}, 8, 9, 3},
                       {header, {114, 120, 271, 172, 0}, 10, 11, 3},
                       {header | overlap, {114, 120, 271, 172, 0}, 10, 11, 3},
                       {FRAME_BUTTON_CLOSE | sides, {103, 119, 292, 175, 0}, 10, 11, 3},
                       {dictionary, {114, 120, 270, 172, 0}, 10, 14, 13},
                       {dictionary | sides, {125, 119, 270, 175, 0}, 10, 14, 13}};
    for (const auto &c : cases) {
        irect inside;
        DrawFrame(100, 100, 300, 200, nullptr, nullptr, c.flags, &inside);
        EXPECT_TRUE(inside == c.inside) << std::hex << c.flags;
        EXPECT_TRUE(grey(100, 100) == c.top_left * 17 && grey(399, 100) == c.top_right * 17 &&
                    grey(100, 200) == c.left * 17)
            << std::hex << c.flags;
    }
    for (const auto &[flags, end] : {std::pair{1, 380}, {1 | dictionary, 360}}) {
        EXPECT_EQ(CheckFramePointer(100, 100, 300, 200, flags, end, 110), 0);
        EXPECT_EQ(CheckFramePointer(100, 100, 300, 200, flags, end - 1, 110), 1);
    }
}

TEST_F(Frame, IconStandsInTheMiddleOfTheTitleBar) {
    const raster::BitmapPtr icon(NewBitmap(9, 7));
    DrawFrame(100, 100, 300, 200, icon.get(), nullptr, FRAME_HEADER, nullptr);
    for (int y = 112; y < 150; ++y)
        for (int x = 112; x < 388; ++x)
            ASSERT_EQ(grey(x, y) == 255, x >= 117 && x < 126 && y >= 126 && y < 133)
                << x << ',' << y;
}

TEST_F(Frame, ButtonsAnswerToThePointer) {
    constexpr int all = FRAME_BUTTON_CLOSE | FRAME_BUTTON_MOVEUP | FRAME_BUTTON_MOVEDOWN;
    struct {
        int flags, px, py, hit;
    } const cases[] = {{all, 387, 108, FRAME_BUTTON_CLOSE},
                       {all, 340, 151, FRAME_BUTTON_CLOSE},
                       {all, 339, 118, FRAME_BUTTON_MOVEUP},
                       {all, 244, 118, FRAME_BUTTON_MOVEDOWN},
                       {all, 243, 118, 0},
                       {all, 388, 118, 0},
                       {all, 387, 107, 0},
                       {all, 387, 152, 0},
                       {FRAME_BUTTON_MOVEDOWN, 387, 118, FRAME_BUTTON_MOVEDOWN},
                       {FRAME_BUTTON_CLOSE | 0x8000, 387, 118, FRAME_BUTTON_CLOSE},
                       {all, INT_MIN, INT_MAX, 0}};
    for (const auto &c : cases) {
        DrawFrame(100, 100, 300, 200, nullptr, nullptr, c.flags, nullptr);
        const std::vector<uint8_t> before = screen();
        EXPECT_EQ(CheckFramePointer(100, 100, 300, 200, c.flags, c.px, c.py), c.hit)
            << c.px << ',' << c.py;
        EXPECT_EQ(screen() != before, c.hit != 0); // the pressed form is another picture
        EXPECT_EQ(CheckFramePointer(100, 100, 300, 200, c.flags, 0, 0), 0);
        EXPECT_EQ(screen(), before);
    }
    // Too narrow for the second button: the layout stops there.
    EXPECT_EQ(CheckFramePointer(0, 0, 80, 99, all, 60, 18), FRAME_BUTTON_CLOSE);
    EXPECT_EQ(CheckFramePointer(0, 0, 80, 99, all, 19, 18), 0);
}

TEST_F(Frame, UpdatesTheTitleBarOnlyWhenAsked) {
    struct {
        int flags, px;
        const char *update;
    } const cases[] = {{1, 380, ""},
                       {1, -1, ""},
                       {1 | FRAME_UPDATE, 110, ""},
                       {1 | FRAME_UPDATE, 380, "100,100 300x60"},
                       {1 | FRAME_UPDATE, -1, "100,100 300x60"}};
    for (const auto &c : cases) {
        headless::clear_updates();
        CheckFramePointer(100, 100, 300, 200, c.flags, c.px, 118);
        EXPECT_EQ(last_update(), c.update) << c.px;
    }
    headless::clear_updates();
    DrawFrame(100, 100, 300, 200, nullptr, nullptr, 1 | FRAME_UPDATE, nullptr);
    EXPECT_EQ(last_update(), "");
}

TEST_F(Frame, AbsurdArguments) {
    const int values[] = {INT_MIN, -1, 0, 1, 30, INT_MAX};
    const ibitmap *icon = theme::builtin_image("button_back");
    irect inside;
    for (const int x : values)
        for (const int w : values)
            for (const int flags : {0, 7, -1, INT_MIN, int{FRAME_DICTIONARY}}) {
                DrawFrame(x, x, w, w, icon, "", flags, &inside);
                CheckFramePointer(x, w, w, w, flags & ~FRAME_UPDATE, x, w);
                frame_init(w, x, x, w, flags);
            }
    ClearScreen();
    DrawFrame(0, 0, 0, 10, icon, "", 0, nullptr);
    EXPECT_EQ(grey(17, 2), 255);
}

class Caption : public Chrome {};

TEST_F(Caption, IsOffUntilItHasAHeight) {
    const std::vector<uint8_t> white = screen();
    EXPECT_EQ(GetCaptionHeight(), 0);
    DrawApplicationCaption("title", nullptr);
    EXPECT_EQ(screen(), white);
    SetApplicationCaptionHeight(30);
    EXPECT_EQ(GetCaptionHeight(), 30);
    FillArea(0, 0, 600, 800, DGRAY);
    DrawApplicationCaption("title", nullptr);
    DrawApplicationCaption(nullptr, nullptr);
    EXPECT_TRUE(grey(0, 28) == 255 && grey(599, 28) == 255); // no font: the strip is white
    EXPECT_TRUE(grey(0, 29) == 0 && grey(599, 29) == 0 && grey(0, 30) == 0x55);
    for (const int off : {0, -1, INT_MIN}) {
        SetApplicationCaptionHeight(off);
        EXPECT_EQ(GetCaptionHeight(), 0);
    }
    SetApplicationCaptionHeight(INT_MAX);
    DrawApplicationCaption("x", nullptr);
    EXPECT_EQ(grey(300, 799), 255);
}

// A pager of the theme's sizes at page 2 of 3 on a screen of 600x800.
class Pager : public Chrome {
  protected:
    Pager() : p(LoadPagerProperties()) {
        p.current_page = 2;
        p.total_pages = 3;
        for (ibitmap *icon : {p.icon_left, p.icon_right}) { // without a theme they are white
            EXPECT_TRUE(icon->width == 20 && icon->height == 30 && icon->data[0] == 0xFF);
            std::memset(icon->data, 0, raster::pixel_bytes(*icon));
        }
    }
    ~Pager() override { std::free(p.icon_left), std::free(p.icon_right); }
    void expect_idle() {
        const std::vector<uint8_t> now = screen();
        DrawPager(&p);
        EXPECT_EQ(screen(), now);
    }
    ipager p;
};

TEST_F(Pager, Geometry) {
    EXPECT_TRUE((GetPagerRect(&p) == irect{38, 758, 524, 42, 0}));
    EXPECT_EQ(GetPagerHeight(&p), 42);
    EXPECT_TRUE(GetPagerRect(nullptr) == GetPagerRect(&p));
    EXPECT_EQ(GetPagerHeight(nullptr), 0);
    SetOrientation(1);
    EXPECT_TRUE((GetPagerRect(&p) == irect{138, 558, 524, 42, 0}));
    EXPECT_EQ(p.orientation, 1);
    SetOrientation(0);
    p.left_width = 400;
    EXPECT_EQ(GetPagerRect(&p).x, 35); // wider than the screen: the indent holds
    UpdatePager(nullptr);
}

TEST_F(Pager, DrawsWhatLeadsSomewhere) {
    struct {
        int current, total;
        bool left, right;
    } const cases[] = {
        {1, 1, false, false}, {1, 2, false, true}, {2, 2, true, false}, {2, 3, true, true}};
    for (const auto &c : cases) {
        FillArea(0, 0, 600, 800, DGRAY);
        p.current_page = c.current, p.total_pages = c.total;
        DrawPager(&p);
        const auto has_ink = [](int from, int to) {
            for (int y = 762; y < 796; ++y)
                for (int x = from; x < to; ++x)
                    if (grey(x, y) < 128) return true;
            return false;
        };
        EXPECT_EQ(has_ink(40, 218), c.left);
        EXPECT_EQ(has_ink(382, 560), c.right);
        EXPECT_EQ(grey(0, 758), 0); // dotted lines: the top over the whole width,
        EXPECT_EQ(grey(1, 758), 0x55);
        for (const int x : {38, 219, 380, 561}) // and one at each edge of an area
            EXPECT_TRUE(grey(x, 761) == 0 && grey(x, 762) == 255 && grey(x, 763) == 0) << x;
        EXPECT_TRUE(grey(37, 780) == 0x55 && grey(562, 780) == 0x55 && grey(300, 757) == 0x55);
    }
    EXPECT_TRUE(headless::updates().empty());
}

TEST_F(Pager, PointerEventsOnTheStrip) {
    for (const int type : {29, 30, 31, 34, 35, 39, 44, 45})
        EXPECT_EQ(IsPagerEvent(&p, type, 100, 780), 1) << type;
    for (const int type : {0, 25, 28, 32, 38, 46}) {
        EXPECT_EQ(IsPagerEvent(&p, type, 100, 780), 0) << type;
        EXPECT_EQ(PagerHandler(&p, type, 100, 780), 0) << type;
    }
    struct {
        int x, y, inside;
    } const places[] = {{38, 758, 1},  {562, 800, 1}, {37, 780, 0},         {563, 780, 0},
                        {100, 757, 0}, {100, 801, 0}, {INT_MIN, INT_MAX, 0}};
    for (const auto &at : places) EXPECT_EQ(IsPagerEvent(&p, 30, at.x, at.y), at.inside) << at.x;
    EXPECT_EQ(IsPagerEvent(nullptr, 30, 100, 780), 0);
    ipager flat = p;
    flat.height = 0;
    EXPECT_EQ(IsPagerEvent(&flat, 30, 100, 780), 0);
    loadHwConfigEmulator("0x0010111101010041"); // no touch panel
    ASSERT_EQ(device_touchpanel(), 0);
    EXPECT_EQ(IsPagerEvent(&p, 30, 100, 780), 0);
    EXPECT_EQ(GetPagerHeight(&p), 0);
}

TEST_F(Pager, TapsBecomePageKeys) {
    constexpr int left = 100, page = 300, right = 500, y = 780;
    struct {
        const char *what;
        int current, down, up;
        const char *pressed, *key;
    } const cases[] = {
        {"back", 2, left, left, "36,756 184x44", "KEYPRESS(24,0) "},
        {"on", 2, right, right, "380,756 184x44", "KEYPRESS(25,0) "},
        {"no page before", 1, left, left, "", ""},
        {"no page after", 3, right, right, "", ""},
        {"on the counter", 2, page, page, "", ""},
        {"from an arrow to the counter", 2, left, page, "36,756 184x44", ""},
        {"from one arrow to the other", 2, left, right, "36,756 184x44", "KEYPRESS(25,0) "},
    };
    for (const auto &c : cases) {
        p.current_page = c.current;
        DrawPager(&p);
        headless::clear_updates();
        headless::clear_events();
        EXPECT_EQ(PagerHandler(&p, EVT_POINTERDOWN, c.down, y), 1);
        EXPECT_EQ(last_update(), c.pressed) << c.what;
        EXPECT_EQ(PagerHandler(&p, EVT_POINTERUP, c.up, y), 1);
        if (*c.pressed != '\0') {
            EXPECT_EQ(last_update(), "36,756 528x44") << c.what;
        }
        expect_idle();
        headless::advance(0);
        EXPECT_EQ(headless::events(), c.key) << c.what;
    }
}

TEST_F(Pager, APressStaysPendingWhenTheFingerLiftsOutside) {
    DrawPager(&p);
    PagerHandler(&p, EVT_POINTERDOWN, 100, 780);
    const std::vector<uint8_t> pressed = screen();
    EXPECT_EQ(PagerHandler(&p, EVT_POINTERUP, 100, 700), 0);
    EXPECT_EQ(screen(), pressed);
    EXPECT_EQ(PagerHandler(&p, EVT_POINTERUP, 500, 780), 1);
    expect_idle();
    headless::advance(0);
    EXPECT_EQ(headless::events(), "KEYPRESS(25,0) ");
}

TEST_F(Pager, DraggingGivesThePressUp) {
    DrawPager(&p);
    PagerHandler(&p, EVT_POINTERDOWN, 100, 780);
    EXPECT_EQ(PagerHandler(&p, EVT_POINTERDRAG, 110, 780), 1);
    expect_idle();
    headless::clear_updates();
    EXPECT_EQ(PagerHandler(&p, EVT_POINTERUP, 100, 780), 1);
    EXPECT_EQ(PagerHandler(&p, EVT_POINTERDRAG, 100, 780), 1);
    headless::advance(0);
    EXPECT_EQ(headless::events(), "");
    EXPECT_TRUE(headless::updates().empty());
}

TEST_F(Pager, AbsurdGeometry) {
    const int values[] = {INT_MIN, -1, 0, 1, INT_MAX};
    for (const int a : values)
        for (const int b : values) {
            ipager odd = p;
            odd.height = a, odd.separator_size = b, odd.left_width = a, odd.page_width = b;
            odd.current_page = INT_MIN, odd.total_pages = INT_MAX;
            DrawPager(&odd);
            PagerHandler(&odd, EVT_POINTERDOWN, a, b);
            PagerHandler(&odd, EVT_POINTERUP, a, b);
        }
    DrawPager(nullptr);
    EXPECT_EQ(PagerHandler(nullptr, EVT_POINTERDOWN, 100, 780), 0);
}

TEST_F(Chrome, DrawingLeavesTheFontSelectionAsItWas) {
    ifont *font = OpenFont("null", 20, 1), *other = OpenFont("null", 20, 1);
    font->color = DGRAY;
    { const text::FontScope scope(font); }
    EXPECT_EQ(GetFont(), nullptr);
    SetFont(other, LGRAY);
    {
        const text::FontScope scope(font);
        EXPECT_TRUE(GetFont() == font && kvstate.current_color == DGRAY);
    }
    EXPECT_TRUE(GetFont() == other && kvstate.current_color == LGRAY);
    CloseFont(font);
    EXPECT_EQ(GetFont(), other);
    CloseFont(other);
    EXPECT_EQ(GetFont(), nullptr);
}

TEST_F(Chrome, KeylockIconComesAndGoes) {
    SetClip(0, 0, 1, 1);
    DrawLine(0, 0, 599, 799, BLACK);
    const std::vector<uint8_t> before = screen();
    ASSERT_TRUE(keylock::show_icon());
    EXPECT_EQ(grey(512 + 24, 36), 0); // 600 - 48 - 32 is 520, down to a multiple of 16
    EXPECT_EQ(grey(511, 50), 255);
    EXPECT_EQ(kvstate.canvas->clipx2, 0);
    keylock::restore_under_icon();
    EXPECT_EQ(screen(), before);
}

} // namespace
