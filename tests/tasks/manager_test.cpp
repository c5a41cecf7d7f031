// SPDX-License-Identifier: MIT
// The manager is killed, lied to and flooded; nothing is left behind.
#include "fixture.h"

#include <random>
#include <thread>

#include <fcntl.h>
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

bool has_open(const std::filesystem::path &process, const std::string &target) {
    std::error_code gone;
    for (const auto &fd : std::filesystem::directory_iterator(process / "fd", gone))
        if (std::filesystem::read_symlink(fd.path(), gone).string().starts_with(target))
            return true;
    return false;
}

// Others than this one that were started for these tasks, or have something open there.
int processes_of(const std::filesystem::path &folder) {
    int count = 0;
    for (const auto &process : std::filesystem::directory_iterator("/proc")) {
        if (process.path().filename() == std::to_string(getpid())) continue;
        const std::string environment = read_file(process.path() / "environ");
        count += environment.find("KELVANE_TASKS=" + folder.string()) != std::string::npos ||
                 has_open(process.path(), folder);
    }
    return count;
}

Frame join_frame() {
    Frame join{.kind = Kind::join};
    const TaskRecord record;
    join.data.assign(reinterpret_cast<const uint8_t *>(&record),
                     reinterpret_cast<const uint8_t *>(&record + 1));
    return join;
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
    const Frame join = join_frame();
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

// Asks for a connection as a task of its own, and says something on it that is no frame here.
int talk_in_a_foreign_version(const Descriptor &manager, int task) {
    Arrival arrival;
    const auto receive = [&](const Descriptor &link) {
        Received received = Received::nothing;
        while ((received = receive_frame(link, arrival)) == Received::nothing) usleep(1000);
        return received;
    };
    Frame question{.kind = Kind::connect};
    question.numbers[0] = task;
    for (const Frame &frame : {join_frame(), question})
        if (send_frame(manager, frame) != Sent::yes || receive(manager) != Received::frame)
            return 1;
    const Descriptor link = std::move(arrival.descriptor);
    std::string foreign = bytes_of({.kind = Kind::event});
    foreign[4] = 2;
    if (write(link.get(), foreign.data(), foreign.size()) < 0) return 2;
    return receive(link) == Received::broken ? 0 : 3;
}

TEST_F(TaskManager, HandsOutConnectionsToTasksThatHearNoForeignVersion) {
    const pid_t stranger = fork();
    if (stranger == 0) _exit(talk_in_a_foreign_version(connect(), 1));
    int status = -1;
    EXPECT_TRUE(until([&] { return waitpid(stranger, &status, WNOHANG) == stranger; }));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(count_of(0), 0);
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
    namespace fs = std::filesystem;
    const struct {
        const char *name, *fault;
    } cases[] = {{"open", "open to others"},
                 {"file", "Not a directory"},
                 {"link", "Not a directory"},
                 {"foreign", "belongs to another user"}};
    for (const char *name : {"open", "foreign"}) fs::create_directory(name);
    write_file("file", "");
    fs::create_directory_symlink(place(), "link");
    fs::permissions("open", fs::perms(0755));
    const bool is_root = chown("foreign", 1, 1) == 0;
    for (const auto &c : cases) {
        if (*c.fault == 'b' && !is_root) continue;
        testing::internal::CaptureStderr();
        Place other;
        EXPECT_FALSE(other.open(c.name));
        EXPECT_EQ(testing::internal::GetCapturedStderr().find(
                      "KELVANE_TASKS=" + std::string(c.name) + ": " + c.fault),
                  0u)
            << c.name;
    }
    using std::filesystem::perms;
    const perms allowed = std::filesystem::status(place()).permissions();
    EXPECT_EQ(allowed & (perms::group_all | perms::others_all), perms::none);
}

// A directory of the user's may hold anything, whatever it is called.
TEST(TaskPlaces, WhatIsNotTheManagersIsLeftAsItIs) {
    namespace fs = std::filesystem;
    const Folder folder;
    const auto in_place = [](const char *name) { return place() / name; };
    const auto is_supported = [] {
        testing::internal::CaptureStderr();
        const int answer = in_child(MultitaskingSupported);
        return std::pair(answer, testing::internal::GetCapturedStderr());
    };
    for (const char *name : {"manager", "lock", "notes"}) write_file(in_place(name), name);
    fs::permissions(place(), fs::perms::owner_all);
    EXPECT_EQ(is_supported(), std::pair(1, std::string()));
    EXPECT_TRUE(comes_true([&] { return !fs::exists(in_place("kelvane-manager.socket")); }));

    const fs::path lock = in_place("kelvane-manager.lock");
    const fs::path socket = in_place("kelvane-manager.socket");
    Place here;
    ASSERT_TRUE(here.open(place().c_str()));
    Descriptor held;
    const struct {
        const char *fault;
        std::function<void()> make;
    } cases[] = {
        {"File exists", [&] { write_file(lock, "12345678"); }},
        {"Too many levels of symbolic links", [&] { fs::create_symlink("notes", lock); }},
        {"Is a directory", [&] { fs::create_directory(lock); }},
        {"Address already in use", [&] { write_file(socket, "mine"); }},
        {"Address already in use", [&] { fs::create_directory(socket); }},
        {"Connection timed out", [&] { held = here.lock(); }},
    };
    for (const auto &c : cases) {
        c.make();
        const std::string line =
            "KELVANE_TASKS=" + place().string() + ": no task manager: " + c.fault + "\n";
        EXPECT_EQ(is_supported(), std::pair(0, line));
        EXPECT_TRUE(fs::exists(fs::symlink_status(lock)));
        for (const fs::path &path : {lock, socket}) fs::remove(path);
    }
    for (const char *name : {"manager", "lock", "notes"})
        EXPECT_EQ(read_file(in_place(name)), name);
}

// A descriptor more than the lock and the door is what the standard ones would be closed with.
TEST(TaskPlaces, AManagerKeepsNothingOfWhoStartsIt) {
    const Folder folder;
    Place here;
    ASSERT_TRUE(here.open(place().c_str()));
    const int output = open("output", O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    const int before = dup(STDOUT_FILENO);
    dup2(output, STDOUT_FILENO);
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int lowest_free = dup(0);
    close(lowest_free);
    rlimit two_more = limit;
    two_more.rlim_cur = static_cast<rlim_t>(lowest_free) + 2;
    setrlimit(RLIMIT_NOFILE, &two_more);
    Descriptor link = connect_to_manager(here);
    setrlimit(RLIMIT_NOFILE, &limit);
    dup2(before, STDOUT_FILENO);
    close(before);
    close(output);
    EXPECT_TRUE(link);
    ASSERT_TRUE(comes_true([] { return manager() > 0; }));
    EXPECT_FALSE(has_open("/proc/" + std::to_string(manager()), folder.dir.path() / "output"));
    link.reset();
    EXPECT_TRUE(comes_true([] { return manager() <= 0; })) << "it serves, and goes";
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
    std::thread slow_change([&] {
        usleep(30'000);
        ++shared.changes;
    });
    EXPECT_EQ(task_list(), tasks) << "what is changed is waited for";
    slow_change.join();
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
