// SPDX-License-Identifier: MIT
// How applications start and end, each in a real process of its own on the headless device.
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/timers.h"
#include "support/tempdir.h"

namespace {

namespace fs = std::filesystem;

constexpr const char *current_file = "system/tmp/.current";

struct Outcome {
    int status = -1; // exit status, 128 + n for signal n
    std::string calls;
    std::string errors;
    bool current_left = false;
};

int call_log = -1;
std::function<void(int)> on_event;

void note(const std::string &word) {
    const std::string text = word + " ";
    ASSERT_EQ(write(call_log, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

int recording_handler(int type, int, int) {
    switch (type) {
    case EVT_INIT:
        note("INIT");
        break;
    case EVT_SHOW:
        note("SHOW");
        break;
    case EVT_HIDE:
        note("HIDE");
        break;
    case EVT_EXIT:
        note("EXIT");
        break;
    default:
        break;
    }
    if (on_event) on_event(type);
    return 0;
}

// Runs `body` in a child process inside a fresh device folder.
Outcome run(const std::function<void()> &body) {
    const TempDir folder;
    write_file(current_file, "open book");
    const pid_t child = fork();
    if (child == 0) {
        call_log = open("calls", O_CREAT | O_WRONLY | O_APPEND, 0600);
        if (!std::freopen("errors", "w", stderr)) _exit(99);
        setenv("KELVANE_DEVICE", "headless", 1);
        body();
        note("returned");
        std::exit(7);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), read_file("calls"),
            read_file("errors"), fs::exists(current_file)};
}

void run_and(std::function<void(int)> action) {
    on_event = std::move(action);
    KelvaneMain(recording_handler);
}

TEST(Lifecycle, EveryEndGivesItsCallsAndStatusZero) {
    struct {
        const char *name;
        std::function<void(int)> action;
        const char *calls;
    } const cases[] = {
        {"CloseApp",
         [](int type) {
             if (type == EVT_SHOW) CloseApp();
         },
         "INIT SHOW HIDE EXIT "},
        {"CloseApp during EVT_INIT",
         [](int type) {
             if (type == EVT_INIT) CloseApp();
         },
         "INIT SHOW HIDE EXIT "},
        {"SIGTERM",
         [](int type) {
             if (type == EVT_SHOW) raise(SIGTERM);
         },
         "INIT SHOW EXIT "},
        {"SIGINT",
         [](int type) {
             if (type == EVT_SHOW) raise(SIGINT);
         },
         "INIT SHOW EXIT "},
        {"SIGHUP",
         [](int type) {
             if (type == EVT_SHOW) raise(SIGHUP);
         },
         "INIT SHOW EXIT "},
        {"SIGQUIT",
         [](int type) {
             if (type == EVT_SHOW) raise(SIGQUIT);
         },
         "INIT SHOW EXIT "},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome outcome = run([&] { run_and(c.action); });
        EXPECT_EQ(outcome.calls, c.calls);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_FALSE(outcome.current_left);
    }
}

TEST(Lifecycle, AnExitOfTheApplicationsOwnGoesOnAfterTheExitActions) {
    struct {
        const char *name;
        std::function<void(int)> action;
        const char *calls;
        int status;
    } const cases[] = {
        {"exit(3) in a handler",
         [](int type) {
             if (type == EVT_SHOW) std::exit(3);
         },
         "INIT SHOW EXIT exits ", 3},
        {"exit(4) in EVT_EXIT",
         [](int type) {
             if (type == EVT_SHOW) CloseApp();
             if (type == EVT_EXIT) std::exit(4);
         },
         "INIT SHOW HIDE EXIT exits ", 4},
        {"a return",
         [](int type) {
             if (type == EVT_SHOW) LeaveKelvaneMain();
         },
         "INIT SHOW HIDE returned EXIT exits ", 7},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome outcome = run([&] {
            std::atexit([] { note("exits"); }); // before the screen opens, so it runs last
            run_and(c.action);
        });
        EXPECT_EQ(outcome.calls, c.calls);
        EXPECT_EQ(outcome.status, c.status);
        EXPECT_FALSE(outcome.current_left);
    }
}

TEST(Lifecycle, AThreadThatWaitsForInputDoesNotHoldUpTheEnd) {
    const Outcome outcome = run([] {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        dup2(ends[0], STDIN_FILENO);
        alarm(10);
        std::thread([] { std::getchar(); }).detach();
        run_and([](int type) {
            if (type == EVT_INIT)
                SetHardTimer(
                    "close", [](void *) { CloseApp(); }, 100);
        });
    });
    EXPECT_EQ(outcome.calls, "INIT SHOW HIDE EXIT ");
    EXPECT_EQ(outcome.status, 0);
}

TEST(Lifecycle, AForkedChildThatExitsRunsNothing) {
    const Outcome outcome = run([] {
        run_and([](int type) {
            if (type != EVT_SHOW) return;
            const pid_t child = fork();
            if (child == 0) std::exit(5);
            int status = 0;
            waitpid(child, &status, 0);
            note(WIFEXITED(status) ? std::to_string(WEXITSTATUS(status)) : "killed");
            note(fs::exists(current_file) ? "kept" : "gone");
            CloseApp();
        });
    });
    EXPECT_EQ(outcome.calls, "INIT SHOW 5 kept HIDE EXIT ");
    EXPECT_EQ(outcome.status, 0);
}

TEST(Lifecycle, AnExternalScreenLeavesTheProcessToTheApplication) {
    const Outcome outcome = run([] {
        for (int round = 0; round < 2; round++) {
            ASSERT_EQ(OpenScreenExt(), 1);
            ASSERT_EQ(OpenScreenExt(), 1);
            run_and([](int type) {
                if (type == EVT_SHOW) CloseApp();
            });
            note(kvstate.isopen ? "open" : "closed");
        }
    });
    EXPECT_EQ(outcome.calls, "INIT SHOW HIDE EXIT closed INIT SHOW HIDE EXIT closed returned ");
    EXPECT_EQ(outcome.status, 7);
}

TEST(Lifecycle, EndsInsideEndsHappenOnce) {
    for (int during : {EVT_HIDE, EVT_EXIT}) {
        const Outcome outcome = run([=] {
            ASSERT_EQ(OpenScreenExt(), 1);
            run_and([=](int type) {
                if (type == EVT_SHOW) CloseApp();
                if (type == EVT_EXIT && kvstate.sleepenable) note("may sleep");
                if (type == during) ClearOnExit();
            });
        });
        EXPECT_EQ(outcome.calls, "INIT SHOW HIDE EXIT returned ");
        EXPECT_EQ(outcome.status, 7);
    }
}

TEST(Lifecycle, StepsBeforeTheScreenIsOpenDoNotEndTheNextLoop) {
    const Outcome outcome = run([] {
        EXPECT_EQ(ProcessEventLoop(), KELVANE_OUT_LOOP);
        ClearOnExit();
        ASSERT_EQ(OpenScreenExt(), 1);
        SetEventHandler(recording_handler);
        ProcessEventLoop();
        note(ProcessEventLoop() == KELVANE_CONTINUE ? "goes on" : "ended");
    });
    EXPECT_EQ(outcome.calls, "SHOW goes on returned ");
}

TEST(Lifecycle, ASafeStartIgnoresTheSettings) {
    const TempDir folder;
    write_file("system/config/device.cfg", "safemode=1\nlanguage=de\n");
    write_file("system/config/global.cfg", "theme=broken\nlanguage=fr\nantialiasing=0\n");
    setenv("KELVANE_DEVICE", "headless", 1);
    ASSERT_EQ(OpenScreenExt(), 1);
    EXPECT_STREQ(kvstate.theme, "default");
    EXPECT_STREQ(kvstate.lang, "de");
    EXPECT_EQ(kvstate.antialiasing, 1);
    ClearOnExit();
}

TEST(Lifecycle, LeavingReturnsWithoutTheExitActions) {
    const Outcome outcome = run([] {
        run_and([](int type) {
            if (type == EVT_SHOW) LeaveKelvaneMain();
        });
        note("left");
        KelvaneMain(recording_handler);
        note("again");
        _exit(0);
    });
    EXPECT_EQ(outcome.calls, "INIT SHOW HIDE left INIT SHOW HIDE again ");
    EXPECT_TRUE(outcome.current_left);
}

TEST(Lifecycle, OwnLoopsEndLikeKelvaneMain) {
    const Outcome outcome = run([] {
        on_event = [](int type) {
            if (type == EVT_SHOW) CloseApp();
        };
        InitKelvane(0x10025);
        PrepareForLoop(recording_handler);
        while (ProcessEventLoop() == KELVANE_CONTINUE) {
        }
        ClearOnExit();
    });
    EXPECT_EQ(outcome.calls, "INIT SHOW HIDE EXIT returned ");
}

TEST(Lifecycle, AScreenThatCannotBeOpenedIsSaid) {
    for (const char *entry : {"KelvaneMain", "PrepareForLoop"}) {
        const Outcome outcome = run([entry] {
            setenv("KELVANE_DEVICE", "paper", 1);
            (entry[0] == 'K' ? KelvaneMain : PrepareForLoop)(recording_handler);
        });
        EXPECT_EQ(outcome.calls, "returned ");
        EXPECT_NE(outcome.errors.find(std::string(" (") + entry + ")OpenScreen() error\n"),
                  std::string::npos)
            << outcome.errors;
        EXPECT_TRUE(outcome.current_left);
    }
}

TEST(Lifecycle, SettingsReachTheRuntime) {
    struct {
        const char *config;
        int keylock_ms, poweroff_ms;
        const char *layouts;
    } const cases[] = {
        {"", 2147483647, 2147483647, "EN-RU-UK"},
        {"keylock=1\npoweroff=1\nkbdlayout.1=DE:x\n", 315000, 600000, "DE"},
        {"keylock=2\npoweroff=2\nkbdlayout.1=EN\nkbdlayout.2=R1\nkbdlayout.3=UK y\n", 615000,
         1200000, "EN-UK"},
        {"keylock=3\npoweroff=3\nkbdlayout.1=ENG\nkbdlayout.2=RU\n", 2147483647, 1800000,
         "EN-RU-UK"},
        {"poweroff=9\nkbdlayout.1=EN\nkbdlayout.2=RU\nkbdlayout.3=PL\n", 2147483647, 3600000,
         "EN-RU-PL"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.config);
        const TempDir folder;
        write_file("system/config/global.cfg", c.config);
        setenv("KELVANE_DEVICE", "headless", 1);
        ASSERT_EQ(OpenScreenExt(), 1);
        EXPECT_EQ(kvstate.keylocktm, c.keylock_ms);
        EXPECT_EQ(kvstate.powerofftm, c.poweroff_ms);
        EXPECT_STREQ(kvstate.kbdlang, c.layouts);
        ClearOnExit();
    }
}

} // namespace
