// SPDX-License-Identifier: MIT
// An application whose handler is an object, or a lambda, which ends as it is told and says what
// happens. What it owns must be gone by the end, which the count of fonts, bitmaps and settings
// tells, and a sanitizer.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <kelvane.hpp>

namespace {

using kelvane::Bitmap;
using kelvane::Config;
using kelvane::Font;

static_assert((ALIGN_CENTER | BITMAP_BOTTOM) == 0x42);
static_assert((TEXT_DOTS | VALIGN_MIDDLE | FRAME_HEADER) == (0x220 | 0x20000000));
static_assert(!std::is_copy_constructible_v<Font> && std::is_nothrow_move_constructible_v<Font> &&
              !std::is_copy_constructible_v<Bitmap> && !std::is_copy_assignable_v<Config> &&
              sizeof(Bitmap) == sizeof(ibitmap *));

std::string how_to_end;

void check(bool is_so, const char *what) {
    if (!is_so) std::printf("not so: %s\n", what);
}

int end() {
    if (how_to_end == "close") CloseApp();
    if (how_to_end == "exit") std::exit(7);
    if (how_to_end == "leave") LeaveKelvaneMain();
    return 1;
}

void check_guards() {
    const irect before = GetClipRect();
    const Font large("default", 30), small("default", 10, false);
    large.use(BLACK);
    unsigned char pixels[4] = {9, 9, 9, 9};
    icanvas canvas = {2, 2, 2, 8, 0, 1, 0, 1, pixels};
    {
        const kelvane::ClipGuard clip(iRect(5, 6, 7, 8, 0));
        const kelvane::FontGuard font(small, WHITE);
        const kelvane::CanvasGuard drawn_on(&canvas);
        check(GetFont() == small.get() && GetCanvas() == &canvas, "current within the scope");
        FillArea(0, 0, 9, 1, BLACK);
    }
    check(pixels[0] == 0 && pixels[3] == 9, "drawn on the canvas");
    check(GetFont() == large.get() && GetCanvas() != &canvas, "as before the scope");
    const irect after = GetClipRect();
    check(after.x == before.x && after.y == before.y && after.w == before.w && after.h == before.h,
          "the clip is as before");
}

void check_pages() {
    const Font font("default", 20);
    const kelvane::FontGuard current(font);
    std::string text;
    for (int i = 0; i < 2000; ++i) text += "words ";
    const std::vector<int> starts = kelvane::paginate(text, 60, 30, 30, ALIGN_LEFT);
    check(starts.size() == 2000, "a word a page, in rooms that grow");
    check(starts[1] == 6 && starts[1999] == 1999 * 6, "where they start");
}

class Application {
  public:
    Application() : picture_(BitmapFromScreen(0, 0, 20, 10)) {
        check(font_ && picture_ && settings_, "the screen is open");
        check(picture_.width() == 20 && picture_.height() == 10, "sizes");
        check(Bitmap().width() == 0 && !Bitmap::load("none"), "no bitmap");
        settings_.write("size", 12);
        settings_.write("name", "Ada");
        settings_.write("gone", 1);
        settings_.erase("gone");
        std::puts("made");
    }
    ~Application() { std::puts("destroyed"); }
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    int handle(int type, int par1, int) {
        if (type == EVT_INIT) std::puts("EVT_INIT");
        if (type == EVT_EXIT) std::puts("EVT_EXIT");
        if (type == EVT_SHOW) draw();
        return type == EVT_KEYPRESS && par1 == KEY_OK ? end() : 0;
    }

  private:
    void draw() {
        check_guards();
        check_pages();
        ilistrows rows{};
        rows.count = 3;
        list_ = kelvane::SelectionList(rows);
        list_.place(iRect(0, 0, 300, 200, 0));
        list_.draw();
        check(list_.handle(EVT_KEYPRESS, KEY_UP, 0) == 1, "a key of a list");
        check(SelectionList_GetSelected(list_.get()) == 2, "round and round");
        kelvane::ScrollView view([](const irect *, int, void *) {});
        check(view && view.handle(EVT_KEYPRESS, KEY_UP, 0) == 0, "nothing to scroll");
        picture_.draw(5, 5);
        Bitmap moved = std::move(picture_);
        moved.set_transparent(15);
        picture_ = std::move(moved);
        check(!moved && picture_, "moved");
        check(settings_.read("size", 0) == 12 && settings_.read("none", 3) == 3, "numbers");
        check(settings_.read("name", "") == "Ada" && settings_.read("none", "x") == "x", "texts");
        for (const auto &[name, value] : settings_.values())
            std::printf("%s = %s\n", name.c_str(), value.c_str());
    }

    Font font_{"default", 24};
    Config settings_{"./application.cfg"};
    Bitmap picture_;
    kelvane::SelectionList list_;
};

int run_lambda() {
    auto held = std::make_unique<std::string>("a text that only the lambda has");
    return kelvane::run([text = std::move(held)](int type, int par1, int) {
        if (type == EVT_EXIT) std::puts(text->c_str());
        return type == EVT_KEYPRESS && par1 == KEY_OK ? end() : 0;
    });
}

} // namespace

int main(int argc, char **argv) {
    how_to_end = argc > 2 ? argv[2] : "";
    const int status = argc > 1 && std::strcmp(argv[1], "lambda") == 0
                           ? run_lambda()
                           : kelvane::run<Application>();
    std::printf("left with %d\n", status);
    return status;
}
