#include "core/splash_pause.h"

#include <gtest/gtest.h>

namespace kova {

TEST(SplashPause, RunsTheBusyWaitFiftyThousandAndOneTimesWithTheMeasuredDelay) {
    long calls = 0;
    std::int32_t seen = -1;
    SplashPause(63, [&](std::int32_t d) {
        ++calls;
        seen = d;
    });
    EXPECT_EQ(calls, 50001);
    EXPECT_EQ(seen, 63);
}

}  // namespace kova
