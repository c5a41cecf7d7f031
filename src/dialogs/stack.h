// SPDX-License-Identifier: MIT
// The open boxes, one above the other. Only the top one is heard and drawn.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "dialogs/layout.h"
#include "kelvane/bitmaps.h"
#include "kelvane/dialogs.h"
#include "modal/takeover.h"

namespace dialogs {

using Labels = std::array<std::optional<std::string>, most_buttons>;

// Who gets the answer: a callback of the application, or a caller that waits for it.
struct Listener {
    kv_dialoghandler proc = nullptr;
    int *result = nullptr;
    explicit operator bool() const { return proc || result; }
};

// One open box. Opening another one may move it; `id` stays, and is never used again.
struct OpenBox {
    unsigned id = 0;
    Kind kind = Kind::message;
    modal::Takeover taken;
    Listener listener;
    const ibitmap *icon = nullptr;
    std::string text;
    Layout layout{};
    Labels labels;
    int selected = 0; // 1 to 3; -1 after a finger left its button; 0 without buttons
    int percent = -1;
    bool stays = false; // on the screen after an answer

    Present present() const;
    int button_count() const;
};

// The box of a kind with a translated text, laid out without its buttons. Not open yet. Whether a
// dialog has room for its buttons is decided by the box that was made or closed before it: after
// one without buttons it has none. Throws bad_alloc.
OpenBox make_box(Kind kind, int flags, const char *text, Present buttons);

// Puts a box on top with the input for `handler`, or, when that is null, without any. Shows it.
// Returns its id. Throws bad_alloc.
unsigned open(OpenBox &&box, kv_handler handler);

// The top box when it is of this kind.
OpenBox *top(Kind kind);
// 0 when none is open.
unsigned top_id();
OpenBox *find(unsigned id);

enum class Close { answered, forced };

// Closes the top box. An answered one may stay on the screen.
void close_top(Close how);
// Closes the top box, which is answered, and tells its listener.
void answer_top(int choice);

// A component that is no box counts as one, 1 when it opens and -1 when it closes.
void count_component(int change);

// Takes all boxes away as the screen closes. Nobody is told.
void reset();

} // namespace dialogs
