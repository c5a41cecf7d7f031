# SPDX-License-Identifier: MIT
# Reads bench/goals.txt, then the CSV of a benchmark program: a line a benchmark with its median
# time and counters, and behind each counter that has a goal whether it is met.

function unquote(text) {
    gsub(/"/, "", text)
    return text
}

# Fields of a CSV line; a quoted field may hold commas.
function fields(line,    count, rest) {
    count = 0
    while (line != "") {
        if (line ~ /^"/) match(line, /^"[^"]*"/)
        else match(line, /^[^,]*/)
        field[++count] = unquote(substr(line, 1, RLENGTH))
        rest = substr(line, RLENGTH + 1)
        if (rest == ",") field[++count] = ""
        line = substr(rest, 2)
    }
    return count
}

function verdict(name, counter, value,    i) {
    for (i = 1; i <= goals; i++) {
        if (name !~ goal_name[i] || counter !~ ("^" goal_counter[i] "$")) continue
        met = goal_sense[i] == "<=" ? value <= goal_value[i] : value >= goal_value[i]
        return sprintf(" (%s %s%s)", goal_sense[i], goal_value[i], met ? "" : "  MISSED")
    }
    return ""
}

FILENAME == ARGV[1] {
    if ($0 ~ /^ *(#|$)/ || split($0, part, / +\| +/) < 4) next
    goals++
    goal_name[goals] = part[1]
    goal_counter[goals] = part[2]
    goal_sense[goals] = part[3]
    goal_value[goals] = part[4] + 0
    next
}

/^name,/ {
    columns = fields($0)
    for (i = 1; i <= columns; i++) title[i] = field[i]
    next
}

/_median"?,/ {
    count = fields($0)
    name = field[1]
    sub(/_median$/, "", name)
    line = sprintf("  %-44s %12.1f %s", name, field[3], field[5])
    for (i = 11; i <= count; i++)
        if (field[i] != "")
            line = line sprintf("  %s %.3g%s", title[i], field[i], verdict(name, title[i], field[i] + 0))
    print line
}
