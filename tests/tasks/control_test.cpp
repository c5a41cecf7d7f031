// SPDX-License-Identifier: MIT
// A controller of one task plays the device, whichever task is the active one.
#include "fixture.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace {

using namespace tasks_test;

struct Controlled {
    Controlled() { setenv("KELVANE_CONTROL", "control", 1); }
    ~Controlled() { unsetenv("KELVANE_CONTROL"); }
};

class TaskControl : Controlled, public tasks_test::Test {
  protected:
    TaskControl() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, "control");
        EXPECT_EQ(connect(link_, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    }
    ~TaskControl() override { close(link_); }

    std::string say(const std::string &line) {
        EXPECT_GT(send(link_, (line + "\n").c_str(), line.size() + 1, 0), 0);
        std::string answer(200, '\0');
        ssize_t size = 0;
        until([&] { return (size = recv(link_, answer.data(), 200, MSG_DONTWAIT)) > 0; });
        answer.resize(static_cast<size_t>(std::max<ssize_t>(size, 0)));
        return answer;
    }

  private:
    int link_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

} // namespace

TEST_F(TaskControl, AwaitsTasksAndPressesForTheActiveOne) {
    const int other = start_program(TASKS_APP, {}, "other");
    EXPECT_EQ(say("await other"), "ok\n");
    EXPECT_EQ(active(), other);
    EXPECT_EQ(say("press OK"), "ok\n");
    EXPECT_TRUE(until([=] { return report(other).last_input == KEY_OK; }));
    EXPECT_EQ(count_of(EVT_KEYPRESS), 0);

    kill(GetTaskInfo(other)->pid, SIGSTOP);
    for (int i = 0; i < 1'000'000 && SendEventTo(other, 1, 0, 0);) ++i;
    EXPECT_EQ(say("press OK"), "ok\n");
    EXPECT_EQ(say("idle"), "ok\n");
    EXPECT_EQ(count_of(EVT_KEYPRESS), 0) << "what the active one cannot take is lost";
    kill(GetTaskInfo(other)->pid, SIGCONT);
}
