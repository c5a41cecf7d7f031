// SPDX-License-Identifier: MIT
// Chooses actions at random, the same ones for the same seed.
#include "hw_linux/monkey.h"

#include <iterator>
#include <limits>

#include "hw.h"
#include "hw_linux/display_mode.h"
#include "hw_linux/input.h"
#include "hw_linux/menu.h"
#include "kelvane/events.h"

namespace hw {
namespace {

constexpr int margin = 20; // pointer positions reach this far outside the panel
constexpr int raw_types = 300;
constexpr int slots = 5; // two more than a panel has
constexpr int pointer_types[] = {EVT_POINTERUP, EVT_POINTERDOWN, EVT_POINTERMOVE};
constexpr int extremes[] = {std::numeric_limits<int>::min(), -1, 0, 1, 65535, 65536,
                            std::numeric_limits<int>::max()};

} // namespace

// Mostly none; sometimes long enough for a long press or a repeat, rarely for several.
int Monkey::delay_ms() {
    const int kind = below(100);
    if (kind < 60) return 0;
    if (kind < 90) return below(100);
    return kind < 99 ? below(1200) : below(6000);
}

int Monkey::coordinate(int size) {
    return below(size + 2 * margin) - margin;
}

void Monkey::aim(Action &action) {
    int width = 0, height = 0;
    hw_displaysize(&width, &height);
    action.par1 = coordinate(width);
    action.par2 = coordinate(height);
}

// Only keys that have a name in scripts, so that a recording of the monkey can be played.
Action Monkey::key() {
    int bit;
    do bit = find_code_bit(kv_key(1 << below(key_bits)));
    while (bit < 0);
    return {.verb = Verb::key, .type = EVT_KEYPRESS + below(2), .par1 = bit};
}

Action Monkey::pointer() {
    Action action{.verb = Verb::pointer, .type = pointer_types[below(3)]};
    aim(action);
    return action;
}

Action Monkey::touch() {
    if (below(3) == 0) return {.verb = Verb::raw, .type = EVT_MTSYNC, .par2 = below(slots)};
    Action action{.verb = Verb::raw, .type = pointer_types[below(3)], .mod = below(slots)};
    aim(action);
    return action;
}

Action Monkey::raw() {
    Action action{.verb = Verb::raw, .type = below(raw_types)};
    for (int *word : {&action.mod, &action.par1, &action.par2})
        *word = below(2) ? coordinate(longest_side)
                         : extremes[below(static_cast<int>(std::size(extremes)))];
    return action;
}

Action Monkey::command() {
    int number;
    const auto items = menu_items();
    do number = items[static_cast<size_t>(below(static_cast<int>(items.size())))].command;
    while (number == command_quit);
    return {.verb = Verb::command, .par1 = number};
}

bool Monkey::next(Action &action) {
    if (left_ <= 0) return false;
    --left_;
    const int delay = delay_ms(), kind = below(100);
    if (kind < 40)
        action = key();
    else if (kind < 80)
        action = pointer();
    else if (kind < 90)
        action = touch();
    else
        action = kind < 99 ? raw() : command();
    action.delay_ms = delay;
    return true;
}

} // namespace hw
