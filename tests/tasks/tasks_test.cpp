// SPDX-License-Identifier: MIT
// Applications started, listed, switched and closed; what they send each other; their framebuffers.
#include "fixture.h"

#include <poll.h>

#include "hw.h"
#include "support/repeats.h"

namespace {

using namespace tasks_test;

class Tasks : public tasks_test::Test {};

int waits_for_room; // at another task

// A pixel of a canvas of this size.
int pixel(const icanvas &canvas, int x, int y) {
    return canvas.addr[y * canvas.scanline + x];
}

} // namespace

extern "C" {
int __real_poll(pollfd *watched, nfds_t count, int timeout_ms);
int __wrap_poll(pollfd *watched, nfds_t count, int timeout_ms) {
    waits_for_room += count == 1 && watched->events == POLLOUT;
    return __real_poll(watched, count, timeout_ms);
}
}

TEST_F(Tasks, AreListedSwitchedAndClosed) {
    EXPECT_EQ(MultitaskingSupported(), 1);
    const int own = GetCurrentTask();
    EXPECT_EQ(active(), own);
    std::vector<int> tasks = {own};
    for (const char *name : {"one", "two", "three", "four", "five", "six", "seven", "eight"}) {
        tasks.insert(tasks.begin(), start(name));
        EXPECT_EQ(task_list(), tasks) << "the one used last first";
    }
    EXPECT_TRUE(until([] { return count_of(EVT_BACKGROUND) == 1; }));
    EXPECT_EQ(FindTaskByAppName("three"), tasks[5]);
    EXPECT_EQ(FindTaskByAppName("nine"), -1);
    const itaskinfo *info = GetTaskInfo(tasks[0]);
    ASSERT_TRUE(info);
    EXPECT_STREQ(info->appname, "eight");
    EXPECT_STREQ(info->name, "name");
    EXPECT_EQ(GetTaskInfo(99), nullptr);
    EXPECT_EQ(IsTaskActive(), 0);

    for (const int task : {tasks[3], own, tasks[7]}) {
        EXPECT_EQ(SetActiveTask(task, -1), 1);
        EXPECT_EQ(active(), task);
        until([=] {
            return task == own ? count_of(EVT_FOREGROUND) == 1 : report(task).foregrounds == 1;
        });
    }
    until([] { return count_of(EVT_BACKGROUND) == 2; });
    EXPECT_EQ(count_of(EVT_FOREGROUND), 1);
    EXPECT_EQ(count_of(95), 1) << "the picture is shown again";
    EXPECT_EQ(report(tasks[3]).backgrounds, 2);
    EXPECT_EQ(report(tasks[3]).updates_checked, 1);
    int previous = 0, below = 0;
    EXPECT_EQ(GetPreviousTask(&previous, nullptr), 1);
    EXPECT_EQ(GetPreviousTaskInStack(&below, nullptr), 1);
    EXPECT_EQ(std::pair(previous, below), std::pair(own, tasks[3]));
    EXPECT_EQ(SetActiveTask(99, 0), 0);
    EXPECT_EQ(SetActiveTask(own, 5), 0) << "no such subtask";

    EXPECT_EQ(CloseTask(tasks[7], -1, 0), 1);
    EXPECT_EQ(CloseTask(tasks[3], -1, 1), 1);
    EXPECT_TRUE(until([&] { return task_list().size() == 7 && active() == own; }));
    GoToBackground();
    EXPECT_EQ(active(), tasks[0]) << "the one below";
    GoToBackground();
    EXPECT_EQ(active(), tasks[0]) << "what is not active gives nothing away";
}

TEST_F(Tasks, MayOpenTheScreenLateOrAgain) {
    const int own = GetCurrentTask();
    const int late = start_program("/bin/sleep", {"100"}, "late");
    EXPECT_EQ(SetActiveTask(late, -1), 1);
    EXPECT_EQ(active(), own) << "there is nothing to be shown yet";
    EXPECT_EQ(FindTaskByAppName("late"), late);
    EXPECT_EQ(task_list(), (std::vector{late, own}));

    const int other = start();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(CloseTask(own, -1, 0), 1);
        EXPECT_TRUE(loop_ends()) << i;
        ClearOnExit();
        EXPECT_EQ(active(), other);
        EXPECT_EQ(task_list().size(), 2u);
        EXPECT_TRUE(soon([=] { return report(other).foregrounds == i; }));
        open_screen();
        EXPECT_EQ(active(), own) << "shown when it opens";
    }
    EXPECT_TRUE(until([=] { return report(other).backgrounds == 2; }));
}

TEST(TaskStrangers, SendToTasksAndAreNone) {
    const Folder folder;
    EXPECT_EQ(MultitaskingSupported(), 1);
    EXPECT_EQ(GetCurrentTask(), -1);
    for (const int nobody : {-1, 0}) {
        EXPECT_EQ(SendEventTo(nobody, 1, 0, 0), 0);
        EXPECT_EQ(SendEventSyncTo(nobody, 1, 0, 0), 0);
        EXPECT_EQ(SendMessageTo(nobody, 1, nullptr, 0), 0);
    }
    EXPECT_EQ(SetRequestListener(1, 0, take_message), -1);
    EXPECT_EQ(NewSubtask("part"), -1);
}

TEST_F(Tasks, HaveSubtasksAndBooks) {
    const int own = GetCurrentTask(), other = start();
    const int book = NewSubtask("Walden");
    EXPECT_EQ(book, 1);
    EXPECT_EQ(SetSubtaskInfo(own, book, "Walden", "/mnt/walden.epub"), 1);
    EXPECT_EQ(SetSubtaskInfo(own, 7, "n", ""), 0);
    EXPECT_EQ(SetTaskParameters(other, "/mnt/dick.fb2", "Moby-\u00C4", nullptr, 0x80), 1);
    int task = 7, subtask = 7;
    EXPECT_EQ(FindTaskByBook("/mnt/walden.epub", &task, &subtask), 1);
    EXPECT_EQ(std::pair(task, subtask), std::pair(own, book));
    EXPECT_EQ(FindTaskByBook("/mnt/dick.fb2", &task, &subtask), 1);
    EXPECT_EQ(std::pair(task, subtask), std::pair(other, 0));
    start("");
    for (const char *none : {"/mnt/none", "", static_cast<const char *>(nullptr)}) {
        task = subtask = 7;
        EXPECT_EQ(FindTaskByBook(none, &task, &subtask), 0);
        EXPECT_EQ(std::pair(task, subtask), std::pair(0, 0));
        EXPECT_EQ(FindTaskByAppName(none), -1);
    }
    EXPECT_STREQ(GetTaskInfo(other)->title, "Moby-\u00C4");
    EXPECT_EQ(GetTaskInfo(other)->flags, 0x80u);

    EXPECT_EQ(SetActiveTask(own, book), 1);
    GetActiveTask(&task, &subtask);
    EXPECT_EQ(std::pair(task, subtask), std::pair(own, book));
    SwitchSubtask(own, 0);
    EXPECT_EQ(GetTaskInfo(own)->subtask, 0);
    EXPECT_EQ(GetTaskInfo(own)->nsubtasks, 2);
    SubtaskFinished(0);
    EXPECT_EQ(GetTaskInfo(own)->nsubtasks, 1);
    SubtaskFinished(book);
    EXPECT_EQ(GetTaskInfo(own)->subtask, book) << "the last one stays";
    EXPECT_STREQ(GetTaskInfo(own)->subtasks[0].name, "Walden");
    for (int i = 0; i < 20; ++i) subtask = NewSubtask("more");
    EXPECT_EQ(subtask, -1);
}

// To the last byte, with a mask, and with what lies behind a scanline that is too short.
TEST_F(Tasks, ShowTheirIcons) {
    const int other = start();
    const struct {
        std::array<unsigned short, 4> head; // width, height, depth, scanline
        size_t bytes;                       // behind it
    } cases[] = {{{5, 3, 2, 2}, 6},
                 {{9, 3, 4 | BITMAP_MASK, 5}, 15 + 6},
                 {{9, 2, 8, 8}, 16 + 4},
                 {{128, 127, 8, 128}, 16256},
                 {{128, 128, 8, 128}, 0}};
    for (const auto &c : cases) {
        std::vector<uint8_t> icon(sizeof c.head + std::max<size_t>(c.bytes, 16384));
        for (size_t i = 0; i < icon.size(); ++i) icon[i] = static_cast<uint8_t>(i * 7);
        std::memcpy(icon.data(), c.head.data(), sizeof c.head);
        const auto *given = reinterpret_cast<const ibitmap *>(icon.data());
        EXPECT_EQ(SetTaskParameters(other, "", "icons", given, 0), 1);
        const ibitmap *shown = GetTaskInfo(other)->icon;
        EXPECT_EQ(shown != nullptr, c.bytes > 0) << "one that is too large is left out";
        if (!shown) continue;
        EXPECT_EQ(std::memcmp(shown, given, sizeof c.head + c.bytes), 0) << c.bytes;
    }
}

TEST_F(Tasks, AnswerRequests) {
    const int other = start();
    const std::string sizes[] = {"", "x", std::string(65536, 'a')};
    for (const std::string &sent : sizes) {
        std::string data = sent;
        const int size = static_cast<int>(sent.size());
        if (size > 1) data[0] = '1';
        EXPECT_EQ(SendRequestTo(other, protocol::reverse, data.data(), size, size, 2000), size);
        EXPECT_TRUE(size < 2 || data.back() == '1') << size;
    }
    static char large[65537];
    EXPECT_EQ(SendRequestTo(other, 1, large, 65537, 0, 100), -1);
    EXPECT_EQ(SendRequestTo(other, 1, large, 0, 65537, 100), -1);
    EXPECT_EQ(SendRequestTo(other, 1, nullptr, 4, 0, 100), -1);
    EXPECT_EQ(SendRequestTo(99, 1, large, 4, 4, 100), -1);
    EXPECT_EQ(SendRequestTo(-1, 1, large, 4, 4, 100), -1);
    EXPECT_EQ(SendRequest(7777, large, 4, 4, 100), -1) << "nobody listens";
    EXPECT_EQ(SendRequestTo(other, 7777, large, 4, 4, 100), -1);
    EXPECT_EQ(SendRequestNoWait(7777, large, 4, 4), -1);
    EXPECT_EQ(SendRequestToNoWait(other, protocol::sleep, large, 4, 4), 1);
    SetRequestListener(protocol::reverse, 0, [](int, void *data, int size, int) {
        auto *bytes = static_cast<char *>(data);
        std::reverse(bytes, bytes + size);
        return size;
    });
    EXPECT_EQ(ask(other, protocol::ask_back, 0), 1) << "asked while it is asked";
    EXPECT_EQ(ask(GetCurrentTask(), protocol::reverse, 0), 4) << "itself";
}

TEST_F(Tasks, ThatSleepOrDieAnswerLateOrNever) {
    const int other = start();
    int pause_ms = 300;
    EXPECT_EQ(SendRequestTo(other, protocol::sleep, &pause_ms, 4, 4, 50), -1);
    char data[] = "abcd";
    EXPECT_EQ(SendRequestTo(other, protocol::reverse, data, 4, 4, 5000), 4);
    EXPECT_STREQ(data, "dcba") << "not the late answer";
    const int third = start("third");
    constexpr int hour_ms = 3'600'000; // nobody waits for the dead
    EXPECT_EQ(SendRequestTo(third, protocol::die, nullptr, 0, 0, hour_ms), -1);
    EXPECT_TRUE(until([=] { return !is_task(third); }));
    kill(GetTaskInfo(other)->pid, SIGSTOP);
    EXPECT_EQ(SendRequestTo(other, protocol::reverse, data, 4, 4, 50), -1);
    int sent = 0;
    while (sent < 1'000'000 && SendEventTo(other, 1, 0, 0)) ++sent;
    EXPECT_LT(sent, 1'000'000) << "the sender is told when no more fits";
    waits_for_room = 0;
    EXPECT_EQ(SendRequestTo(other, protocol::reverse, data, 4, 4, 50), -1);
    EXPECT_LE(waits_for_room, 6) << "of 10 ms each: no longer than the answer may take";
    kill(GetTaskInfo(other)->pid, SIGCONT);
}

TEST_F(Tasks, ListenersAreReplacedAndRemoved) {
    const int first = start("first"), second = start("second");
    constexpr int code = 4711;
    const auto ours = [](int, void *, int, int) { return 42; };
    const auto system = [] { return SendRequest(code, nullptr, 0, 0, 2000); };
    EXPECT_EQ(SetRequestListener(code, 0, ours), 0);
    EXPECT_EQ(SetRequestListener(code, 0, [](int, void *, int, int) { return 43; }), 0);
    EXPECT_EQ(system(), 43) << "the newer one";
    EXPECT_EQ(ask(first, protocol::listen, code), 0);
    EXPECT_EQ(system(), 1000 + code);
    EXPECT_EQ(SendRequestTo(GetCurrentTask(), code, nullptr, 0, 0, 2000), 43) << "still here";
    EXPECT_EQ(ask(second, protocol::listen, code), 0);
    EXPECT_EQ(CloseTask(first, -1, 1), 1);
    EXPECT_EQ(system(), 1000 + code);
    EXPECT_EQ(ask(second, protocol::listen, -code), 0);
    EXPECT_EQ(system(), -1);
    EXPECT_EQ(SetRequestListener(code, LISTENER_REMOVE, ours), 0) << "removes, and adds nothing";
    EXPECT_EQ(SendRequestTo(GetCurrentTask(), code, nullptr, 0, 0, 2000), -1);
    EXPECT_EQ(SetRequestListener(code, 0, nullptr), -1);
}

// Both ways at once. The long form is a campaign.
TEST_F(Tasks, MessagesAndEventsKeepTheirOrder) {
    const int count = std::getenv("KELVANE_CAMPAIGN") ? 100'000 : repeats(5000, 1000);
    const int other = start();
    EXPECT_EQ(SendRequestToNoWait(other, protocol::flood, const_cast<int *>(&count), 4, 0), 1);
    messages = disorder = 0;
    int sent = 0;
    for (int i = 0; i < count; ++i) {
        sent += SendEventTo(other, protocol::numbered_event, i, 0);
        sent += SendMessageTo(other, protocol::numbered_message, &i, sizeof i);
    }
    EXPECT_EQ(sent, 2 * count);
    EXPECT_TRUE(until([=] { return messages >= count; }));
    EXPECT_TRUE(until([=] { return report(other).events >= count; }));
    const protocol::Report heard = report(other);
    EXPECT_EQ(std::pair(heard.messages, heard.disorder), std::pair(count, 0));
    EXPECT_EQ(std::pair(messages, disorder), std::pair(count, 0));
    EXPECT_EQ(SendEventSyncTo(other, protocol::numbered_event, count & 0xFFFF, 0), 1);
    EXPECT_EQ(report(other).events, count + 1) << "handled when the call returns";
    constexpr int slow = 20; // together longer than a step of the loop handles events
    for (int i = 1; i <= slow; ++i) SendEventTo(other, protocol::slow_event, count + i, 0);
    EXPECT_EQ(SendEventSyncTo(other, protocol::numbered_event, (count + slow + 1) & 0xFFFF, 0), 1);
    EXPECT_EQ(report(other).events, count + slow + 2);
    EXPECT_EQ(report(other).disorder, 0) << "after all that was sent before it";
    EXPECT_EQ(SendEventTo(99, 1, 0, 0) + SendMessageTo(99, 1, nullptr, 0), 0);
    events.clear();
    EXPECT_EQ(SendEventSyncTo(other, protocol::event_back, GetCurrentTask(), 0), 1);
    EXPECT_EQ(count_of(protocol::numbered_event), 1) << "while it waits for who waits for it";
}

// More than a waiting task keeps: the rest stays with who sends it, and the answer gets through.
TEST_F(Tasks, WhatIsTakenArrivesWhileAnAnswerIsAwaited) {
    const int asked = start("asked"), flooding = start("flooding");
    int count = 2000, pause_ms = 1500;
    messages = disorder = 0;
    EXPECT_EQ(SendRequestToNoWait(flooding, protocol::flood_large, &count, 4, 0), 1);
    EXPECT_EQ(SendRequestTo(asked, protocol::sleep, &pause_ms, 4, 4, 15'000), 1);
    const int taken = report(flooding).large_taken;
    EXPECT_GT(taken, 0);
    EXPECT_TRUE(until([=] { return messages >= taken; })) << messages << " of " << taken;
    EXPECT_EQ(std::pair(messages, disorder), std::pair(taken, 0));
}

TEST_F(Tasks, ShareTheirFramebuffers) {
    const int other = start(), own = GetCurrentTask();
    EXPECT_EQ(ask(other, protocol::shade, 0x40), ScreenWidth());
    icanvas *canvas = GetTaskFramebuffer(other);
    ASSERT_TRUE(canvas);
    EXPECT_EQ(std::pair(canvas->width, canvas->height), std::pair(600, 800));
    EXPECT_EQ(pixel(*canvas, 599, 799), 0x40);
    canvas->addr[0] = 0x99;
    icanvas *again = GetTaskFramebuffer(other);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->addr[0], 0x40) << "what is drawn there stays here";
    ReleaseTaskFramebuffer(again);
    ReleaseTaskFramebuffer(canvas);
    ReleaseTaskFramebuffer(canvas);
    int w = 0, h = 0, depth = 0;
    EXPECT_EQ(GetTaskFramebufferInfo(other, &w, &h, &depth), 1);
    EXPECT_EQ(w + h + depth, 600 + 800 + 8);
    EXPECT_EQ(GetTaskFramebufferInfo(99, &w, &h, &depth) + w + h + depth, 0);
    EXPECT_EQ(GetTaskFramebuffer(99), nullptr);
    EXPECT_EQ(pixel(*hw_getframebuffer(), 300, 400), 0xFF);
    EXPECT_EQ(CopyActiveFb(), 1);
    EXPECT_EQ(pixel(*hw_getframebuffer(), 300, 400), 0x40);
    SetActiveTask(own, 0);
    EXPECT_TRUE(until([] { return FullUpdate(), CopyActiveFb() == 0; })) << "its own";
    const int copier = start("copier", TASK_COPIES_SCREEN);
    canvas = GetTaskFramebuffer(copier);
    EXPECT_EQ(pixel(*canvas, 300, 400), 0x40) << "as the active one was";
}

TEST_F(Tasks, AreChosenFromAMenu) {
    const int other = start("/bin/reader.app");
    SetActiveTask(GetCurrentTask(), 0);
    OpenTaskList();
    const auto press = [](int key) {
        SendEvent(GetEventHandler(), EVT_KEYPRESS, key, 0);
        SendEvent(GetEventHandler(), EVT_KEYRELEASE, key, 0);
        for (int i = 0; i < 10; ++i) ProcessEventLoopQuick();
    };
    EXPECT_NE(GetEventHandler(), handler) << "a menu";
    press(KEY_DOWN);
    press(KEY_OK);
    EXPECT_EQ(active(), other);
    EXPECT_EQ(GetEventHandler(), handler);
}
