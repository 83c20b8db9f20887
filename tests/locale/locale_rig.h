#pragma once
#include <string>

namespace kova::test {
// Why the comma-decimal locale could not be made ("" when it was).
extern std::string gLocaleProblem;
}  // namespace kova::test

// Skips the test when the locale could not be made.
#define KOVA_NEED_COMMA_LOCALE()                                                                 \
    do {                                                                                         \
        if (!::kova::test::gLocaleProblem.empty()) GTEST_SKIP() << ::kova::test::gLocaleProblem; \
    } while (0)
