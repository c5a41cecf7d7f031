// SPDX-License-Identifier: MIT
// Sessions of every area on a system that fails: each call of it fails in turn, alone and with all
// that follow, in each way that such a call may. Afterwards everything works as ever, and nothing
// was lost.
#include <gtest/gtest.h>

#include "failures/failing_calls.h"
#include "failures/sessions.h"
#include "support/child.h"

namespace {

class Calls : public testing::TestWithParam<failures::Area> {};

long sweep(failures::Session &session, const FailingCalls::Way &way, FailingCalls::Times times) {
    long count = 0;
    bool has_failed = true;
    for (long k = 0; has_failed; k = failures::next_step(k), ++count) {
        SCOPED_TRACE(std::string(way.name) + " of call " + std::to_string(k) +
                     (times == FailingCalls::once ? ", once" : ", for ever"));
        {
            const FailingCalls calls(way, k, times);
            session.run();
            has_failed = calls.has_failed();
        }
        EXPECT_EQ(session.loss(), "") << FailingCalls::last_failed();
        EXPECT_TRUE(session.run()) << FailingCalls::last_failed();
        if (testing::Test::HasFailure()) break;
    }
    return count;
}

int sweep_all(const failures::Area &area) {
    testing::internal::CaptureStderr();
    long count = 0;
    FailingCalls::prepare();
    const auto session = area.make();
    EXPECT_TRUE(session->run());
    const long descriptors = failures::open_descriptors();
    for (const FailingCalls::Way &way : FailingCalls::ways())
        for (const auto times : {FailingCalls::once, FailingCalls::for_ever})
            if (!testing::Test::HasFailure() && (times == FailingCalls::once || way.may_last))
                count += sweep(*session, way, times);
    EXPECT_EQ(failures::open_descriptors(), descriptors);
    testing::internal::GetCapturedStderr();
    std::printf("%s: %ld calls failed\n", area.name, count);
    std::fflush(stdout);
    return testing::Test::HasFailure();
}

// What watches the calls of a process never leaves it, and the search for leaks at its end does not
// bear it.
TEST_P(Calls, EachMayFail) {
    EXPECT_EQ(in_child([] { return sweep_all(GetParam()); }), 0);
}

INSTANTIATE_TEST_SUITE_P(Of, Calls, testing::ValuesIn(failures::areas()),
                         [](const auto &area) { return area.param.name; });

} // namespace
