// SPDX-License-Identifier: MIT
// The manager is killed, lied to and flooded; nothing is left behind.
#include "fixture.h"

#include <random>

#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include "hw_linux/tasks/link.h"
#include "hw_linux/tasks/manager.h"
#include "hw_linux/tasks/place.h"
#include "hw_linux/tasks/records.h"
#include "hw_linux/tasks/serve.h"
#include "support/child.h"

namespace {

using namespace tasks_test;
using namespace hw::tasks;

class TaskManager : public tasks_test::Test {
  protected:
    Descriptor connect() {
        place_.open(place().c_str());
        return place_.connect();
    }
    Place place_;
};

// For twenty seconds at most.
bool comes_true(const std::function<bool()> &holds) {
    for (int i = 0; i < 400 && !holds(); ++i) usleep(50'000);
    return holds();
}

bool nothing_is_in(const std::filesystem::path &folder) {
    std::error_code gone;
    return std::filesystem::is_empty(folder, gone) || gone;
}

// Others than this one that were started for these tasks.
int processes_of(const std::filesystem::path &folder) {
    int count = 0;
    for (const auto &process : std::filesystem::directory_iterator("/proc")) {
        if (process.path().filename() == std::to_string(getpid())) continue;
        const std::string environment = read_file(process.path() / "environ");
        count += environment.find("KELVANE_TASKS=" + folder.string()) != std::string::npos;
    }
    return count;
}

// The bytes of a frame.
std::string bytes_of(const Frame &frame) {
    const Header header = header_of(frame);
    std::string bytes(reinterpret_cast<const char *>(&header), sizeof header);
    return bytes.append(frame.data.begin(), frame.data.end());
}

} // namespace

TEST_F(TaskManager, IsReplacedWhenItIsKilled) {
    const int first = start("first"), second = start("second");
    const std::vector<int> tasks = task_list();
    const int back = report(second).backgrounds;
    for (int i = 0; i < 3; ++i) {
        const pid_t former = manager();
        ASSERT_GT(former, 0);
        kill(former, SIGKILL);
        EXPECT_EQ(ask(first, protocol::reverse, 0), 4) << "who knows each other goes on";
        EXPECT_TRUE(until([&] { return task_list() == tasks && active() == second; }));
        EXPECT_TRUE(until([=] { return manager() != former && manager() > 0; }));
    }
    usleep(600'000);
    EXPECT_EQ(std::pair(report(second).foregrounds, report(second).backgrounds), std::pair(0, back))
        << "nobody was told anything";
    EXPECT_STREQ(GetTaskInfo(first)->appname, "first");
    const int third = start("third");
    EXPECT_GT(third, second) << "no number twice";
    icanvas *canvas = GetTaskFramebuffer(first);
    EXPECT_TRUE(canvas);
    ReleaseTaskFramebuffer(canvas);
    EXPECT_EQ(SetActiveTask(first, 0), 1);
    EXPECT_TRUE(until([=] { return report(first).foregrounds == 1; }));
}

TEST_F(TaskManager, HearsOnlyWhatKeepsTheRules) {
    Frame hello{.kind = Kind::hello};
    Frame join{.kind = Kind::join};
    const TaskRecord record;
    join.data.assign(reinterpret_cast<const uint8_t *>(&record),
                     reinterpret_cast<const uint8_t *>(&record + 1));
    std::string foreign = bytes_of(hello), endless = bytes_of(join), torn = bytes_of(join);
    foreign[4] = 2;
    std::memset(endless.data() + sizeof(Header) + offsetof(TaskRecord, appname), 'x', 512);
    torn.resize(torn.size() - 1);
    const std::string rest = bytes_of({.kind = Kind::activate});
    for (const std::string &bytes : {std::string("x"), std::string(100'000, 'y'), foreign, endless,
                                     torn, rest, bytes_of(hello) + "z"}) {
        const Descriptor link = connect();
        ASSERT_TRUE(link);
        ASSERT_EQ(write(link.get(), bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
        Arrival arrival;
        Received received = Received::nothing;
        while (received == Received::nothing || received == Received::frame)
            received = receive_frame(link, arrival);
        EXPECT_EQ(received, Received::broken) << bytes.size();
    }
    EXPECT_EQ(task_list().size(), 1u);
    std::vector<Descriptor> crowd;
    for (int i = 0; i < 100; ++i) crowd.push_back(connect());
    const int task = start();
    EXPECT_GT(task, 0);
}

TEST_F(TaskManager, ThatIsStoppedHoldsNobodyUp) {
    const int other = start(), own = GetCurrentTask();
    const pid_t stopped = manager();
    kill(stopped, SIGSTOP);
    EXPECT_EQ(NewSubtask("late"), -1);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(SetActiveTask(own, 0), 0);
    EXPECT_EQ(ask(other, protocol::reverse, 0), 4) << "who knows each other goes on";
    kill(stopped, SIGCONT);
    EXPECT_TRUE(until([=] { return SetActiveTask(own, 0) == 1; }));
    EXPECT_EQ(manager(), stopped);
    EXPECT_EQ(GetTaskInfo(own)->nsubtasks, 2) << "done late, and once";
}

TEST_F(TaskManager, IsLeftAloneByWhoHasNoDescriptorToReachIt) {
    ASSERT_TRUE(connect());
    const pid_t before = manager();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const int lowest_free = dup(0);
    close(lowest_free);
    rlimit one_more = limit;
    one_more.rlim_cur = static_cast<rlim_t>(lowest_free) + 1; // the lock
    setrlimit(RLIMIT_NOFILE, &one_more);
    EXPECT_FALSE(connect_to_manager(place_));
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_TRUE(place_.connect());
    EXPECT_EQ(manager(), before);
}

TEST_F(TaskManager, DirectoryMustBeTheUsersAlone) {
    for (const char *name : {"open", "file"}) {
        if (*name == 'o')
            std::filesystem::create_directory(name);
        else
            write_file(name, "");
        std::filesystem::permissions(name, std::filesystem::perms(0755));
        testing::internal::CaptureStderr();
        Place other;
        EXPECT_FALSE(other.open(name));
        EXPECT_NE(testing::internal::GetCapturedStderr().find("KELVANE_TASKS=" + std::string(name)),
                  std::string::npos);
    }
    using std::filesystem::perms;
    const perms allowed = std::filesystem::status(place()).permissions();
    EXPECT_EQ(allowed & (perms::group_all | perms::others_all), perms::none);
}

TEST(TaskVersions, AManagerOfAnotherVersionIsLeftAlone) {
    const Folder folder;
    Place here;
    ASSERT_TRUE(here.open(place().c_str()));
    const Descriptor door = here.listen();
    const pid_t other = fork();
    if (other == 0) {
        std::string foreign = bytes_of({.kind = Kind::reply});
        foreign[4] = 2;
        pollfd waiting = {door.get(), POLLIN, 0};
        poll(&waiting, 1, -1);
        const Descriptor link(accept(door.get(), nullptr, nullptr));
        if (write(link.get(), foreign.data(), foreign.size()) > 0) pause();
        _exit(1);
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(MultitaskingSupported(), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("another version"), std::string::npos);
    EXPECT_EQ(GetCurrentTask(), -1);
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
}

TEST(TaskKills, AManagerThatIsKilledInTheMiddleOfAChangeLosesNobody) {
    const Folder folder;
    Place here;
    ASSERT_TRUE(here.open(place().c_str()));
    SharedTable table = SharedTable::make();
    Table &shared = *table.get();
    Descriptor door = here.listen();
    const pid_t former = fork();
    if (former == 0) {
        Manager manager(std::move(table), here);
        for (;;) manager.step(door);
    }
    door.reset();
    open_screen();
    start();
    const std::vector<int> tasks = task_list();
    ++shared.changes;
    kill(former, SIGKILL);
    waitpid(former, nullptr, 0);
    ASSERT_TRUE(until([&] { return task_list() == tasks; }));
    EXPECT_GT(manager(), 0) << "another one";
    EXPECT_STREQ(GetTaskInfo(tasks[0])->appname, "app");
    CloseTask(tasks[0], -1, 1);
    EXPECT_TRUE(until([] { return task_list().size() == 1; }));
    ClearOnExit();
}

// Whoever is killed, the rest goes on, and at the end nothing is left. The long form is a campaign.
TEST(TaskKills, LeaveNothingBehind) {
    const int kills = std::getenv("KELVANE_CAMPAIGN") ? 1000 : 12;
    const Folder folder;
    const int result = in_child([=] {
        open_screen();
        std::mt19937 random(7);
        std::vector<int> tasks = {start("a"), start("b"), start("c")};
        for (int i = 0; i < kills; ++i) {
            usleep(random() % 20'000);
            int &victim = tasks[random() % tasks.size()];
            // A task, the manager, or one that starts another.
            switch (random() % 3) {
            case 0:
                if (const itaskinfo *info = GetTaskInfo(victim)) kill(info->pid, SIGKILL);
                break;
            case 1:
                if (const pid_t process = manager(); process > 0) kill(process, SIGKILL);
                break;
            default: {
                const pid_t starter = fork();
                if (starter == 0) {
                    start_program(TASKS_APP, {}, "orphan");
                    pause();
                }
                usleep(random() % 30'000);
                kill(starter, SIGKILL);
                waitpid(starter, nullptr, 0);
            }
            }
            for (int &task : tasks)
                if (!until([&] { return ask(task, protocol::reverse, 0) == 4 || !is_task(task); }))
                    return 1;
                else if (!is_task(task))
                    task = start("again");
            for (const int task : task_list())
                if (const itaskinfo *info = GetTaskInfo(task);
                    info && (std::strcmp(info->appname, "orphan") == 0))
                    CloseTask(task, -1, 1);
        }
        // Those whose starter was killed may still be on their way.
        for (int i = 0; i < 10; ++i, usleep(50'000))
            for (const int task : task_list())
                if (task != GetCurrentTask()) CloseTask(task, -1, 1);
        return until([] { return task_list().size() == 1; }) ? 0 : 2;
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(comes_true([] { return nothing_is_in(place()); }));
    EXPECT_TRUE(comes_true([] { return processes_of(place()) == 0; })) << "nor what they shared";
}
