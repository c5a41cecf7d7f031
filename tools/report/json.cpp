// SPDX-License-Identifier: MIT
// The report for programs.
#include "print.h"

#include <json-c/json.h>

namespace report {
namespace {

json_object *number(int64_t value) {
    return json_object_new_int64(value);
}

void put(json_object *object, const char *name, json_object *value) {
    json_object_object_add(object, name, value);
}

void put_totals(json_object *object, const Totals &totals) {
    put(object, "updates", number(totals.updates));
    put(object, "flashes", number(totals.flashes));
    put(object, "pixels", number(totals.pixels));
    put(object, "panel_ms", number(totals.panel_ms));
}

json_object *calls(const std::vector<Summary::Row> &rows) {
    json_object *array = json_object_new_array();
    for (const Summary::Row &row : rows) {
        json_object *object = json_object_new_object();
        put(object, "call", json_object_new_string(row.call.c_str()));
        put(object, "kind", json_object_new_string(hw::name_of(row.kind)));
        put(object, "mode", number(row.mode));
        put_totals(object, row.totals);
        json_object_array_add(array, object);
    }
    return array;
}

// Their numbers in the trace.
json_object *numbers(const std::vector<Update> &updates) {
    json_object *array = json_object_new_array();
    for (const Update &update : updates) json_object_array_add(array, number(update.seq));
    return array;
}

json_object *session(const Summary &s) {
    json_object *object = json_object_new_object();
    put(object, "trace", json_object_new_string(s.name.c_str()));
    put_totals(object, s.totals);
    put(object, "end_ms", number(s.end_ms));
    put(object, "calls", calls(s.rows));
    put(object, "wasted", numbers(s.wasted));
    put(object, "oversized", numbers(s.oversized));
    put(object, "coarse", numbers(s.coarse));
    put(object, "waited", numbers(s.waited));
    put(object, "longest_wait_ms", number(s.longest_wait_ms));
    json_object *worst = json_object_new_object();
    put(worst, "from_ms", number(s.worst.from_ms));
    put_totals(worst, s.worst.totals);
    put(object, "worst_second", worst);
    return object;
}

} // namespace

std::string as_json(const std::vector<Summary> &summaries) {
    json_object *array = json_object_new_array();
    for (const Summary &summary : summaries) json_object_array_add(array, session(summary));
    std::string text = json_object_to_json_string_ext(array, JSON_C_TO_STRING_PRETTY |
                                                                 JSON_C_TO_STRING_NOSLASHESCAPE);
    json_object_put(array);
    return text + '\n';
}

} // namespace report
