#include "platform/tick_trace.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/test_support.h"

namespace kova {

namespace {
std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) out.push_back(l);
    return out;
}
}  // namespace

TEST(TickTrace, EachTickIsALineWithItsStartAndDuration) {
    test::TempFolder folder;
    const auto path = folder / "ticks.txt";
    SteppingSteadyClock clock(std::chrono::microseconds(250));
    {
        TickTrace trace(clock);
        ASSERT_EQ(trace.open(path.string()), "");  // the trace begins at 0
        trace.tickStarted();                       // 0.000250 s
        trace.tickEnded();                         // 0.000500 s: 0.25 ms
        trace.tickStarted();                       // 0.000750 s
        trace.tickEnded();
        // Each line is in the file as soon as its tick ended.
        const auto now = lines(test::ReadFileBytes(path));
        ASSERT_EQ(now.size(), 3u);
        EXPECT_EQ(now[0] + "\n", TickTrace::heading());
        EXPECT_EQ(now[1], "0.000250 0.250");
        EXPECT_EQ(now[2], "0.000750 0.250");
    }
    EXPECT_EQ(lines(test::ReadFileBytes(path)).size(), 3u);
}

TEST(TickTrace, AnEndWithoutAStartWritesNothingAndAClosedTraceIgnoresTicks) {
    test::TempFolder folder;
    const auto path = folder / "ticks.txt";
    SteppingSteadyClock clock(std::chrono::microseconds(1000));
    TickTrace trace(clock);
    trace.tickStarted();  // not open: nothing happens
    trace.tickEnded();
    ASSERT_EQ(trace.open(path.string()), "");
    trace.tickEnded();
    trace.close();
    trace.tickStarted();
    trace.tickEnded();
    EXPECT_EQ(lines(test::ReadFileBytes(path)).size(), 1u);  // the heading alone
}

TEST(TickTrace, AFileThatCannotBeWrittenSaysWhy) {
    test::TempFolder folder;
    TickTrace trace;
    const std::string problem = trace.open((folder / "no such folder" / "ticks.txt").string());
    EXPECT_NE(problem, "");
    EXPECT_FALSE(trace.isOpen());
    EXPECT_NE(trace.open(folder.path().string()), "");  // a folder is no file
}

}  // namespace kova
