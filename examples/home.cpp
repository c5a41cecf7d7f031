// SPDX-License-Identifier: MIT
// A small home screen: starts the gallery and hello as tasks, lists them, switches and closes them.
// It needs KELVANE_TASKS=directory. UP and DOWN select, OK starts an application or switches to it,
// MENU shows the list of tasks, HOME comes back here from any of them, PREV closes what is
// selected, BACK closes everything.
#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include <kelvane.hpp>

namespace {

constexpr std::array applications = {"gallery", "hello"};
constexpr int look_again_ms = 200;

kelvane::Font font;
int selected = 0;
std::array<int, applications.size()> shown_tasks; // as they were drawn

// They lie beside this program.
std::string path_of(const char *name) {
    std::array<char, PATH_MAX> own{};
    const ssize_t size = readlink("/proc/self/exe", own.data(), own.size() - 1);
    const std::string path(own.data(), size > 0 ? static_cast<size_t>(size) : 0);
    return path.substr(0, path.rfind('/') + 1) + name;
}

int row_height() {
    return ScreenHeight() / 10;
}

const char *state_of(int task) {
    if (!MultitaskingSupported()) return "no task manager";
    return task > 0 ? "runs" : "";
}

void draw_row(int row, int task) {
    const int height = row_height(), y = height * (row + 2), margin = height / 2;
    const irect line = iRect(margin, y, ScreenWidth() - 2 * margin, height, 0);
    const int x = line.x + margin / 2, w = line.w - margin;
    DrawTextRect(x, y, w, height, applications[static_cast<size_t>(row)],
                 ALIGN_LEFT | VALIGN_MIDDLE);
    DrawTextRect(x, y, w, height, state_of(task), ALIGN_RIGHT | VALIGN_MIDDLE);
    if (row == selected) DrawPickOutEx(&line, "line");
}

void draw() {
    ClearScreen();
    font.use(BLACK);
    DrawTextRect(0, row_height() / 2, ScreenWidth(), row_height(), "Home",
                 ALIGN_CENTER | VALIGN_MIDDLE);
    for (size_t i = 0; i < applications.size(); i++) {
        shown_tasks[i] = FindTaskByAppName(applications[i]);
        draw_row(static_cast<int>(i), shown_tasks[i]);
    }
    FullUpdate();
}

// Tasks also end by themselves.
void look_again(void *) {
    for (size_t i = 0; i < applications.size(); i++)
        if (IsTaskActive() && FindTaskByAppName(applications[i]) != shown_tasks[i]) {
            draw();
            break;
        }
    SetHardTimer("tasks", look_again, look_again_ms);
}

void open_selected() {
    const char *name = applications[static_cast<size_t>(selected)];
    const int task = FindTaskByAppName(name);
    if (task > 0)
        SetActiveTask(task, -1);
    else
        NewTaskEx(path_of(name).c_str(), nullptr, name, name, nullptr, 0, 0);
}

void close_selected() {
    const int task = FindTaskByAppName(applications[static_cast<size_t>(selected)]);
    if (task > 0) CloseTask(task, -1, 0);
}

void close_everything() {
    for (const char *name : applications)
        if (const int task = FindTaskByAppName(name); task > 0) CloseTask(task, -1, 0);
    CloseApp();
}

void select(int row) {
    selected =
        (row + static_cast<int>(applications.size())) % static_cast<int>(applications.size());
    draw();
}

int key_pressed(int key) {
    switch (key) {
    case KEY_UP:
        select(selected - 1);
        return 1;
    case KEY_DOWN:
        select(selected + 1);
        return 1;
    case KEY_OK:
        open_selected();
        return 1;
    case KEY_PREV:
        close_selected();
        return 1;
    case KEY_MENU:
        OpenTaskList();
        return 1;
    case KEY_BACK:
        close_everything();
        return 1;
    default:
        return 0;
    }
}

int handler(int type, int par1, int) {
    switch (type) {
    case EVT_INIT:
        font = kelvane::Font("default", 32);
        SetTaskParameters(GetCurrentTask(), "", "Home", nullptr, TASK_UPDATES_ITSELF);
        look_again(nullptr);
        return 1;
    case EVT_SHOW:
    case EVT_FOREGROUND:
        draw();
        return 1;
    case EVT_KEYPRESS:
        return key_pressed(par1);
    case EVT_EXIT:
        font.reset();
        return 1;
    default:
        return 0;
    }
}

} // namespace

int main() {
    return kelvane::run(handler);
}
