#include "app/program_options.h"

#include <gtest/gtest.h>

namespace kova::app {

TEST(ProgramOptions, TickTraceTakesTheNextArgumentOrTheTextAfterTheEqualsSign) {
    EXPECT_EQ(ParseProgramOptions({"--tick-trace", "ticks.txt"}).tickTrace, "ticks.txt");
    EXPECT_EQ(ParseProgramOptions({"--tick-trace=/tmp/a b.txt"}).tickTrace, "/tmp/a b.txt");
    const ProgramOptions none = ParseProgramOptions({});
    EXPECT_FALSE(none.tickTrace);
    EXPECT_EQ(none.error, "");
}

TEST(ProgramOptions, ATickTraceWithoutAFileNameIsAMistake) {
    for (const auto& args :
         {std::vector<std::string>{"--tick-trace"}, std::vector<std::string>{"--tick-trace="}}) {
        const ProgramOptions o = ParseProgramOptions(args);
        EXPECT_EQ(o.error, "--tick-trace needs the name of the file to write the trace to");
    }
}

TEST(ProgramOptions, ArgumentsItDoesNotKnowAreLeftAlone) {
    const ProgramOptions o = ParseProgramOptions({"-style", "fusion", "--tick-trace", "t.txt"});
    EXPECT_EQ(o.tickTrace, "t.txt");
    EXPECT_EQ(o.error, "");
}

}  // namespace kova::app
