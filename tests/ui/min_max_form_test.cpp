#include "displays/forms/min_max_form.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <sstream>

#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {

struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<MinMaxWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        for (int i = 1; i <= 15; ++i) st.tags[i].Label = "Tag " + std::to_string(i);
    }
    void open() {
        w = std::make_unique<MinMaxWindow>(st, report);
        test::ShowActive(w.get());
    }
    QString cell(const char* column, int row) {
        const std::string name = std::string(column) + "_" + std::to_string(row);
        return test::child<QLabel>(w.get(), name.c_str())->text();
    }
    // One scan's worth: new values, then the extremes as the scan keeps them.
    void scan(float v) {
        for (int i = 1; i <= 15; ++i) st.tags[i].Value = v + static_cast<float>(i);
        UpdateMinMax(st);
    }
};

}  // namespace

TEST(MinMaxWindow, CaptionHeadingsButtonsAndFourteenRows) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->objectName(), "MinMaxFrm");
    EXPECT_EQ(r.w->windowTitle(), "Maximum And Minimum Readings");
    const char* headings[] = {"Label", "Reading", "Maximum", "Minimum"};
    for (int c = 0; c < 4; ++c) EXPECT_EQ(r.cell("LblHeading", c), headings[c]);
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdReset")->text(), "&Reset Min/Max");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdExit")->text(), "E&xit");
    for (int i = 0; i < 14; ++i) EXPECT_EQ(r.cell("Label1", i), QString("Tag %1").arg(i + 1));
    // Tag 15 is never shown.
    EXPECT_EQ(r.w->findChild<QLabel*>("Label1_14"), nullptr);
    for (auto* l : r.w->findChildren<QLabel*>()) EXPECT_NE(l->text(), "Tag 15");
    EXPECT_EQ(r.w->timer1()->interval(), 1000);
    EXPECT_TRUE(r.w->timer1()->isActive());
}

TEST(MinMaxWindow, BeforeAnyResetAPositiveTagShowsAMinimumOfZero) {
    Rig r;
    r.scan(5);
    r.scan(2);
    r.open();
    EXPECT_EQ(r.cell("LblRead", 0), " 3");
    EXPECT_EQ(r.cell("LblMax", 0), " 6");
    EXPECT_EQ(r.cell("LblMin", 0), " 0");
    EXPECT_EQ(r.w->findChild<QLabel*>("LblRead_0")->accessibleName(), "Tag 1 Reading");
}

TEST(MinMaxWindow, TheRowsFollowTheScanAtTheTimersTick) {
    Rig r;
    r.open();
    r.scan(10);
    EXPECT_EQ(r.cell("LblRead", 1), " 0");  // not before the window's own tick
    r.w->refresh();                         // Timer1's tick
    EXPECT_EQ(r.cell("LblRead", 1), " 12");
    EXPECT_EQ(r.cell("LblMax", 1), " 12");
}

TEST(MinMaxWindow, AfterResetTheThreeColumnsAreEqualUntilTheNextScan) {
    Rig r;
    r.scan(10);
    r.scan(-3.5f);
    r.open();
    EXPECT_EQ(r.cell("LblMax", 0), " 11");
    EXPECT_EQ(r.cell("LblMin", 0), "-2.5");
    test::child<QPushButton>(r.w.get(), "CmdReset")->click();
    for (int i = 0; i < 14; ++i) {
        EXPECT_EQ(r.cell("LblRead", i), r.cell("LblMax", i)) << i;
        EXPECT_EQ(r.cell("LblRead", i), r.cell("LblMin", i)) << i;
    }
    EXPECT_EQ(r.cell("LblRead", 0), "-2.5");
    r.scan(0);
    r.w->refresh();
    EXPECT_EQ(r.cell("LblRead", 0), " 1");
    EXPECT_EQ(r.cell("LblMax", 0), " 1");
    EXPECT_EQ(r.cell("LblMin", 0), "-2.5");
}

TEST(MinMaxWindow, ExitClosesAndTrackingGoesOn) {
    Rig r;
    r.open();
    test::AltKey(r.w.get(), Qt::Key_X);
    EXPECT_FALSE(r.w->isVisible());
    r.scan(20);
    EXPECT_EQ(r.st.minMax.TagMaximum[1], 21.0f);
}

TEST(MinMaxWindow, ResetFromTheKeyboard) {
    Rig r;
    r.scan(7);
    r.open();
    test::AltKey(r.w.get(), Qt::Key_R);
    EXPECT_EQ(r.st.minMax.TagMinimum[1], 8.0f);
    EXPECT_EQ(r.cell("LblMin", 0), " 8");
}

}  // namespace kova
