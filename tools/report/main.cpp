// SPDX-License-Identifier: MIT
// kelvane-report: tells what sessions did to the panel, and checks that they did no more than they
// may.
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "measures.h"
#include "print.h"
#include "trace.h"

namespace {

using namespace report;

constexpr int limit_not_kept = 1, failure = 2;
constexpr size_t largest_trace = size_t{256} << 20;

constexpr const char *usage =
    "kelvane-report [option...] TRACE.jsonl...\n"
    "what is printed:\n"
    "  --json              one array of objects\n"
    "  --svg               a timeline, of one trace\n"
    "  -q                  only limits that are not kept\n"
    "  --from MS, --to MS  of the updates from that time on, or before that time\n"
    "limits, for each trace; the status is 1 when one is not kept:\n"
    "  --max-updates N     --no-wasted       updates that changed nothing\n"
    "  --min-updates N     --no-oversized    areas much larger than what changed\n"
    "  --max-flashes N     --no-coarse       greys through a mode of two levels\n"
    "  --max-panel-ms N    --no-waits        updates that waited for another one\n"
    "  --max-wait-ms N\n"
    "kelvane-report --help | --version\n";

enum class Style { table, json, svg, quiet };

struct Options {
    std::vector<std::string> traces;
    std::vector<Limit> limits;
    Style style = Style::table;
    int64_t from_ms = 0, to_ms = INT64_MAX;
};

// The words of a command line, in turn.
class Words {
  public:
    Words(int count, char **words) : words_(words + 1, words + count) {}

    bool at_end() const { return next_ == words_.size(); }
    std::string take() { return words_[next_++]; }
    std::optional<int64_t> take_number() {
        if (at_end()) return std::nullopt;
        const std::string word = take();
        int64_t value = 0;
        const char *end = word.data() + word.size();
        const auto [stop, error] = std::from_chars(word.data(), end, value);
        if (error != std::errc() || stop != end || value < 0) return std::nullopt;
        return value;
    }

  private:
    std::vector<std::string> words_;
    size_t next_ = 0;
};

bool take_limit(const std::string &word, Words &words, std::vector<Limit> &limits) {
    const auto all = measures();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Measure &m) { return m.option == word; });
    if (found == all.end()) return false;
    const std::optional<int64_t> number = found->takes_number() ? words.take_number() : 0;
    if (number) limits.push_back({&*found, *number});
    return number.has_value();
}

bool take_time(Words &words, int64_t &ms) {
    const std::optional<int64_t> value = words.take_number();
    if (value) ms = *value;
    return value.has_value();
}

bool take_option(const std::string &word, Words &words, Options &o) {
    if (word == "--json") return o.style = Style::json, true;
    if (word == "--svg") return o.style = Style::svg, true;
    if (word == "-q") return o.style = Style::quiet, true;
    if (word == "--from") return take_time(words, o.from_ms);
    if (word == "--to") return take_time(words, o.to_ms);
    return take_limit(word, words, o.limits);
}

std::optional<Options> parse(Words words) {
    Options o;
    bool only_traces = false;
    while (!words.at_end()) {
        const std::string word = words.take();
        if (only_traces || !word.starts_with('-'))
            o.traces.push_back(word);
        else if (word == "--")
            only_traces = true;
        else if (!take_option(word, words, o))
            return std::nullopt;
    }
    const bool fits = o.style == Style::svg ? o.traces.size() == 1 : !o.traces.empty();
    return fits ? std::optional(o) : std::nullopt;
}

void complain(const std::string &about, const std::string &why) {
    std::fprintf(stderr, "kelvane-report: %s: %s\n", about.c_str(), why.c_str());
}

std::optional<std::string> read_file(const std::string &name) {
    const auto close = [](std::FILE *f) { std::fclose(f); };
    const std::unique_ptr<std::FILE, decltype(close)> file(std::fopen(name.c_str(), "rb"), close);
    std::string text;
    char piece[1 << 16];
    size_t count = 0;
    while (file && (count = std::fread(piece, 1, sizeof piece, file.get())) > 0) {
        text.append(piece, count);
        if (text.size() <= largest_trace) continue;
        complain(name, "larger than 256 MiB");
        return std::nullopt;
    }
    if (file && !std::ferror(file.get())) return text;
    complain(name, std::strerror(errno));
    return std::nullopt;
}

// The updates of a trace within the times that are asked for; none after saying what is wrong.
std::optional<std::vector<Update>> read_updates(const std::string &name, const Options &o) {
    const std::optional<std::string> text = read_file(name);
    if (!text) return std::nullopt;
    Trace trace = parse_trace(*text);
    if (!trace.mistake.empty()) {
        std::fprintf(stderr, "kelvane-report: %s:%s\n", name.c_str(), trace.mistake.c_str());
        return std::nullopt;
    }
    std::erase_if(trace.updates,
                  [&](const Update &u) { return u.time_ms < o.from_ms || u.time_ms >= o.to_ms; });
    return std::move(trace.updates);
}

void print(const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

bool print_timeline(const std::string &name, const std::vector<Update> &updates) {
    const std::optional<std::string> timeline = as_svg(updates);
    if (timeline)
        print(*timeline);
    else
        complain(name, "too long for one timeline: choose a part with --from and --to");
    return timeline.has_value();
}

// False when a limit is not kept.
bool is_within(const Summary &summary, const std::vector<Limit> &limits) {
    bool within = true;
    for (const Limit &limit : limits) {
        const int64_t value = limit.measure->value(summary);
        if (limit.holds(value)) continue;
        within = false;
        complain(summary.name,
                 std::to_string(value) + ' ' + limit.measure->what + ", " +
                     std::to_string(limit.number) +
                     (limit.measure->bound() == Bound::least ? " at least" : " at most"));
    }
    return within;
}

int report_on(const Options &o) {
    std::vector<Summary> summaries;
    for (const std::string &name : o.traces) {
        const auto updates = read_updates(name, o);
        if (!updates) return failure;
        summaries.push_back(summarise(name, *updates));
        if (o.style == Style::svg && !print_timeline(name, *updates)) return failure;
    }
    if (o.style == Style::json) print(as_json(summaries));
    if (o.style == Style::table)
        for (const Summary &summary : summaries) print(as_table(summary));
    bool within = true;
    for (const Summary &summary : summaries) within = is_within(summary, o.limits) && within;
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        complain("standard output", std::strerror(errno));
        return failure;
    }
    return within ? 0 : limit_not_kept;
}

} // namespace

int main(int count, char **arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words == std::vector<std::string>{"--help"}) return std::fputs(usage, stdout) < 0;
    if (words == std::vector<std::string>{"--version"})
        return std::puts("kelvane-report " KELVANE_VERSION) < 0;
    const std::optional<Options> options = parse({count, arguments});
    if (!options) {
        std::fputs(usage, stderr);
        return failure;
    }
    if (options->from_ms >= options->to_ms) {
        complain("--from " + std::to_string(options->from_ms) + " --to " +
                     std::to_string(options->to_ms),
                 "there is no time between them");
        return failure;
    }
    try {
        return report_on(*options);
    } catch (const std::bad_alloc &) {
        complain("this report", std::strerror(ENOMEM));
        return failure;
    }
}
