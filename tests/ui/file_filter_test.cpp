#include "app/file_filter.h"

#include <gtest/gtest.h>

namespace kova::app {

TEST(FileFilter, TheOpenSetUpFilterBecomesOneQtFilter) {
    EXPECT_EQ(QtFileFilter("All Files (*.SUF)|*.SUF|"), "All Files (*.SUF)");
}

TEST(FileFilter, TheSaveSetUpFilterWithoutTheTrailingBarIsTheSame) {
    EXPECT_EQ(QtFileFilter("All Files (*.SUF)|*.SUF"), "All Files (*.SUF)");
}

TEST(FileFilter, SeveralPairsAndSeveralPatterns) {
    EXPECT_EQ(QtFileFilter("Log Files|*.CSV;*.TXT|All|*.*|"), "Log Files (*.CSV *.TXT);;All (*.*)");
}

TEST(FileFilter, EmptyFilter) {
    EXPECT_EQ(QtFileFilter(""), "");
}

TEST(FileFilter, DefaultSuffixComesFromTheFirstPattern) {
    EXPECT_EQ(DefaultSuffix("All Files (*.SUF)|*.SUF"), "SUF");
    EXPECT_EQ(DefaultSuffix("All|*.*"), "");
    EXPECT_EQ(DefaultSuffix(""), "");
}

}  // namespace kova::app
