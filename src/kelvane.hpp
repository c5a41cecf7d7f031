// SPDX-License-Identifier: MIT
/**
 * @file kelvane.hpp
 * kelvane.h for C++17 and later, an addition: owners of what has to be given back, guards of what
 * is current, and handlers that are objects. Header only; nothing here has to be used, and all of
 * it goes together with the functions of kelvane.h.
 *
 *     class Reader {
 *       public:
 *         int handle(int type, int par1, int par2);
 *       private:
 *         kelvane::Font font_{"default", 24};
 *         kelvane::Config settings_{"./system/config/reader.cfg"};
 *     };
 *     int main() { return kelvane::run<Reader>(); }
 *
 * What a function of this header may throw is std::bad_alloc. A handler that throws ends the
 * program.
 */
#ifndef KELVANE_HPP
#define KELVANE_HPP

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "kelvane.h"

namespace kelvane {

// --- flags

namespace detail {

template <class E, class... Kinds>
constexpr bool is_one_of = (std::is_same_v<E, Kinds> || ...);
template <class E>
constexpr bool is_flag =
    is_one_of<E, decltype(ALIGN_LEFT), decltype(BITMAP_FIT), decltype(MIRROR_VERTICAL),
              decltype(LOAD_LEFT), decltype(RECT_ROUND_BL), decltype(FRAME_HEADER),
              decltype(DEF_BUTTON2), decltype(KBD_PASSWORD), decltype(KV_NAME_COMPONENT)>;

struct CloseFont {
    void operator()(ifont *font) const { ::CloseFont(font); }
};
struct FreeBitmap {
    void operator()(ibitmap *bitmap) const { std::free(bitmap); }
};
struct CloseConfig {
    void operator()(iconfig *config) const { ::CloseConfig(config); }
};
struct FreeWords {
    void operator()(char **words) const { freeWordsWithPrefix(words); }
};
struct DestroyWidget {
    void operator()(iselectionlist *list) const { ::SelectionList_Destroy(list); }
    void operator()(iscrollview *view) const { ::ScrollView_Destroy(view); }
};

} // namespace detail

} // namespace kelvane

/** Flags of two kinds in one number, where the language would warn: ALIGN_CENTER | BITMAP_FIT. */
template <class A, class B,
          std::enable_if_t<!std::is_same_v<A, B> && kelvane::detail::is_flag<A> &&
                               kelvane::detail::is_flag<B>,
                           int> = 0>
constexpr int operator|(A a, B b) {
    return static_cast<int>(a) | static_cast<int>(b);
}

namespace kelvane {

// --- owners: a std::unique_ptr each, with what it owns by name

/** A font; false when it could not be opened. */
class Font : public std::unique_ptr<ifont, detail::CloseFont> {
  public:
    using unique_ptr::unique_ptr;
    /** OpenFont(). */
    Font(const char *name, int size, bool is_smooth = true)
        : unique_ptr(OpenFont(name, size, is_smooth ? 1 : 0)) {}
    /** GetThemeFont(). */
    static Font of_theme(const char *name, const char *deflt) {
        return Font(GetThemeFont(name, deflt));
    }
    /** SetFont(): nothing when the font could not be opened. -1: in its own colour. */
    void use(int color = -1) const { SetFont(get(), color); }
};

/** A bitmap, such as most functions of bitmaps.h and pictures.h return; false for none. */
class Bitmap : public std::unique_ptr<ibitmap, detail::FreeBitmap> {
  public:
    using unique_ptr::unique_ptr;
    /** LoadPicture(). */
    static Bitmap load(const char *path, int w = -1, int h = -1, int how = PICTURE_FIT,
                       bool is_dithered = true) {
        return Bitmap(LoadPicture(path, w, h, how, is_dithered ? 1 : 0));
    }
    int width() const { return get() ? get()->width : 0; }
    int height() const { return get() ? get()->height : 0; }
    /** DrawBitmap(): nothing for none. */
    void draw(int x, int y) const { DrawBitmap(x, y, get()); }
    /** SetTransparentColor(). */
    void set_transparent(int level) {
        ibitmap *bitmap = release();
        SetTransparentColor(&bitmap, level);
        reset(bitmap);
    }
};

/**
 * Rows that an object fills, by its function `void fill(int row, ilistrow &out)`, and hears of, by
 * `void told(int action, int row)`. It is to live, and stay where it is, as long as the list.
 * @param rows all that is not one of these
 */
template <class Object>
ilistrows rows_of(Object &object, ilistrows rows = {}) {
    rows.context = &object;
    rows.fill = [](int row, ilistrow *out, void *context) noexcept {
        static_cast<Object *>(context)->fill(row, *out);
    };
    rows.hproc = [](int action, int row, void *context) noexcept {
        static_cast<Object *>(context)->told(action, row);
    };
    return rows;
}

/** A list in a page; false when there was no memory for it. */
class SelectionList : public std::unique_ptr<iselectionlist, detail::DestroyWidget> {
  public:
    using unique_ptr::unique_ptr;
    /** SelectionList_Create(). */
    explicit SelectionList(const ilistrows &rows) : unique_ptr(SelectionList_Create(&rows)) {}
    void place(const irect &at) { SelectionList_SetRect(get(), &at); }
    void draw() { SelectionList_Draw(get()); }
    void draw_row(int row) { SelectionList_DrawRow(get(), row); }
    /** SelectionList_HandleEvent(). */
    int handle(int type, int par1, int par2) {
        return SelectionList_HandleEvent(get(), type, par1, par2);
    }
};

/** A view of what is higher than its place; false when there was no memory for it. */
class ScrollView : public std::unique_ptr<iscrollview, detail::DestroyWidget> {
  public:
    using unique_ptr::unique_ptr;
    /** ScrollView_Create(). */
    explicit ScrollView(kv_scrollproc drawer, void *context = nullptr)
        : unique_ptr(ScrollView_Create(drawer, context)) {}
    void place(const irect &at) { ScrollView_SetRect(get(), &at); }
    void draw() { ScrollView_Draw(get()); }
    /** ScrollView_HandleEvent(). */
    int handle(int type, int par1, int par2) {
        return ScrollView_HandleEvent(get(), type, par1, par2);
    }
};

/** Settings of a file, saved when it is closed. */
class Config : public std::unique_ptr<iconfig, detail::CloseConfig> {
  public:
    using unique_ptr::unique_ptr;
    /** OpenConfig(). */
    explicit Config(const char *path, iconfigedit *defaults = nullptr)
        : unique_ptr(OpenConfig(path, defaults)) {}
    /** A file of an application's own data, in AppDataPath(); false when there is no place. */
    static Config of_application(const char *app, const char *name) {
        char path[4096];
        return AppDataPath(app, name, path, sizeof path) ? Config(path) : Config();
    }

    int read(const char *name, int deflt) const { return ReadInt(get(), name, deflt); }
    std::string read(const char *name, const std::string &deflt) const {
        const char *value = ReadString(get(), name, deflt.c_str());
        return value ? value : deflt;
    }
    void write(const char *name, int value) { WriteInt(get(), name, value); }
    void write(const char *name, const std::string &value) {
        WriteString(get(), name, value.c_str());
    }
    void erase(const char *name) { DeleteString(get(), name); }
    /** SaveConfig(). */
    bool save() { return SaveConfig(get()) != 0; }

    /**
     * All names with their values, in the order of the names:
     *
     *     for (const auto &[name, value] : settings.values()) ...
     */
    std::map<std::string, std::string> values() const {
        std::map<std::string, std::string> all;
        if (!get()) return all;
        for (const ihash layer : {get()->hash, get()->modified_hash, get()->vhash})
            if (layer) hash_enumerate(layer, nullptr, add_name, &all);
        for (auto &[name, value] : all) value = read(name.c_str(), std::string());
        return all;
    }

  private:
    // Through the library, out of which nothing may be thrown: a name that finds no memory ends the
    // program.
    static int add_name(const char *name, void *, void *all) noexcept {
        (*static_cast<std::map<std::string, std::string> *>(all))[name];
        return 0;
    }
};

/** The words of the open dictionary that start with a prefix, for a loop. */
class WordList : public std::unique_ptr<char *, detail::FreeWords> {
  public:
    using unique_ptr::unique_ptr;
    /** GetWordListWithPrefix(); "" starts all words. */
    static WordList with_prefix(const char *prefix) {
        return WordList(GetWordListWithPrefix(prefix));
    }
    const char *const *begin() const { return get(); }
    const char *const *end() const {
        const char *const *last = get();
        while (last && *last) ++last;
        return last;
    }
    std::size_t size() const { return static_cast<std::size_t>(end() - begin()); }
};

// --- dictionaries

/** EnumDictionaries(). */
inline std::vector<std::string> dictionary_names() {
    std::vector<std::string> names;
    for (const char *const *name = EnumDictionaries(); name && *name; ++name)
        names.emplace_back(*name);
    return names;
}

/** A word of a dictionary, and what it means. */
struct DictionaryEntry {
    std::string word, translation;
};

/** Goes from word to word by LookupNext(). */
class DictionaryIterator {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = DictionaryEntry;
    using difference_type = std::ptrdiff_t;
    using pointer = const DictionaryEntry *;
    using reference = const DictionaryEntry &;

    /** Behind the last word. */
    DictionaryIterator() = default;
    /** At the word that LookupWord() finds; null: at the first one. */
    explicit DictionaryIterator(const char *word) { take(LookupWord, word); }

    reference operator*() const { return *entry_; }
    pointer operator->() const { return &*entry_; }
    DictionaryIterator &operator++() {
        take(LookupNext);
        return *this;
    }
    DictionaryIterator operator++(int) {
        DictionaryIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const DictionaryIterator &a, const DictionaryIterator &b) {
        return a.entry_.has_value() == b.entry_.has_value();
    }
    friend bool operator!=(const DictionaryIterator &a, const DictionaryIterator &b) {
        return !(a == b);
    }

  private:
    template <class LookUp, class... Word>
    void take(LookUp look_up, Word... from) {
        char *word, *translation;
        entry_.reset();
        if (look_up(from..., &word, &translation) != DICT_NONE) entry_ = {word, translation};
    }
    std::optional<DictionaryEntry> entry_;
};

/** Words that follow each other, for a loop. */
struct DictionaryRange {
    DictionaryIterator first;
    DictionaryIterator begin() const { return first; }
    DictionaryIterator end() const { return {}; }
};

/**
 * OpenDictionary(), and CloseDictionary() at the end; false when it could not be opened. One is
 * open at a time, and has one current word: a loop goes through once, and a look-up within it leads
 * on from where that ended.
 *
 *     const kelvane::Dictionary german("English-German");
 *     for (const auto &[word, translation] : german.words()) ...
 */
class Dictionary {
  public:
    explicit Dictionary(const char *name) : is_open_(OpenDictionary(name) != 0) {}
    ~Dictionary() {
        if (is_open_) CloseDictionary();
    }
    Dictionary(const Dictionary &) = delete;
    Dictionary &operator=(const Dictionary &) = delete;

    explicit operator bool() const { return is_open_; }
    /** All words. */
    DictionaryRange words() const { return {DictionaryIterator(nullptr)}; }
    /** The words from the one that LookupWord() finds on; none when it finds none. */
    DictionaryRange words_from(const char *word) const { return {DictionaryIterator(word)}; }

  private:
    const bool is_open_;
};

// --- guards: what is current changes, and is as before at the end of the scope

/** Drawing is limited to a rectangle. */
class ClipGuard {
  public:
    explicit ClipGuard(const irect &clip) { SetClipRect(&clip); }
    ~ClipGuard() { SetClipRect(&before_); }
    ClipGuard(const ClipGuard &) = delete;
    ClipGuard &operator=(const ClipGuard &) = delete;

  private:
    const irect before_ = GetClipRect();
};

/** Drawing goes to a canvas; null: to the screen. */
class CanvasGuard {
  public:
    explicit CanvasGuard(icanvas *canvas) { SetCanvas(canvas); }
    ~CanvasGuard() { SetCanvas(before_); }
    CanvasGuard(const CanvasGuard &) = delete;
    CanvasGuard &operator=(const CanvasGuard &) = delete;

  private:
    icanvas *const before_ = GetCanvas();
};

/**
 * A font is current; afterwards the one before, in its own colour, or none. Both are to live as
 * long; a null one keeps the font that is current.
 */
class FontGuard {
  public:
    explicit FontGuard(const ifont *font, int color = -1) { SetFont(font, color); }
    explicit FontGuard(const Font &font, int color = -1) : FontGuard(font.get(), color) {}
    ~FontGuard() {
        // No font is current when one that was is closed.
        const Font none = before_ ? Font() : Font("null", 1);
        SetFont(before_ ? before_ : none.get(), -1);
    }
    FontGuard(const FontGuard &) = delete;
    FontGuard &operator=(const FontGuard &) = delete;

  private:
    const ifont *const before_ = GetFont();
};

/** The hourglass is shown. What is drawn over it stays. */
class HourglassGuard {
  public:
    HourglassGuard() { ShowHourglass(); }
    ~HourglassGuard() { HideHourglass(); }
    HourglassGuard(const HourglassGuard &) = delete;
    HourglassGuard &operator=(const HourglassGuard &) = delete;
};

// --- menus

/** OpenMenu() whose answer goes to a lambda, or any function of an int. */
inline void open_menu(imenu *items, int pos, int x, int y, std::function<void(int)> answer) {
    static auto &last = *new std::function<void(int)>; // no destructor: a menu may outlive those
    last = std::move(answer);
    OpenMenu(items, pos, x, y, [](int index) noexcept {
        const auto chosen = last; // which may open the next menu
        chosen(index);
    });
}

// --- text

/** Paginate() with room for every page. */
inline std::vector<int> paginate(const std::string &text, int w, int first_h, int h, int flags) {
    std::vector<int> starts(text.size() / 256 + 16);
    for (;;) {
        const int room = static_cast<int>(starts.size());
        const int pages = Paginate(text.c_str(), w, first_h, h, flags, starts.data(), room);
        if (pages < room) {
            starts.resize(static_cast<std::size_t>(pages));
            return starts;
        }
        starts.resize(2 * starts.size());
    }
}

// --- applications

namespace detail {

// The one application of a type. It lives from EVT_INIT, or earlier, to the end of EVT_EXIT: the
// library ends the process without running destructors.
template <class App>
std::optional<App> &application() {
    static auto &app = *new std::optional<App>; // no destructor: EVT_EXIT may come after those
    return app;
}

template <class App, class = void>
inline constexpr bool has_handle = false;
template <class App>
inline constexpr bool
    has_handle<App, std::void_t<decltype(std::declval<App &>().handle(0, 0, 0))>> = true;

template <class App>
int hear(App &app, int type, int par1, int par2) {
    if constexpr (has_handle<App>)
        return static_cast<int>(app.handle(type, par1, par2));
    else
        return static_cast<int>(app(type, par1, par2));
}

template <class App>
int hear_event(int type, int par1, int par2) noexcept {
    std::optional<App> &app = application<App>();
    if constexpr (std::is_default_constructible_v<App>)
        if (type == EVT_INIT && !app) app.emplace();
    if (!app) return 0;
    const int answer = hear(*app, type, par1, par2);
    if (type == EVT_EXIT) app.reset();
    return answer;
}

// For main(). Without a screen there has been no event, and there will be none.
template <class App>
int run() {
    KelvaneMain(hear_event<App>);
    if (GetCanvas()) return 0;
    application<App>().reset();
    return 1;
}

} // namespace detail

/**
 * KelvaneMain() with an object as handler: its function `int handle(int type, int par1, int par2)`
 * gets the events. It is made when the screen is open, before it hears EVT_INIT, and destroyed when
 * it has heard EVT_EXIT: so what it owns is given back however the application ends. Only what its
 * constructor has made is not, when that itself calls exit().
 * @return 1, for main(), when the screen could not be opened, or after LeaveKelvaneMain() 0
 */
template <class App>
int run() {
    static_assert(detail::has_handle<App>, "int handle(int type, int par1, int par2)");
    return detail::run<App>();
}

/**
 * The same with a lambda, or any function: it and what it holds live to the end of EVT_EXIT, and of
 * this call when the screen could not be opened.
 */
template <class Handler>
int run(Handler &&handler) {
    using App = std::decay_t<Handler>;
    detail::application<App>().emplace(std::forward<Handler>(handler));
    return detail::run<App>();
}

} // namespace kelvane

#endif
