// SPDX-License-Identifier: MIT
// Opens and closes the view.
#include "dictionary_view/open.h"

#include <memory>
#include <utility>

#include "dictionary_view/box.h"
#include "dictionary_view/choice.h"
#include "dictionary_view/draw.h"
#include "dictionary_view/view.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/dialogs.h"
#include "kelvane/dictionary_view.h"
#include "kelvane/keyboard.h"
#include "kelvane/updates.h"
#include "keyboard/handlers.h"
#include "menus/handler.h"
#include "modal/input.h"
#include "raster/rects.h"
#include "runtime/queue.h"

namespace dictionary_view {
namespace {

constexpr int first_repeat_ms = 750, next_repeat_ms = 240;
constexpr int message_ms = 3000;

std::unique_ptr<View> open_view;
int last_id = 0;
int unheard = 0; // events that were queued for a view that is gone

std::unique_ptr<View> make_view(const char *word, const irect *where) {
    auto v = std::make_unique<View>();
    v->mark = Mark(where);
    v->orientation = kvstate.orientation;
    v->look = load_look();
    v->toolbar = load_toolbar();
    v->name = open_name();
    find(*v, word);
    return v;
}

int show(std::unique_ptr<View> made) {
    open_view = std::move(made);
    View &v = *open_view;
    v.id = ++last_id;
    unheard = queue_count(view_handler);
    v.mark.show();
    v.taken.under.save(v.place.whole);
    v.taken.take_input(view_handler, 0, close_view);
    SetKeyboardRate(first_repeat_ms, next_repeat_ms);
    draw_view(v);
    modal::update(raster::Box(raster::joined(v.place.whole, v.mark.area())));
    return v.id;
}

int open(const char *word, const irect *where) {
    return ground::guarded(0, [&] {
        if (!make_room() || !has_dictionary()) return 0;
        return show(make_view(word, where));
    });
}

// What the view has opened above itself. A dialog of the application stays.
void close_above(const View &v) {
    if (v.has_keyboard && keyboard::has_input()) CloseKeyboard();
    if (v.has_menu && GetEventHandler() == menus::menu_handler) CloseContextMenu();
}

enum class After { update, nothing };

void close_top(After after) {
    const std::unique_ptr<View> v = std::move(open_view);
    const bool is_page_back = v->taken.under.restore();
    const bool is_word_back = v->mark.hide();
    if (!is_page_back || !is_word_back) SendEvent(v->taken.previous(), EVT_SHOW, 0, 0);
    if (after == After::update) {
        WaitForUpdateComplete();
        FullUpdate();
    }
    v->taken.give_input_back();
}

} // namespace

View *view() {
    return open_view.get();
}

bool is_for_former_view() {
    return !open_view || (unheard > 0 && unheard-- > 0);
}

void close_view() {
    if (open_view) close_top(After::update);
}

void reset() {
    open_view.reset();
    unheard = 0;
    reset_box();
}

bool make_room() {
    if (!kvstate.framebuffer) return false;
    if (!close_box()) return false;
    if (!open_view) return true;
    if (GetEventHandler() != view_handler) return false;
    close_top(After::nothing);
    return true;
}

bool has_dictionary() {
    if (open_any()) return true;
    Message(ICON_INFORMATION, "", "@DicNone", message_ms);
    return false;
}

} // namespace dictionary_view

void OpenDictionaryView(const char *word, const irect *where) {
    dictionary_view::open(word, where);
}

int OpenControlledDictionaryView(const char *word, const irect *where) {
    return dictionary_view::open(word, where);
}

void CloseControlledDictionaryView(int id) {
    using namespace dictionary_view;
    View *v = view();
    if (!v || v->id != id || id == 0) return;
    v->is_to_close = true;
    close_above(*v);
    if (view() == v && GetEventHandler() == view_handler) close_view();
}
