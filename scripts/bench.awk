# SPDX-License-Identifier: MIT
# Reads bench/goals.txt, then the JSON of a benchmark program, which has one member a line: prints a
# line a benchmark with our median time and its counters, behind each that has a goal whether it is
# met, and in what the two sides differ.

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

function start_of_run() {
    kind = label = ours_us = real_us = ""
    counters = 0
}

function end_of_run(    i, line) {
    if (kind != "median") return
    sub(/\/manual_time$/, "", run_name)
    sub(/\/iterations:[0-9]+$/, "", run_name)
    line = sprintf("  %-48s %12s", run_name, sprintf("%.2f us", ours_us == "" ? real_us : ours_us))
    if (ours_us != "") line = line verdict(run_name, "ours_us", ours_us)
    for (i = 1; i <= counters; i++)
        line = line sprintf("  %s %.3g%s", counter[i], value[i], verdict(run_name, counter[i], value[i]))
    print line (label ? "  [" label "]" : "")
}

/^ *{/ { start_of_run() }
/^ *},?$/ { end_of_run(); start_of_run() }

/^ *"[^"]*": / {
    split($0, quoted, "\"")
    key = quoted[2]
    text = quoted[4]
    number = $0
    sub(/^ *"[^"]*": */, "", number)
    if (key == "run_name") run_name = text
    else if (key == "aggregate_name") kind = text
    else if (key == "label") label = text
    else if (key == "ours_us") ours_us = number + 0
    else if (key == "real_time") real_us = number / 1000
    else if (key !~ /^(cpu_time|iterations|repetitions|repetition_index|threads|family_index|per_family_instance_index)$/ && number ~ /^[-0-9]/) {
        counter[++counters] = key
        value[counters] = number + 0
    }
}
