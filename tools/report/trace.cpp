// SPDX-License-Identifier: MIT
// Reads the lines of a trace, and believes none of them.
#include "trace.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include <json-c/json.h>

namespace report {
namespace {

constexpr int deepest_line = 2; // a line is one flat object: it, and what its members are
constexpr int64_t latest_ms = int64_t{1} << 50;
constexpr int64_t longest_update_ms = 10'000'000;
constexpr int64_t largest_side = 65535; // an area that was cut nowhere is cut here
constexpr size_t longest_call = 60;

struct Release {
    void operator()(json_object *object) const { json_object_put(object); }
    void operator()(json_tokener *parser) const { json_tokener_free(parser); }
};
using Object = std::unique_ptr<json_object, Release>;
using Parser = std::unique_ptr<json_tokener, Release>;

Object parse_line(json_tokener *parser, std::string_view line) {
    json_tokener_reset(parser);
    Object object(json_tokener_parse_ex(parser, line.data(), static_cast<int>(line.size())));
    const bool is_whole = json_tokener_get_error(parser) == json_tokener_success &&
                          json_tokener_get_parse_end(parser) == line.size();
    return is_whole && json_object_is_type(object.get(), json_type_object) ? std::move(object)
                                                                           : nullptr;
}

// The members of a line; remembers the first that is missing or makes no sense.
class Members {
  public:
    explicit Members(json_object *line) : line_(line) {}

    int64_t number(const char *name, int64_t least, int64_t most) {
        json_object *member = find(name);
        const int64_t value = json_object_get_int64(member);
        const bool fits = json_object_is_type(member, json_type_int);
        if (!fits || value < least || value > most) wrong(name);
        return std::clamp(value, least, most);
    }
    int64_t size(const char *name) {
        return std::min(number(name, INT32_MIN, INT32_MAX), largest_side);
    }
    std::string call() {
        std::string text = string("call");
        const bool is_plain = std::all_of(text.begin(), text.end(), [](unsigned char c) {
            return std::isalnum(c) || c == ' ' || c == '_';
        });
        if (!is_plain || text.size() > longest_call) wrong("call");
        return text;
    }
    hw::UpdateKind kind() {
        const std::string text = string("kind");
        for (const hw::Waveform &row : hw::waveforms)
            if (text == hw::name_of(row.kind)) return row.kind;
        wrong("kind");
        return hw::UpdateKind::partial;
    }
    const std::string &mistake() const { return mistake_; }

  private:
    json_object *find(const char *name) const {
        json_object *member = nullptr;
        json_object_object_get_ex(line_, name, &member);
        return member;
    }
    std::string string(const char *name) {
        json_object *member = find(name);
        if (!json_object_is_type(member, json_type_string)) {
            wrong(name);
            return {};
        }
        return {json_object_get_string(member),
                static_cast<size_t>(json_object_get_string_len(member))};
    }
    void wrong(const char *name) {
        if (mistake_.empty()) mistake_ = std::string("\"") + name + "\" is missing or wrong";
    }

    json_object *line_;
    std::string mistake_;
};

Area non_negative(Area area) {
    area.w = std::max<int64_t>(area.w, 0);
    area.h = std::max<int64_t>(area.h, 0);
    return area;
}

Update read_update(Members &m) {
    Update u{};
    u.seq = m.number("seq", 1, INT32_MAX);
    u.time_ms = m.number("time_ms", 0, latest_ms);
    u.kind = m.kind();
    u.call = m.call();
    u.area = non_negative({m.size("x"), m.size("y"), m.size("w"), m.size("h")});
    u.mode = static_cast<int>(m.number("mode", INT32_MIN, INT32_MAX));
    u.changed_pixels = m.number("changed", 0, INT32_MAX);
    u.changed = non_negative(
        {m.size("changed_x"), m.size("changed_y"), m.size("changed_w"), m.size("changed_h")});
    u.greys = m.number("greys", 0, hw::panel_levels);
    u.wait_ms = m.number("wait_ms", 0, latest_ms);
    u.panel_ms = m.number("panel_ms", 0, longest_update_ms);
    return u;
}

// What is wrong with two lines that follow each other.
std::string order_mistake(const std::vector<Update> &updates) {
    if (updates.size() < 2) return "";
    const Update &before = updates[updates.size() - 2], &update = updates.back();
    if (update.seq <= before.seq)
        return "\"seq\" is " + std::to_string(update.seq) + " after " + std::to_string(before.seq) +
               ": a trace is one session";
    return update.time_ms < before.time_ms ? "\"time_ms\" goes back" : "";
}

// Adds the update of a line. Empty, or what is wrong with it.
std::string add_line(std::vector<Update> &updates, json_object *line) {
    if (!line) return "no object of JSON";
    Members members(line);
    updates.push_back(read_update(members));
    return members.mistake().empty() ? order_mistake(updates) : members.mistake();
}

} // namespace

Trace parse_trace(std::string_view text) {
    Trace trace;
    const Parser parser(json_tokener_new_ex(deepest_line));
    json_tokener_set_flags(parser.get(), JSON_TOKENER_STRICT);
    for (int line = 1; !text.empty() && trace.mistake.empty(); ++line) {
        const size_t end = std::min(text.find('\n'), text.size());
        const Object object =
            end <= INT32_MAX ? parse_line(parser.get(), text.substr(0, end)) : nullptr;
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::string wrong = add_line(trace.updates, object.get());
        if (!wrong.empty()) trace.mistake = std::to_string(line) + ": " + wrong;
    }
    return trace;
}

} // namespace report
