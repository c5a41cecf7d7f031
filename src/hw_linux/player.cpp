// SPDX-License-Identifier: MIT
// Keeps the place in the script and the time of its next action.
#include "hw_linux/player.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "file/stream.h"
#include "hw_linux/device.h"
#include "hw_linux/menu.h"
#include "hw_linux/monkey.h"
#include "hw_linux/script.h"
#include "hw_linux/tasks/real_time.h"
#include "hw_linux/tasks/session.h"

namespace hw {
namespace {

constexpr size_t script_limit = size_t{16} << 20;
constexpr int64_t longest_await_ms = 10000, look_again_us = 10000;

enum class Play { nothing, waiting, running };

struct Player {
    Play play = Play::nothing;
    std::string name; // of the script
    Script script;
    size_t position = 0;
    Monkey monkey;
    Action action; // the next one, while running
    int64_t due_us = 0;
    int64_t awaited_until_ms = 0; // while one is awaited
};

Player player;

const char *setting(const char *name) {
    const char *value = std::getenv(name);
    return value && *value ? value : nullptr;
}

bool load_script(const char *name) {
    const file::Stream stream = file::open_plain(name);
    if (!stream) {
        std::fprintf(stderr, "%s: %s\n", name, std::strerror(errno));
        return false;
    }
    const auto text = file::read_whole(stream.get(), script_limit);
    if (!text) {
        std::fprintf(stderr, "%s: the script cannot be read, or is larger than 16 MiB\n", name);
        return false;
    }
    player.name = name;
    player.script = parse_script(text->view());
    for (const ScriptError &error : player.script.errors)
        std::fprintf(stderr, "%s:%d: %s\n", name, error.line, error.message.c_str());
    player.play = Play::waiting;
    return player.script.errors.empty();
}

bool wake_monkey(const char *text) {
    const char *end = text + std::strlen(text);
    uint32_t seed = 0;
    int64_t count = 0;
    const auto [colon, seed_error] = std::from_chars(text, end, seed);
    bool valid = seed_error == std::errc() && colon != end && *colon == ':';
    if (valid) {
        const auto [rest, error] = std::from_chars(colon + 1, end, count);
        valid = error == std::errc() && rest == end && count >= 0;
    }
    if (!valid) {
        std::fprintf(stderr, "KELVANE_MONKEY=%s: seed:count is meant\n", text);
        return false;
    }
    std::fprintf(stderr, "KELVANE_MONKEY=%s\n", text);
    player.monkey = Monkey(seed, count);
    player.play = Play::waiting;
    return true;
}

Action next_action() {
    Script &script = player.script;
    if (player.position < script.actions.size())
        return std::move(script.actions[player.position++]);
    Action action{.verb = Verb::command, .par1 = command_quit};
    player.monkey.next(action);
    action.delay_ms += std::exchange(script.final_delay_ms, 0);
    return action;
}

void load_next_action() {
    player.action = next_action();
    player.due_us = device()->clock_us() + player.action.delay_ms * 1000;
}

void start() {
    player.play = Play::running;
    load_next_action();
}

// What is awaited comes in real time, or in ten seconds not at all; then the action, which says so,
// is due.
bool is_awaiting() {
    Action &action = player.action;
    if (action.verb != Verb::await || device()->clock_us() < player.due_us) return false;
    const int64_t now_ms = tasks::real_time_ms();
    if (player.awaited_until_ms == 0) player.awaited_until_ms = now_ms + longest_await_ms;
    const bool is_shown = tasks::is_shown(action.file.c_str());
    if (!is_shown && now_ms < player.awaited_until_ms) return true;
    player.awaited_until_ms = 0;
    if (is_shown) load_next_action();
    return false;
}

bool is_quit(const Action &action) {
    return action.verb == Verb::command && action.par1 == command_quit;
}

} // namespace

bool open_player() {
    player = {};
    const char *script = setting("KELVANE_SCRIPT"), *monkey = setting("KELVANE_MONKEY");
    if (script && !load_script(script)) return false;
    return !monkey || wake_monkey(monkey);
}

void close_player() {
    player = {};
}

bool is_playing() {
    return player.play != Play::nothing;
}

int64_t time_to_action(int64_t limit_us) {
    if (player.play == Play::nothing) return limit_us;
    if (player.play == Play::waiting) start();
    if (is_awaiting()) return std::min(limit_us, look_again_us);
    return std::clamp<int64_t>(player.due_us - device()->clock_us(), 0, limit_us);
}

void run_due_action() {
    if (player.play != Play::running) return;
    if (device()->clock_us() < player.due_us) return;
    const Action action = std::move(player.action);
    if (is_quit(action))
        player.play = Play::nothing;
    else
        load_next_action();
    if (!perform(action, player.name.c_str())) end_process(1);
}

} // namespace hw
