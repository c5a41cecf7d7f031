// SPDX-License-Identifier: MIT
// Timers on the headless clock: when they fire, how they are known, what a callback may do.
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

#include "hw.h"
#include "internal.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "runtime/wake.h"
#include "support/headless.h"

namespace {

std::vector<std::string> fired;

void fire(void *context) {
    fired.push_back(std::string(context ? static_cast<const char *>(context) : "plain") + "@" +
                    std::to_string(headless::now()));
}

char a[] = "a", b[] = "b", c[] = "c";

class Timers : public headless::Test {
  protected:
    void SetUp() override {
        headless::Test::SetUp();
        fired.clear();
    }
    std::string at(const char *name, int ms) const {
        return std::string(name) + "@" + std::to_string(start_ + ms);
    }
    const int64_t start_ = headless::now();
};

using Fired = std::vector<std::string>;

TEST_F(Timers, FireAtTheirMillisecond) {
    SetHardTimerEx("hard", fire, a, 350);
    SetWeakTimerEx("weak", fire, b, 123);
    SetHardTimerEx("now", fire, c, 0);
    headless::advance(2000);
    EXPECT_EQ(fired, (Fired{at("c", 0), at("b", 123), at("a", 350)}));
}

TEST_F(Timers, AreKnownByFunctionAndContext) {
    SetHardTimerEx("A", fire, a, 100);
    SetWeakTimerEx("B", fire, a, 200);
    SetHardTimerEx("A", fire, b, 300);
    EXPECT_EQ(QueryTimerEx(fire, a), start_ + 200);
    EXPECT_EQ(QueryTimerEx(fire, b), start_ + 300);
    EXPECT_EQ(QueryTimer(fire), 0);
    ClearTimerEx(fire, b);
    ClearTimerEx(fire, c);
    headless::advance(1000);
    EXPECT_EQ(fired, Fired{at("a", 200)});
}

TEST_F(Timers, DueTogetherFireInSlotOrderAndWithinOneMillisecond) {
    SetHardTimerEx("", fire, a, 1);
    SetHardTimerEx("", fire, b, 0);
    SetHardTimerEx("", fire, c, 2);
    kv_process_timers();
    EXPECT_EQ(fired, (Fired{at("a", 0), at("b", 0)}));
}

TEST_F(Timers, ClearingByNameStopsAtTheFirstSlotOfThatName) {
    SetHardTimerEx("twin", fire, a, 0);
    SetHardTimerEx("twin", fire, b, 10);
    kv_process_timers();
    ClearTimerByName("twin"); // finds the dead slot
    ClearTimerByName(nullptr);
    EXPECT_NE(QueryTimerEx(fire, b), 0);
    SetHardTimerEx("other", fire, c, 0); // takes the dead slot
    ClearTimerByName("twin");
    EXPECT_EQ(QueryTimerEx(fire, b), 0);
}

TEST_F(Timers, NamesAreCutAndZeroFilled) {
    SetHardTimerEx(std::string(50, 'x').c_str(), fire, a, 10);
    SetHardTimerEx("y", fire, a, 10);
    for (int i = 0; i < kvstate.ntimers; i++) {
        if (kvstate.timers[i].context != a) continue;
        const char expected[32] = "y";
        EXPECT_EQ(std::memcmp(kvstate.timers[i].name, expected, 32), 0);
    }
    SetHardTimerEx(std::string(50, 'x').c_str(), fire, b, 10);
    ClearTimerByName(std::string(31, 'x').c_str());
    EXPECT_EQ(QueryTimerEx(fire, b), 0);
}

TEST_F(Timers, TheTableGrowsByEight) {
    clear_inactivity_timers();
    std::vector<int> contexts(17);
    for (int i = 0; i < 16; i++) SetHardTimerEx("", fire, &contexts[i], 1000);
    EXPECT_EQ(kvstate.ntimers, 16);
    SetHardTimerEx("", fire, &contexts[16], 1000);
    EXPECT_EQ(kvstate.ntimers, 24);
    ClearTimerEx(fire, &contexts[3]);
    SetHardTimerEx("", fire, a, 1000);
    EXPECT_EQ(kvstate.timers[3].context, a);
    for (int &context : contexts) ClearTimerEx(fire, &context);
}

TEST_F(Timers, WeakTimersDoNotShortenSleep) {
    clear_inactivity_timers();
    SetWeakTimerEx("", fire, a, 10);
    EXPECT_EQ(kv_get_first_timer(), start_ + 999999999);
    SetHardTimerEx("", fire, b, 2147483647);
    EXPECT_EQ(kv_get_first_timer(), start_ + 2147483647LL);
    SetHardTimerEx("", fire, c, 50);
    EXPECT_EQ(kv_get_first_timer(), start_ + 50);
}

int rounds;
std::vector<int> many(40);

void arm_again(void *) {
    if (++rounds < 5) SetHardTimer("again", arm_again, 100);
}

void add_many(void *) {
    for (int &context : many) SetHardTimerEx("", fire, &context, 0);
    ClearTimerEx(fire, &many[1]);
}

TEST_F(Timers, CallbacksMaySetClearAndGrow) {
    SetHardTimer("again", arm_again, 100);
    headless::advance(350);
    EXPECT_EQ(rounds, 3);
    headless::advance(1000);
    EXPECT_EQ(rounds, 5);

    many.assign(many.size(), 0);
    std::memcpy(many.data(), "m", 2);
    SetHardTimer("many", add_many, 10);
    headless::advance(10);
    EXPECT_EQ(fired.size(), many.size() - 1) << "slots added by a callback run in the same pass";
}

TEST_F(Timers, ACallbackMayCloseTheScreen) {
    SetHardTimer(
        "close", [](void *) { ClearOnExit(); }, 10);
    SetHardTimerEx("never", fire, a, 10);
    headless::advance(20);
    EXPECT_EQ(kvstate.isopen, 0);
    EXPECT_TRUE(fired.empty());
}

TEST_F(Timers, AClockSetBackMovesTheDueTime) {
    itimer timer{};
    timer.extime = 1500;
    timer.lastchecktime = 1000;
    kv_validate_timer_state(&timer, 400);
    EXPECT_EQ(timer.extime, 900);
    EXPECT_EQ(timer.lastchecktime, 400);
    kv_validate_timer_state(&timer, 800);
    EXPECT_EQ(timer.extime, 900);
    kv_validate_timer_state(nullptr, 0);
}

TEST_F(Timers, TimesStopAtTheEndsOfTheirRange) {
    constexpr int64_t least = INT64_MIN, most = INT64_MAX;
    const struct {
        int64_t due, checked, now, moved;
    } cases[] = {
        {most, 1, 0, most - 1},      {most, most, least, least},         {least, 1, 0, least},
        {least, most, least, least}, {most, least + 1, least, most - 1}, {0, most, least, least}};
    for (const auto &each : cases) {
        itimer timer{};
        timer.extime = each.due;
        timer.lastchecktime = each.checked;
        kv_validate_timer_state(&timer, each.now);
        EXPECT_EQ(timer.extime, each.moved) << each.due << " " << each.checked << " " << each.now;
    }
    for (int64_t due : {least, most}) {
        SetHardTimerEx("extreme", fire, a, 10);
        for (itimer &timer : std::span(kvstate.timers, static_cast<size_t>(kvstate.ntimers)))
            if (timer.tp == fire) timer.extime = due;
        kv_process_event_loop();
    }
    EXPECT_EQ(fired.size(), 1U) << "the one that was due for ever";
}

TEST_F(Timers, AClockAtItsEndGoesOn) {
    hw::set_horizon(hw::no_horizon - 1);
    for (int i = 0; i < 3; i++) hw_pause(LLONG_MAX);
    const int64_t end = headless::now();
    EXPECT_GT(end, INT64_MAX / 1000 / 5);
    for (int ms : {INT_MIN, INT_MAX, 0}) {
        SetHardTimer("late", fire, ms);
        EXPECT_EQ(QueryTimer(fire), end + ms);
        for (int i = 0; i < 3; i++) EXPECT_EQ(kv_process_event_loop(), KELVANE_CONTINUE);
    }
    FullUpdate();
    EXPECT_EQ(headless::now(), end);
    EXPECT_EQ(fired.size(), 2U);
}

TEST_F(Timers, NullAndAbsurdArgumentsDoNoHarm) {
    SetHardTimer("null", nullptr, 10);
    SetWeakTimer(nullptr, fire, -2147483647 - 1);
    ClearTimer(nullptr);
    EXPECT_EQ(QueryTimer(nullptr), 0);
    headless::advance(1);
    EXPECT_EQ(fired.size(), 1U);
}

} // namespace
