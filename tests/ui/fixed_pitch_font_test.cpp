#include "core/forms/fixed_pitch_font.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QFontMetricsF>

namespace kova {

// Also run by CTest with fontconfig told the text is Chinese (FC_LANG=zh-cn): there the
// machine's "monospace" is a proportional fallback face once such a face is installed.
TEST(FixedPitchFont, ResolvesToAFaceWhoseCharactersAllHaveOneWidth) {
    const QFont f = forms::FixedPitchFont();
    EXPECT_TRUE(QFontInfo(f).fixedPitch()) << QFontInfo(f).family().toStdString();
    const QFontMetricsF m(f);
    EXPECT_DOUBLE_EQ(m.horizontalAdvance('i'), m.horizontalAdvance('M'));
    EXPECT_DOUBLE_EQ(m.horizontalAdvance("ACKN "), m.horizontalAdvance("ALARM"));
}

TEST(FixedPitchFont, KeepsTheSizeAskedFor) {
    const QFont f = forms::FixedPitchFont(10);
    EXPECT_EQ(f.pointSize(), 10);
    EXPECT_TRUE(QFontInfo(f).fixedPitch());
}

}  // namespace kova
