// SPDX-License-Identifier: MIT
// Turns lines into actions and tells how they went.
#include "hw_linux/control.h"

#include <algorithm>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <pthread.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ground/lines.h"
#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/line_server.h"
#include "hw_linux/menu.h"
#include "hw_linux/player.h"
#include "hw_linux/script.h"
#include "hw_linux/tasks/real_time.h"
#include "hw_linux/tasks/session.h"
#include "hw_linux/trace.h"
#include "hw_seam.h"
#include "internal.h"

namespace hw {
namespace {

// Of the wall clock, while time stands still; and for each step of a clock that is its own while
// somebody waits for an update, which another client may cause.
constexpr int rest_ms = 20, hurried_rest_ms = 1;
constexpr int64_t hurried_step_us = 20'000;
constexpr int64_t longest_wait_us = 60'000'000;
constexpr int64_t longest_await_us = 10'000'000, look_again_us = 10'000;
constexpr int64_t longest_unrest_ms = 5000; // of the wall clock
constexpr const char *asker = "control";

// A line that is being done.
struct Job {
    int client = 0;
    Script script = {};
    size_t position = 0;
    int64_t due_us = 0;     // of its next action, or of its end
    int awaited_update = 0; // 0: none
    std::string awaited_task = {};
    bool is_new = true; // the application has not gone on since
};

struct Control {
    LineServer server;
    std::vector<Job> jobs; // one a client
    int64_t start_ms = hw_boottime_ms();
    int64_t restless_since_ms = -1; // of the wall clock; negative: the application rests at times
};

std::unique_ptr<Control> control;

bool owns_clock() {
    return device() == &headless_device && !is_playing() && !tasks::is_supported();
}

std::string quoted(std::string_view text) {
    std::string all = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') all += '\\';
        all += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return all + '"';
}

std::string state_line() {
    char numbers[160];
    std::snprintf(numbers, sizeof numbers,
                  "{\"time_ms\":%" PRId64 ",\"orientation\":%d,\"updates\":%d,\"battery\":%d,",
                  static_cast<int64_t>(hw_boottime_ms()) - control->start_ms,
                  hw_get_fb_orientation(), updates_traced(), emulated().battery * 20);
    return numbers + std::string("\"language\":") + quoted(kvstate.lang) +
           ",\"theme\":" + quoted(kvstate.theme) + "}";
}

std::string nothing_or(bool is_done, std::string_view what, std::string_view name) {
    return is_done ? "" : "error: " + std::string(what) + ": " + std::string(name);
}

std::string change_language(std::string_view code) {
    return nothing_or(hooks.change_language(std::string(code).c_str()), "there is no such language",
                      code);
}

// Without a name the present one, whose file may have changed.
std::string change_theme(std::string_view name) {
    const std::string wanted(name.empty() ? kvstate.theme : name);
    return nothing_or(hooks.change_theme(wanted.c_str()), "there is no such theme", wanted);
}

std::string seed_chance(std::string_view text) {
    unsigned seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size() || text.empty())
        return "error: a number from 0 to 4294967295 is meant";
    std::srand(seed);
    srandom(seed);
    srand48(static_cast<long>(seed));
    return "ok";
}

struct Question {
    std::string_view verb;
    std::string (*answer)(std::string_view rest); // empty: later, when the application rests
};

constexpr Question questions[] = {
    {"state", [](std::string_view) { return state_line(); }},
    {"seed", seed_chance},
    // What they do is answered when the application has drawn it.
    {"idle", [](std::string_view) { return std::string(); }},
    {"language", change_language},
    {"theme", change_theme},
};

int64_t now_us() {
    return device()->clock_us();
}

void plan_next(Job &job) {
    const bool has_action = job.position < job.script.actions.size();
    const int64_t delay_ms =
        has_action ? job.script.actions[job.position].delay_ms : job.script.final_delay_ms;
    job.due_us = now_us() + delay_ms * 1000;
}

// What is wrong with a line, when it is no job; "ok" when it is done already.
std::string begin(Job &job, std::string_view text) {
    const std::string_view verb = text.substr(0, text.find_first_of(" \t"));
    job.due_us = now_us();
    for (const Question &question : questions)
        if (question.verb == verb) return question.answer(ground::trim(text.substr(verb.size())));
    if (text == "wait-update") {
        job.awaited_update = updates_traced() + 1;
        job.due_us = now_us() + longest_wait_us;
        return "";
    }
    job.script = parse_script(text);
    if (!job.script.errors.empty()) return "error: " + job.script.errors[0].message;
    plan_next(job);
    return "";
}

void take_on(const LineServer::Line &line) {
    if (line.kind == LineServer::Line::Kind::too_long)
        return control->server.answer(line.client, "error: a line has at most 4096 bytes");
    Job job{.client = line.client};
    const std::string answer = begin(job, ground::trim(line.text));
    if (answer.empty()) return control->jobs.push_back(std::move(job));
    control->server.answer(line.client, answer);
}

bool ends_application(const Action &action) {
    return action.verb == Verb::close ||
           (action.verb == Verb::command && action.par1 == command_quit);
}

// The answer when nothing is left to be done.
std::string do_next_action(Job &job) {
    Action action = std::move(job.script.actions[job.position++]);
    if (action.verb == Verb::await) {
        job.awaited_task = std::move(action.file);
        job.due_us = now_us() + longest_await_us;
        return "";
    }
    plan_next(job);
    // Nobody is left to answer afterwards.
    if (ends_application(action)) control->server.answer(std::exchange(job.client, 0), "ok");
    return perform(action, asker) ? "" : "error: this file cannot be written: " + action.file;
}

// An update is also to be seen, where the panel takes its time.
bool has_come(const Job &job) {
    if (!job.awaited_task.empty()) return tasks::is_shown(job.awaited_task.c_str());
    return job.awaited_update > 0 && updates_traced() >= job.awaited_update && !hw_update_busy();
}

// The answer when the job is done. Nobody waits with a client that has left: what it pressed is let
// go.
std::string work(Job &job) {
    const bool is_heard = !control->server.has_left(job.client);
    if (has_come(job)) return "ok";
    if (is_heard && now_us() < job.due_us) return "";
    if (job.awaited_update > 0) return "error: no update came within a minute";
    if (!job.awaited_task.empty()) return "error: " + job.awaited_task + " was not shown";
    return job.position < job.script.actions.size() ? do_next_action(job) : "ok";
}

// An empty job list and a clock of its own: time stands still until somebody says something.
bool is_clock_stopped() {
    return owns_clock() && control->jobs.empty();
}

bool hurries_to_update() {
    return owns_clock() && std::any_of(control->jobs.begin(), control->jobs.end(),
                                       [](const Job &job) { return job.awaited_update > 0; });
}

int rest_for_clients() {
    if (is_clock_stopped()) return rest_ms;
    return hurries_to_update() ? hurried_rest_ms : 0;
}

bool is_due(const Job &job) {
    return has_come(job) || now_us() >= job.due_us || control->server.has_left(job.client);
}

int64_t time_to_job(int64_t limit_us) {
    if (hurries_to_update()) limit_us = std::min(limit_us, hurried_step_us);
    for (const Job &job : control->jobs) {
        if (!job.awaited_task.empty()) limit_us = std::min(limit_us, look_again_us);
        limit_us = is_due(job) ? 0 : std::min(job.due_us - now_us(), limit_us);
    }
    return limit_us;
}

// A line, when the application has nothing left to hear.
std::optional<LineServer::Line> next_line() {
    if (hooks.has_events()) return std::nullopt;
    control->server.serve(0);
    auto line = control->server.take();
    if (line) return line;
    if (const int rest = rest_for_clients()) control->server.serve(rest);
    return control->server.take();
}

// Nobody waits any longer with a line that has come; what it pressed is let go later.
void refuse_all(std::string_view why) {
    for (Job &job : control->jobs) control->server.answer(std::exchange(job.client, 0), why);
    control->server.serve(0);
    while (const auto line = control->server.take()) control->server.answer(line->client, why);
}

// What led to the end was done; what had not begun was not.
const char *last_answer(const Job &job) {
    return job.position > 0 ? "ok" : "error: the screen was closed";
}

// The child of an application serves nobody: its parent does.
void leave_to_parent() {
    control.reset();
}

} // namespace

bool open_control() {
    const char *path = std::getenv("KELVANE_CONTROL");
    if (!path || !*path) return true;
    [[maybe_unused]] static const int watched = pthread_atfork(nullptr, nullptr, leave_to_parent);
    control = std::make_unique<Control>();
    const std::string wrong = control->server.open(path);
    if (!wrong.empty()) std::fprintf(stderr, "KELVANE_CONTROL=%s: %s\n", path, wrong.c_str());
    return wrong.empty();
}

void close_control() {
    if (!control) return;
    for (const Job &job : control->jobs) control->server.answer(job.client, last_answer(job));
    control.reset();
}

bool is_controlled() {
    return control != nullptr;
}

int control_fd() {
    return control ? control->server.fd() : -1;
}

bool is_time_stopped() {
    return control && is_clock_stopped();
}

int64_t time_to_control(int64_t limit_us) {
    if (!control) return limit_us;
    if (const auto line = next_line()) {
        take_on(*line);
        return 0;
    }
    return is_clock_stopped() ? 0 : time_to_job(limit_us);
}

void check_unrest() {
    if (!control) return;
    if (!hooks.has_events()) {
        control->restless_since_ms = -1;
        return;
    }
    const int64_t now_ms = tasks::real_time_ms();
    if (control->restless_since_ms < 0) control->restless_since_ms = now_ms;
    if (now_ms - control->restless_since_ms >= longest_unrest_ms)
        refuse_all("error: the application does not rest");
}

// One action at a time, and not before the application has gone on: it hears of each.
void run_due_control() {
    if (!control || hooks.has_events()) return;
    for (auto job = control->jobs.begin(); job != control->jobs.end(); ++job) {
        if (std::exchange(job->is_new, false) || !is_due(*job)) continue;
        const std::string answer = work(*job);
        if (!control || answer.empty()) return;
        control->server.answer(job->client, answer);
        control->jobs.erase(job);
        return;
    }
}

} // namespace hw
