#include "tags/forms/analog_tag_form.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QSignalSpy>

#include "ui/ui_support.h"

namespace kova {

TEST(AnalogTagWindow, ListsTheAnalogTagsInTagOrderAndPicksNothingYet) {
    Station st;
    st.tags[1].TagName = "TANK";
    st.tags[2].TagName = "PUMP";
    st.tags[2].Kind = kDigital;
    st.tags[3].TagName = "FLOW";
    std::string picked = "unchanged";
    AnalogTagWindow w(st, picked);
    EXPECT_EQ(w.objectName(), "FrmAnalogTag");
    auto* cbo = test::child<QComboBox>(&w, "CboTagNo");
    ASSERT_EQ(cbo->count(), 31);
    EXPECT_EQ(cbo->itemText(0), "TANK");
    EXPECT_EQ(cbo->itemText(1), "FLOW");
    EXPECT_EQ(cbo->itemText(2), "");
    EXPECT_EQ(cbo->currentIndex(), -1);
    EXPECT_EQ(picked, "unchanged");
}

TEST(AnalogTagWindow, ChoosingAnEntryStoresItsNameAndCloses) {
    Station st;
    st.tags[1].TagName = "TANK";
    st.tags[3].TagName = "FLOW";
    std::string picked;
    AnalogTagWindow w(st, picked);
    w.show();
    QSignalSpy spy(&w, &AnalogTagWindow::tagPicked);
    auto* cbo = test::child<QComboBox>(&w, "CboTagNo");
    // Tag 2 is unused (an empty line); the user picks the third entry.
    ASSERT_EQ(cbo->itemText(2), "FLOW");
    cbo->setCurrentIndex(2);
    emit cbo->activated(2);
    EXPECT_EQ(picked, "FLOW");
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), "FLOW");
    EXPECT_FALSE(w.isVisible());
}

TEST(AnalogTagWindow, ChoosingAnEmptyLineStoresAnEmptyName) {
    Station st;
    st.tags[1].TagName = "TANK";
    std::string picked = "TANK";
    AnalogTagWindow w(st, picked);
    w.choose(5);
    EXPECT_EQ(picked, "");
}

}  // namespace kova
