// SPDX-License-Identifier: MIT
// The calls of kelvane/tasks.h on a device without a task manager, and the names of the task list.
#include "kelvane/tasks.h"

#include "hw.h"
#include "kelvane/languages.h"
#include "support/headless.h"

namespace {

int unwanted(int, void *, int, int) {
    ADD_FAILURE() << "nobody sends";
    return 0;
}

// What a call hands out through pointers, which the call made of 7s.
struct Numbers {
    int a = 7, b = 7, c = 7;
    bool operator==(const Numbers &) const = default;
};

class Tasks : public headless::Test {};

} // namespace

TEST_F(Tasks, WithoutAManagerEachCallGivesItsAnswerAndDoesNothing) {
    static char data[] = "data";
    const struct {
        const char *name;
        int expected;
        int (*call)();
    } cases[] = {
        {"MultitaskingSupported", 0, MultitaskingSupported},
        {"NewSubtask", -1, [] { return NewSubtask("s"); }},
        {"GetCurrentTask", -1, GetCurrentTask},
        {"IsTaskActive", 1, IsTaskActive},
        {"GetTaskList", 0, [] { return GetTaskList(nullptr, 8); }},
        {"GetTaskInfo", 1, [] { return int{GetTaskInfo(1) == nullptr}; }},
        {"FindTaskByAppName", -1, [] { return FindTaskByAppName("hello"); }},
        {"FindTaskByAppName of nothing", -1, [] { return FindTaskByAppName(""); }},
        {"SetTaskParameters", 0, [] { return SetTaskParameters(1, "b", "t", nullptr, 0); }},
        {"SetSubtaskInfo", 0, [] { return SetSubtaskInfo(1, 0, "n", nullptr); }},
        {"SetActiveTask", 0, [] { return SetActiveTask(1, 0); }},
        {"CloseTask", 0, [] { return CloseTask(1, 0, 1); }},
        {"SendEventTo", 0, [] { return SendEventTo(1, EVT_SHOW, 0, 0); }},
        {"SendEventSyncTo", 0, [] { return SendEventSyncTo(1, EVT_SHOW, 0, 0); }},
        {"SendMessageTo", 0, [] { return SendMessageTo(1, 1, data, 4); }},
        {"SetRequestListener", -1, [] { return SetRequestListener(1, 0, unwanted); }},
        {"SendRequest", -1, [] { return SendRequest(1, data, 4, 4, 10); }},
        {"SendRequestNoWait", -1, [] { return SendRequestNoWait(1, data, 4, 4); }},
        {"SendRequestTo", -1, [] { return SendRequestTo(1, 1, data, 4, 4, 10); }},
        {"SendRequestToNoWait", -1, [] { return SendRequestToNoWait(1, 1, data, 4, 4); }},
        {"SendGlobalRequest", 0, [] { return SendGlobalRequest(80); }},
        {"SetMessageHandler", 0, [] { return SetMessageHandler(unwanted); }},
        {"GetTaskFramebuffer", 1, [] { return int{GetTaskFramebuffer(1) == nullptr}; }},
        {"CopyActiveFb", 0, CopyActiveFb},
        {"NewTask", -1, [] { return NewTask("/bin/true", nullptr, "a", "n", nullptr, 0); }},
        {"NewTaskEx", -1, [] { return NewTaskEx("/bin/true", nullptr, "a", "n", nullptr, 0, 0); }},
        {"NewTask of nothing", -1,
         [] { return NewTask(nullptr, nullptr, nullptr, nullptr, nullptr, 0); }},
    };
    for (const auto &c : cases) EXPECT_EQ(c.call(), c.expected) << c.name;

    const struct {
        const char *name;
        Numbers out;
        int (*call)(Numbers &);
    } outs[] = {
        {"GetActiveTask", {-1, -1}, [](Numbers &n) { return GetActiveTask(&n.a, &n.b), 0; }},
        {"GetPreviousTask", {0, 0}, [](Numbers &n) { return GetPreviousTask(&n.a, &n.b); }},
        {"GetPreviousTaskInStack",
         {0, 0},
         [](Numbers &n) { return GetPreviousTaskInStack(&n.a, &n.b); }},
        {"FindTaskByBook", {0, 0}, [](Numbers &n) { return FindTaskByBook("b", &n.a, &n.b); }},
        {"FindTaskByBook of nothing",
         {0, 0},
         [](Numbers &n) { return FindTaskByBook("", &n.a, &n.b); }},
        {"GetTaskFramebufferInfo",
         {0, 0, 0},
         [](Numbers &n) { return GetTaskFramebufferInfo(1, &n.a, &n.b, &n.c); }},
    };
    for (const auto &c : outs) {
        Numbers n;
        EXPECT_EQ(c.call(n), 0) << c.name;
        EXPECT_EQ(n, c.out) << c.name;
    }
    GetActiveTask(nullptr, nullptr);
    SwitchSubtask(1, 1);
    SubtaskFinished(1);
    GoToBackground();
    ReleaseTaskFramebuffer(nullptr);
    OpenTaskList();
    headless::advance(100);
    EXPECT_EQ(headless::events(), "") << "no menu, nothing sent";
}

TEST_F(Tasks, AStartAndASwitchAreLoggedBeforeAnythingIsAsked) {
    setenv("KELVANE_LOG", "4", 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(NewTask("./no\u00F6ne", nullptr, "app", nullptr, nullptr, 0x1F), -1);
    SetActiveTask(3, -1);
    const std::string pid = std::to_string(getpid());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[pid:" + pid +
                  "]NewTask('./no\u00F6ne',app='app',name='',flags=1f)\n"
                  "NewTask(): file './no\u00F6ne' not found\nSetActiveTask(3, -1)\n");
}

TEST_F(Tasks, NamesForPeople) {
    AddTranslation("@Reader", "Lesen");
    AddTranslation("@archive.tar", "Packed");
    AddTranslation("@\u00C4pfel", "Apples");
    const struct {
        const char *path, *name;
    } cases[] = {
        {"/ebrmain/bin/reader.app", "Lesen"}, // by its capital letter
        {"reader", "Lesen"},
        {"@Reader.app", "Lesen"}, // one sign is enough
        {"/mnt/archive.tar.gz", "Packed"},
        {"a/\u00E4pfel.bin", "Apples"}, // a letter of two bytes
        {"player.app", "player"},
        {"walden.epub", "walden.epub"}, // too long an extension
        {"/a.b/c", "c"},
        {".app", ""},
        {"folder/", ""},
        {"@", ""},
        {"", ""},
        {nullptr, ""},
    };
    for (const auto &c : cases) EXPECT_STREQ(user_friendly_name(c.path), c.name) << c.path;
    const char *first = user_friendly_name("one.app");
    EXPECT_STREQ(user_friendly_name(first), "one") << "a name of its own";
}
