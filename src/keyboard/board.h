// SPDX-License-Identifier: MIT
// The record of the open keyboard.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "keyboard/entry.h"
#include "keyboard/kinds.h"
#include "keyboard/layout.h"
#include "keyboard/look.h"
#include "keyboard/place.h"
#include "keyboard/selection.h"
#include "modal/takeover.h"

namespace keyboard {

// What an application asks for.
struct Request {
    const char *title;
    char *buffer;
    int maxlen, flags;
};

// Who gets the text.
struct Listener {
    void (*proc)(char *text) = nullptr;
    void (*proc_ex)(char *text, void *data) = nullptr;
    void *data = nullptr;
    void tell(char *text) const;
};

enum class Shift { lower, upper, numbers };

// What a finger may touch.
struct Target {
    enum Part { nothing, key, button, icon, text } part = nothing;
    int index = 0; // of a key or a button
    bool operator==(const Target &) const = default;
};

struct Button {
    uint16_t code;
    std::string label;
};

struct Board {
    Board(const Request &r, Layouts of, Listener to);

    modal::Takeover taken;
    Listener listener;
    Layouts layouts;
    const Kind &kind;
    int flags;
    char *buffer;        // the caller's; null without an entry line
    std::string initial; // its bytes
    std::string title, enter_label;
    bool enter_is_ok; // its label is the usual one
    Entry entry;
    Look look;
    Way way;
    Measures measures;
    Place place;
    std::vector<Button> buttons; // in the row at the foot
    Shift shift = Shift::lower;
    TouchLayout touch;                 // what is shown for fingers
    std::optional<SelectionGrid> grid; // what is shown for five keys
    Target pressed;
    modal::SavedArea under_hint; // what the hint above a pressed key covers
    irect hint{};
    bool repeats = false; // a held backspace has acted
    bool eye_is_open = false;
    std::optional<size_t> revealed; // the character of a password that is still shown
    int scroll = 0;                 // pixels by which the text is moved towards its end
    bool saves_whole_screen = false;
    bool was_touched = false; // since the greys were last refined
    bool is_stale = false;    // to be drawn anew once it has the input
    int message_top = 0;      // of the record before the opening
    int unheard = 0;          // events that wait for a keyboard before this one

    const Language &language() const { return layouts.language(); }
    const Block &block() const {
        const bool is_upper = shift == Shift::upper && language().has_shift();
        return is_upper ? language().upper : language().lower;
    }
    bool has_shift() const { return kind.has_shift; }
    bool is_password() const;
    // The password may be shown whole: all of it was entered here.
    bool has_eye() const { return is_password() && entry.is_new(); }
    // The first row of the block that has a place.
    int first_row() const { return layouts.has_top_rows() ? 0 : 2; }

    // After a change of language or shift.
    void show_block();
    // Goes to the foot of a screen that was turned; false when it was not.
    bool follow_screen();
};

Way way_of_device();
// Where a keyboard with these parameters goes.
Place place_for(const Request &r, const Layouts &layouts);

// Null while none is open.
Board *board();

// How a keyboard ends. By a call nobody hears of KEY_KEYBOARD.
enum class End { enter, next, cancel, call };
void close(End how);
// Takes the keyboard away as the screen closes. Nobody is told.
void reset();

} // namespace keyboard
