// SPDX-License-Identifier: MIT
// The menu of tasks, and the names that people read there.
#include <algorithm>
#include <array>
#include <climits>
#include <string>
#include <string_view>
#include <vector>

#include "ground/guard.h"
#include "ground/letter_case.h"
#include "ground/utf8.h"
#include "kelvane/events.h"
#include "kelvane/languages.h"
#include "kelvane/menus.h"
#include "kelvane/tasks.h"

namespace {

constexpr int first_item = 100;
constexpr int most_tasks = 64;
constexpr size_t shortest_kept_extension = 5; // with its dot

struct Entry {
    int task, subtask;
};

// What the open menu is made of.
struct List {
    std::vector<Entry> entries;
    std::vector<std::string> labels;
    std::vector<imenu> items;
    int active = -1; // its position
};
List list;

void choose(int index) {
    const auto n = static_cast<size_t>(index - first_item);
    if (index < first_item || n >= list.entries.size()) return;
    const Entry entry = list.entries[n];
    SetActiveTask(entry.task, entry.subtask);
}

// A name is readable as it is.
const char *label_of(const itaskinfo &info, const isubtaskinfo &subtask) {
    if (subtask.book && *subtask.book) return user_friendly_name(subtask.book);
    return *info.appname ? user_friendly_name(info.appname) : info.name;
}

void add_task(const itaskinfo &info) {
    for (int i = 0; i < info.nsubtasks; ++i) {
        const isubtaskinfo &subtask = info.subtasks[i];
        list.entries.push_back({info.task, subtask.subtask});
        list.labels.emplace_back(label_of(info, subtask));
    }
}

void collect_tasks() {
    list = {};
    std::array<int, most_tasks> numbers{};
    const int count = GetTaskList(numbers.data(), most_tasks);
    for (int i = 0; i < count; ++i)
        if (const itaskinfo *info = GetTaskInfo(numbers[static_cast<size_t>(i)])) add_task(*info);
}

void make_items() {
    int task = -1, subtask = -1;
    GetActiveTask(&task, &subtask);
    for (size_t i = 0; i < list.entries.size() && i < SHRT_MAX - first_item; ++i) {
        const Entry &entry = list.entries[i];
        if (entry.task == task && entry.subtask == subtask) list.active = static_cast<int>(i);
        list.items.push_back({ITEM_ACTIVE, static_cast<short>(first_item + static_cast<int>(i)),
                              list.labels[i].c_str(), nullptr});
    }
    list.items.push_back({});
}

void open_in_the_middle() {
    irect size{};
    GetMenuRect(&size, list.items.data());
    OpenMenu(list.items.data(), list.active, (ScreenWidth() - size.w) / 2,
             (ScreenHeight() - size.h) / 2, choose);
}

std::string word_of(std::string_view path) {
    std::string word(path.substr(path.rfind('/') + 1)); // npos + 1 is 0
    if (!word.starts_with('@')) word.insert(0, 1, '@');
    const size_t dot = word.rfind('.');
    if (dot != word.npos && word.size() - dot < shortest_kept_extension) word.resize(dot);
    return word;
}

std::string with_capital(const std::string &word) {
    const char *const start = word.c_str() + 1;
    const char *const end = utf8::skip(start, word.c_str() + word.size(), 1);
    return "@" + ground::upper_case(std::string(start, end).c_str()) + end;
}

// Null when there is none.
const char *translation_of(const std::string &word) {
    const char *text = GetLangText(word.c_str());
    return text == word ? nullptr : text;
}

} // namespace

const char *user_friendly_name(const char *path) {
    return ground::guarded("", [&]() -> const char * {
        static std::string kept; // a path may lie in it
        if (!path || !*path) return "";
        const std::string word = word_of(path);
        const char *text = translation_of(word);
        if (!text) text = translation_of(with_capital(word));
        if (text) return text;
        kept = word.substr(1);
        return kept.c_str();
    });
}

void OpenTaskList() {
    if (!MultitaskingSupported()) return;
    ground::guarded([] {
        collect_tasks();
        make_items();
        open_in_the_middle();
    });
}
