// SPDX-License-Identifier: MIT
// Opens boxes over each other and closes them.
#include "dialogs/stack.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dialogs/draw.h"
#include "dialogs/look.h"
#include "dialogs/question.h"
#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "runtime/interface_flags.h"
#include "text/font_scope.h"

namespace dialogs {
namespace {

constexpr int dimmed_percent = 60;

// Whether the box made last has buttons; anything may have after a close.
enum class LastBox { none, with_buttons, without_buttons };

std::vector<OpenBox> stack;
LastBox last_box = LastBox::none;
unsigned last_id = 0;
int components = 0; // open ones that are no boxes

LastBox with(const Present &buttons) {
    const bool any = std::find(buttons.begin(), buttons.end(), true) != buttons.end();
    return any ? LastBox::with_buttons : LastBox::without_buttons;
}

void dim_screen() {
    const raster::ScreenScope screen;
    Transparent(0, 0, ScreenWidth(), ScreenHeight(), dimmed_percent);
}

irect whole_screen() {
    return {0, 0, ScreenWidth(), ScreenHeight(), 0};
}

// Where a box is drawn: its buttons may stand below it.
irect drawn_area(const OpenBox &box) {
    return box.button_count() > 0 ? raster::joined(box.layout.box, box.layout.row) : box.layout.box;
}

// A message leaves the handler as it is.
kv_handler handler_beneath(const OpenBox &box) {
    return box.kind == Kind::message ? GetEventHandler() : box.taken.previous();
}

// Where there was no memory for the picture of what lay beneath, or the screen was turned since,
// the application draws it anew.
void put_screen_back(OpenBox &box) {
    {
        const raster::ScreenScope screen;
        FillAreaRect(&box.layout.box, WHITE);
    }
    show(Show::reaction);
    if (!box.taken.under.restore()) SendEvent(handler_beneath(box), EVT_SHOW, 0, 0);
    WaitForUpdateComplete();
    FullUpdate();
}

// The handler hears EVT_RESTORE as after every box; a key that was held is not its own any more.
void keep_input() {
    const KeyRate rate = key_rate();
    kv_seteventhandler(GetEventHandler());
    SetKeyboardRate(rate.first_ms, rate.next_ms);
}

void give_input_back(OpenBox &box) {
    if (handler_beneath(box) != question_handler) clear_interface_flags(UI_DIALOG_OPEN);
    if (box.kind == Kind::message)
        keep_input();
    else
        box.taken.give_input_back();
}

} // namespace

Present OpenBox::present() const {
    Present buttons;
    std::transform(labels.begin(), labels.end(), buttons.begin(),
                   [](const auto &label) { return label.has_value(); });
    return buttons;
}

int OpenBox::button_count() const {
    const Present buttons = present();
    return static_cast<int>(std::count(buttons.begin(), buttons.end(), true));
}

OpenBox make_box(Kind kind, int flags, const char *text, Present buttons) {
    OpenBox box;
    box.kind = kind;
    box.icon = icon_of(flags);
    box.text = text ? GetLangText(text) : "";
    // A dialog goes by the box before it.
    if (kind != Kind::question) last_box = with(buttons);
    const ButtonRow row =
        last_box == LastBox::without_buttons ? ButtonRow::none : ButtonRow::reserved;
    const text::FontScope font(window_font());
    box.layout = lay_out(kind, measures_with(box.icon), box.text.c_str(), row);
    last_box = with(buttons);
    lay_out_buttons(box.layout, buttons);
    return box;
}

unsigned open(OpenBox &&made, kv_handler handler) {
    stack.push_back(std::move(made));
    OpenBox &box = stack.back();
    box.id = ++last_id;
    box.taken.under.save(whole_screen(), drawn_area(box));
    dim_screen();
    if (handler) box.taken.take_input(handler, 0, [] { close_top(Close::forced); });
    if (box.kind == Kind::question) set_interface_flags(UI_DIALOG_OPEN);
    redraw(box, Show::news);
    return last_id;
}

OpenBox *top(Kind kind) {
    return !stack.empty() && stack.back().kind == kind ? &stack.back() : nullptr;
}

unsigned top_id() {
    return stack.empty() ? 0 : stack.back().id;
}

OpenBox *find(unsigned id) {
    const auto found =
        std::find_if(stack.begin(), stack.end(), [id](const OpenBox &box) { return box.id == id; });
    return found == stack.end() ? nullptr : &*found;
}

void close_top(Close how) {
    if (!stack.empty()) stack.back().taken.close_above();
    if (stack.empty()) return;
    OpenBox box = std::move(stack.back());
    stack.pop_back();
    last_box = LastBox::none;
    if (how == Close::forced || !box.stays)
        put_screen_back(box);
    else
        box.taken.under.drop();
    give_input_back(box);
}

void answer_top(int choice) {
    if (stack.empty()) return;
    const Listener listener = stack.back().listener;
    close_top(Close::answered);
    if (listener.result) *listener.result = choice;
    if (listener.proc) listener.proc(choice);
}

void count_component(int change) {
    components += change;
}

void reset() {
    components = 0;
    stack.clear();
    last_box = LastBox::none;
    drop_look();
}

} // namespace dialogs

void CloseDialog() {
    dialogs::close_top(dialogs::Close::forced);
}

void CloseProgressbar() {
    CloseDialog();
}

int GetDialogShow() {
    return static_cast<int>(std::size(dialogs::stack)) + dialogs::components;
}
