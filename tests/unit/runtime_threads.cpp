// SPDX-License-Identifier: MIT
// SendEvent from many threads at once, and file calls beside the loop. Run under ThreadSanitizer
// they prove that there is no race; anywhere they prove that entries stay whole and in order.
#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "hw_linux/clock.h"
#include "hw_linux/services/state.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/files.h"
#include "support/tempdir.h"

namespace {

constexpr int senders = 8;
constexpr int events_each = 1'000'000;
constexpr int first_type = 300;

std::vector<uint32_t> last_seen;
long delivered, out_of_order;

// Each event carries its number in both parameters; a torn entry would break the order.
int check_order(int type, int par1, int par2) {
    const int sender = type - first_type;
    if (sender < 0 || sender >= senders) return 1;
    const uint32_t number = static_cast<uint32_t>(par2) << 16 | static_cast<uint32_t>(par1);
    if (number <= last_seen[sender]) out_of_order++;
    last_seen[sender] = number;
    delivered++;
    return 1;
}

TEST(RuntimeThreads, EventsOfEachThreadStayInOrder) {
    const TempDir folder;
    setenv("KELVANE_DEVICE", "headless", 1);
    ASSERT_EQ(OpenScreenExt(), 1);
    PrepareForLoop(check_order);
    last_seen.assign(senders, 0);
    std::atomic<int> running = senders;
    std::vector<std::thread> threads;
    for (int s = 0; s < senders; s++)
        threads.emplace_back([s, &running] {
            for (int i = 1; i <= events_each; i++)
                SendEvent(check_order, first_type + s, i & 0xFFFF, i >> 16);
            running--;
        });
    while (running > 0) EXPECT_EQ(ProcessEventLoopQuick(), KELVANE_CONTINUE);
    for (std::thread &thread : threads) thread.join();
    ProcessEventLoopQuick();

    EXPECT_EQ(out_of_order, 0);
    EXPECT_GT(delivered, 0);
    EXPECT_LE(delivered, long{senders} * events_each);
    delivered = 0;
    for (int i = 1; i <= 10; i++) SendEvent(check_order, first_type, i & 0xFFFF, 1000);
    ProcessEventLoopQuick();
    EXPECT_EQ(delivered, 10) << "the queue works on after every overflow";

    std::atomic<bool> closed = false;
    std::thread late([&closed] {
        while (!closed) SendEvent(check_order, first_type, 0, 0);
    });
    ClearOnExit();
    closed = true;
    late.join();
}

TEST(RuntimeThreads, ChildrenMayQueueEventsWhateverOtherThreadsDo) {
    const TempDir folder;
    setenv("KELVANE_DEVICE", "headless", 1);
    ASSERT_EQ(OpenScreenExt(), 1);
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (int s = 0; s < 2; s++)
        threads.emplace_back([&done] {
            while (!done) SendEvent(check_order, first_type, 0, 0);
        });
    int stuck = 0;
    for (int i = 0; i < 300 && stuck == 0; i++) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(5); // ends a child that waits for ever
            SendEvent(check_order, first_type, 0, 0);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        stuck += status != 0;
    }
    done = true;
    for (std::thread &thread : threads) thread.join();
    EXPECT_EQ(stuck, 0);
    ClearOnExit();
}

// A card that comes and goes while the device sleeps and wakes.
TEST(RuntimeThreads, FilesMayBeUsedWhileTheLoopRuns) {
    const TempDir folder;
    setenv("KELVANE_DEVICE", "headless", 1);
    ASSERT_EQ(OpenScreenExt(), 1);
    PrepareForLoop(check_order);
    hw::set_horizon(hw::no_horizon / 2); // so that time passes with each step
    kv_buildpath("./system/mnt/ext1/");
    constexpr int writers = 4, rounds = 20;
    std::atomic<int> running = writers, whole = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < writers; t++)
        threads.emplace_back([t, &running, &whole] {
            const std::string path = "./system/mnt/ext1/" + std::to_string(t), copy = path + "c";
            for (int i = 0; i < rounds; i++) {
                FILE *f = kv_fopen(path.c_str(), "w");
                kv_fwrite(path.data(), 1, path.size(), f);
                kv_fclose(f);
                whole += copy_file(path.c_str(), copy.c_str()) == 1 && read_file(copy) == path;
            }
            running--;
        });
    int wakes = 0;
    for (int step = 0; running > 0 || wakes == 0; step++) {
        hw::set_storage_ready(step % 8);
        ProcessEventLoop();
        wakes += std::exchange(kvstate.sleeptime, 0) > 0;
    }
    for (std::thread &thread : threads) thread.join();
    EXPECT_EQ(whole, writers * rounds);
    ClearOnExit();
}

} // namespace
