// SPDX-License-Identifier: MIT
// Boxes, frames, menus, lists, keyboards, dictionaries, and the life of an application in a device
// folder.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "failures/device.h"
#include "failures/sessions.h"
#include "kelvane/canvas.h"
#include "kelvane/config.h"
#include "kelvane/dialogs.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "kelvane/frames.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/lists.h"
#include "kelvane/menus.h"
#include "kelvane/selectors.h"
#include "kelvane/theme.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "support/dictionary_file.h"
#include "support/theme_file.h"

namespace failures {
namespace {

int answers = 0;
void answer(int button) {
    answers += button;
}

class Boxes : public Session {
  public:
    Boxes() { expected_ = draw(); }

    bool run() override { return draw() == expected_ && answers == 1; }

  private:
    static uint64_t draw() {
        answers = 0;
        if (!open_device(ignore)) return 0;
        ClearScreen();
        frame_init(0, 0, ScreenWidth(), ScreenHeight(), 0);
        DrawFrame(0, 0, ScreenWidth(), ScreenHeight(), nullptr, "Title", 0, nullptr);
        DrawApplicationCaption("Caption", nullptr);
        uint64_t seen = picture();
        Dialog3(0, "Title", "Which of these?", "One", "Two", "Three", answer);
        seen = seen * 31 + picture();
        headless::press(KEY_OK);
        Message(1, "Title", "A message that goes by itself", 500);
        seen = seen * 31 + picture();
        headless::advance(1000);
        OpenProgressbar(0, "Title", "Working", 10, nullptr);
        UpdateProgressbar("Still", 60);
        seen = seen * 31 + picture();
        CloseProgressbar();
        seen = seen * 31 + picture() + static_cast<uint64_t>(GetDialogShow());
        close_device();
        return seen;
    }

    Folder folder_;
    uint64_t expected_;
};

// A menu with its submenu, a context menu and the grid, left one after the other by a key.
class Menus : public Session {
  public:
    Menus() { expected_ = draw(); }

    bool run() override { return draw() == expected_ && answers == 2 - 1 + 3; }

  private:
    static uint64_t draw() {
        static imenu leaf[] = {{ITEM_ACTIVE, 2, "Leaf", nullptr}, {}};
        static imenu menu[] = {
            {ITEM_HEADER, 0, "Title", nullptr}, {ITEM_SUBMENU, 1, "More", leaf}, {}};
        static const imenu cells[] = {{ITEM_ACTIVE, 3, "Cell", nullptr}, {}};
        answers = 0;
        if (!open_device(ignore)) return 0;
        ClearScreen();
        OpenMenu(menu, 1, 20, 20, answer);
        uint64_t seen = press_and_see(KEY_OK);
        seen = seen * 31 + press_and_see(KEY_OK);
        if (icontext_menu *context = CreateContextMenu("word")) {
            context->menu = leaf;
            context->hproc = answer;
            context->pos_selected_item = iRect(100, 100, 50, 20, 0);
            OpenContextMenu(context);
        }
        seen = seen * 31 + press_and_see(KEY_BACK);
        OpenMenu3x3(cells, nullptr, 0, answer);
        seen = seen * 31 + press_and_see(KEY_OK);
        close_device();
        return seen;
    }
    static uint64_t press_and_see(int key) {
        const uint64_t before = picture();
        headless::press(key);
        return before * 31 + picture();
    }

    Folder folder_;
    uint64_t expected_;
};

// A list, the selectors, and a view of a text, one after the other.
class Lists : public Session {
  public:
    Lists() {
        for (const char *path : {"many/a", "many/b", "many/c"})
            std::filesystem::create_directories(path);
        expected_ = draw();
    }

    bool run() override { return draw() == expected_ && answers == 4 + 2 + 1 + 28 + 1; }

  private:
    static void fill(int row, ilistrow *out, void *) {
        out->title = row % 2 ? "Odd" : "Even";
        out->value = "value";
    }
    static void told(int action, int row, void *) {
        if (action == LIST_CHOSEN) answers += row;
    }
    static void take_number(int number, void *) { answers += number; }
    static void take_path(const char *path, void *) { answers += path ? 1 : 0; }
    static void take_font(const char *name, int, void *) { answers += name ? 1 : 0; }
    static void take_moment(const imoment *m, void *) { answers += m ? m->day : 0; }

    static uint64_t see_after(std::initializer_list<int> keys) {
        uint64_t seen = picture();
        for (const int key : keys) headless::press(key);
        return seen * 31 + picture();
    }
    static uint64_t draw_view() {
        iscrollview *view = ScrollView_Create(nullptr, nullptr);
        const irect place = iRect(10, 10, 300, 300, 0);
        ScrollView_SetRect(view, &place);
        ScrollView_SetContent(view, 1000, 20);
        ScrollView_Draw(view);
        ScrollView_HandleEvent(view, EVT_KEYPRESS, KEY_NEXT, 0);
        ScrollView_Destroy(view);
        return picture();
    }
    static uint64_t draw() {
        answers = 0;
        if (!open_device(ignore)) return 0;
        ClearScreen();
        ilist list{};
        list.title = "List";
        list.rows.count = 100;
        list.rows.fill = fill;
        list.rows.hproc = told;
        const int number = OpenList(&list);
        uint64_t seen = see_after({KEY_UP, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN});
        seen = seen * 31 + see_after({KEY_OK, KEY_BACK});
        CloseList(number);
        OpenPageSelector(1, 9, take_number, nullptr);
        seen = seen * 31 + see_after({KEY_UP, KEY_OK});
        // Into a folder with fewer rows, to the last of them, and up again.
        const int folders = OpenDirectorySelector(nullptr, "many", nullptr, take_path, nullptr);
        seen = seen * 31 + see_after({KEY_DOWN, KEY_OK, KEY_UP, KEY_OK, KEY_UP, KEY_OK});
        CloseSelector(folders);
        const imoment start = {2023, 1, 31, 0, 0};
        OpenDateSelector(&start, take_moment, nullptr);
        LoadLanguage("another"); // the sheet is laid out anew
        seen = seen * 31 + see_after({KEY_RIGHT, KEY_UP, KEY_OK});
        LoadLanguage("en");
        const int fonts = OpenFontSelector("default", 24, take_font, nullptr);
        seen = seen * 31 + see_after({KEY_OK, KEY_BACK, KEY_OK, KEY_OK});
        CloseSelector(fonts);
        seen = seen * 31 + draw_view();
        close_device();
        return seen;
    }

    Folder folder_;
    uint64_t expected_;
};

// A keyboard for keys, which is cancelled, and one for fingers, whose text is entered.
class Keyboards : public Session {
  public:
    Keyboards() {
        write_file(
            "system/language/keyboard/en.kbd",
            "EN:\n\n\nqwertyuio\n\n\n\n\n\nQWE\n\n\n\nq w sp:5 sh\na s\n--\nQ W\n--\n1\n--\n");
        write_file("system/language/keyboard/en.extkbd", "EN\nq w\n");
        expected_ = draw();
    }

    bool run() override { return draw() == expected_ && std::strcmp(text_, "w") == 0; }

  private:
    static uint64_t draw() {
        std::strcpy(text_, "old");
        if (!open_device(ignore)) return 0;
        ClearScreen();
        LoadKeyboard("en");
        loadHwConfigEmulator("0x0010111101011041");
        uint64_t seen = edit(0, KEY_BACK);
        loadHwConfigEmulator("0x0010111101013041");
        seen = seen * 31 + edit(KBD_PASSWORD, KEY_OK);
        close_device();
        return seen;
    }
    static uint64_t edit(int flags, int ending) {
        OpenKeyboard("Title", text_, 9, flags, nullptr);
        headless::raw(hw::typed_character, 0, 'q', 0);
        headless::press(KEY_MENU);
        headless::pointer(EVT_POINTERDOWN, 300, 600);
        const uint64_t seen = picture();
        headless::pointer(EVT_POINTERUP, 9, 9);
        headless::press(ending);
        CloseKeyboard();
        return seen * 31 + picture();
    }

    inline static char text_[40];
    Folder folder_;
    uint64_t expected_;
};

// The box beside a word, the view in its place, a step, and the page again.
class DictionaryView : public Session {
  public:
    DictionaryView() {
        dictionaries::install(
            dictionaries::file_of({{{"a", "<noun>\n1. first\n2. second"}, {"b", "other"}}}));
        expected_ = draw();
    }

    bool run() override { return draw() == expected_; }

  private:
    static uint64_t draw() {
        static const irect word = {100, 100, 50, 20, 0};
        if (!open_device(ignore)) return 0;
        ClearScreen();
        OpenFastTranslation("a", &word);
        uint64_t seen = picture();
        OpenDictionaryView("a", &word);
        for (const int key : {KEY_DOWN, KEY_RIGHT, KEY_BACK}) {
            seen = seen * 31 + picture();
            headless::press(key);
        }
        seen = seen * 31 + picture();
        CloseDictionary();
        close_device();
        return seen;
    }

    Folder folder_;
    uint64_t expected_;
};

int shown = 0, ticks = 0;
int show(int type, int, int) {
    if (type == EVT_SHOW) ++shown, FullUpdate();
    return 0;
}
void tick(void *) {
    ++ticks;
}

// From the first line of an application to its last.
class Life : public Session {
  public:
    Life() {
        write_file("system/config/global.cfg", "language=de\ntheme=t\n");
        write_file("system/config/device.cfg",
                   "model=Test\npartner=p\nhwconfig=0x10111201003043\n");
        write_file("system/language/de.txt", "Deutsch\n@A=b\n");
        write_file("system/themes/t.tqt", ThemeFile("border.size=3\n").bytes());
        write_file("keys.script", "wait 50\npress NEXT\nwait 50\ntap 10 10\nwait 99999\n");
        for (const char *file : {"system/config/global.cfg", "system/config/device.cfg"})
            keep(file);
        setenv("KELVANE_SCRIPT", "keys.script", 1);
        setenv("KELVANE_TRACE", "trace.jsonl", 1);
        setenv("KELVANE_RECORD", "recorded.script", 1);
        setenv("KELVANE_PANEL", "epaper", 1);
    }
    ~Life() override {
        for (const char *name :
             {"KELVANE_SCRIPT", "KELVANE_TRACE", "KELVANE_RECORD", "KELVANE_PANEL"})
            unsetenv(name);
    }

    bool run() override {
        shown = ticks = 0;
        if (!open_device(show)) return false;
        SetHardTimer("tick", tick, 100);
        headless::advance(500);
        PartialUpdate(1, 2, 30, 40);
        ScheduleUpdate(5, 5, 20, 20, 0);
        SetOrientation(1);
        headless::advance(400);
        char word[100] = "";
        const bool is_read = hw_read_file("system/config/device.cfg", word, sizeof word) > 0;
        const bool is_set = *GetLangText("@A") == 'b' && GetThemeInt("border.size", 0) == 3 &&
                            *cfg_read_string("partner", "") == 'p';
        SetOrientation(0);
        OpenProgressbar(0, "Title", "Working", 10, nullptr);
        const int boxes = GetDialogShow();
        close_device();
        return is_read && is_set && boxes == 1 && shown == 1 && ticks == 1;
    }

  private:
    Folder folder_;
};

constexpr Area areas_here[] = {{"Boxes", make<Boxes>},
                               {"Menus", make<Menus>},
                               {"Lists", make<Lists>},
                               {"Keyboards", make<Keyboards>},
                               {"DictionaryView", make<DictionaryView>},
                               {"Life", make<Life>}};

} // namespace

constinit const std::span<const Area> device_areas = areas_here;

} // namespace failures
