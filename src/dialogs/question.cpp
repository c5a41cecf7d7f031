// SPDX-License-Identifier: MIT
// Dialogs: one to three buttons, answered through the event loop.
#include "dialogs/question.h"

#include <utility>

#include "dialogs/draw.h"
#include "dialogs/input.h"
#include "dialogs/stack.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "modal/input.h"

namespace dialogs {
namespace {

constexpr int default_button_mask = 0x3000;
constexpr int cancelled = -1;
constexpr int unanswered = -2;
constexpr int synchro_rest_ms = 50;

struct Question {
    int flags;
    const char *text;
    std::array<const char *, most_buttons> buttons; // null for none, but the first one
};

Present present_of(const Question &q) {
    return {true, q.buttons[1] != nullptr, q.buttons[2] != nullptr};
}

int first_selected(int flags, const Present &present) {
    const int wanted = flags & default_button_mask;
    if (wanted == DEF_BUTTON2 && present[1]) return 2;
    if (wanted == DEF_BUTTON3 && present[2]) return 3;
    return 1;
}

OpenBox make_question(const Question &q, const Present &present) {
    OpenBox box = make_box(Kind::question, q.flags, q.text, present);
    for (size_t i = 0; i < present.size(); ++i)
        if (present[i]) box.labels[i] = q.buttons[i] ? GetLangText(q.buttons[i]) : "";
    box.selected = first_selected(q.flags, present);
    box.stays = (q.flags & NO_DISMISS) != 0;
    return box;
}

// The id of the dialog; 0 when none could be opened.
unsigned open_question(const Question &q, Listener listener) {
    return ground::guarded(0, [&] {
        if (!kvstate.isopen || GetEventHandler() == question_handler) return 0U;
        OpenBox box = make_question(q, present_of(q));
        box.listener = listener;
        return open(std::move(box), question_handler);
    });
}

void select(OpenBox &box, int button) {
    box.selected = button;
    redraw(box, Show::reaction);
}

void press(OpenBox &box, int button) {
    box.selected = button;
    draw(box);
    draw_pressed_button(box);
    show(Show::reaction);
}

void release(OpenBox &box, int button) {
    if (box.selected < 1) return;
    if (button == box.selected)
        modal::send_key(EVT_KEYRELEASE, KEY_OK);
    else
        select(box, cancelled);
}

void pointer(OpenBox &box, int type, int x, int y) {
    const int item = item_at(box.layout, box.present(), x, y);
    if (type == EVT_POINTERUP) release(box, item);
    if ((type == EVT_POINTERDOWN || type == EVT_POINTERHOLD) && item >= 1) press(box, item);
}

void key(OpenBox &box, int code) {
    if (!box.listener) return close_top(Close::answered);
    switch (meaning_of(code, panel())) {
    case Meaning::nothing:
        break;
    case Meaning::previous:
        select(box, button_before(box.present(), box.selected));
        break;
    case Meaning::next:
        select(box, button_after(box.present(), box.selected));
        break;
    case Meaning::choose:
        answer_top(box.selected);
        break;
    case Meaning::cancel:
        answer_top(cancelled);
        break;
    }
}

// OK acts when it is let go, as a finger does; every other key when it goes down.
bool acts(int type, int code) {
    return type == (code == KEY_OK ? EVT_KEYRELEASE : EVT_KEYPRESS);
}

// Runs the loop until the dialog has been answered or closed, or the loop ends.
void wait_for(unsigned id, const int &result) {
    while (result == unanswered && find(id)) {
        if (ProcessEventLoop() != KELVANE_CONTINUE) return;
        if (result == unanswered) rest_ms(synchro_rest_ms);
    }
}

// Nobody waits for the answer any more.
void abandon(unsigned id) {
    if (top_id() == id)
        close_top(Close::forced);
    else if (OpenBox *box = find(id))
        box->listener = {};
}

int ask(const Question &q) {
    int result = unanswered;
    const unsigned beneath = top_id();
    const unsigned id = open_question(q, {.result = &result});
    if (id == 0) return cancelled;
    wait_for(id, result);
    if (result == unanswered) {
        abandon(id);
        return cancelled;
    }
    if (beneath != 0 && top_id() == beneath) close_top(Close::answered);
    return result;
}

} // namespace

int question_handler(int type, int par1, int par2) {
    OpenBox *box = top(Kind::question);
    if (!box) return 0;
    if (modal::is_pointer_event(type)) {
        pointer(*box, type, par1, par2);
        return 0;
    }
    if (modal::is_system_event(type)) return 1;
    if (!acts(type, par1)) return 0;
    key(*box, par1);
    return 1;
}

} // namespace dialogs

void Dialog3(int icon, const char *, const char *text, const char *button1, const char *button2,
             const char *button3, kv_dialoghandler proc) {
    dialogs::open_question({icon, text, {button1, button2, button3}}, {.proc = proc});
}

void Dialog(int icon, const char *title, const char *text, const char *button1, const char *button2,
            kv_dialoghandler proc) {
    Dialog3(icon, title, text, button1, button2, nullptr, proc);
}

int DialogSynchro(int icon, const char *, const char *text, const char *button1,
                  const char *button2, const char *button3) {
    return dialogs::ask({icon, text, {button1, button2, button3}});
}
