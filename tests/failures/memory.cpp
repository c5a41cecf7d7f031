// SPDX-License-Identifier: MIT
// Sessions of every area when memory is short: each allocation fails in turn, alone and with all
// that follow. Afterwards everything works as ever, and nothing was lost.
#include <gtest/gtest.h>

#include "failures/failing_memory.h"
#include "failures/sessions.h"

namespace {

class Memory : public testing::TestWithParam<failures::Area> {};

TEST_P(Memory, EachAllocationMayFail) {
    testing::internal::CaptureStderr();
    const auto session = GetParam().make();
    ASSERT_TRUE(session->run());
    const long descriptors = failures::open_descriptors();
    long count = 0;
    for (const auto times : {FailingMemory::once, FailingMemory::for_ever}) {
        bool has_failed = true;
        for (long k = 0; has_failed; k = failures::next_step(k), ++count) {
            {
                const FailingMemory memory(k, times);
                session->run();
                has_failed = memory.has_failed();
            }
            EXPECT_EQ(session->loss(), "") << "allocation " << k;
            ASSERT_TRUE(session->run()) << "after allocation " << k << " failed, "
                                        << (times == FailingMemory::once ? "once" : "for ever");
        }
    }
    EXPECT_EQ(failures::open_descriptors(), descriptors);
    testing::internal::GetCapturedStderr();
    std::printf("%s: %ld allocations failed\n", GetParam().name, count);
}

std::vector<failures::Area> areas_to_try() {
    auto areas = failures::areas();
    std::erase_if(areas, [](const auto &area) { return !area.bears_short_memory; });
    return areas;
}

INSTANTIATE_TEST_SUITE_P(Of, Memory, testing::ValuesIn(areas_to_try()),
                         [](const auto &area) { return area.param.name; });

} // namespace
