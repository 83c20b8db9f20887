#include "displays/forms/trend_setup_form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <sstream>

#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::RecordingStatus status;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<SetTrendWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
        const char* names[] = {"LEVEL", "TEMP", "FLOW", "PRESS"};
        for (int i = 1; i <= 4; ++i) st.tags[i].TagName = names[i - 1];
        RebuildTagNameIndex(st.tags, st.nameIndex);
        st.trends.TrendTable(1, 1) = 2;
        st.trends.TrendTable(1, 3) = 33;
        st.trends.TrendTable(2, 2) = 4;
    }
    void open() {
        w = std::make_unique<SetTrendWindow>(st, report);
        w->show();
    }
    QComboBox* pen(int n) {
        return test::child<QComboBox>(w.get(), QString("CboTagNo%1").arg(n).toLatin1().data());
    }
    QString number() { return test::child<QLabel>(w.get(), "LblTrendNo")->text(); }
    void click(const char* name) { test::child<QPushButton>(w.get(), name)->click(); }
    int stored(int trend, int pen) const { return st.trends.TrendTable(trend, pen); }
};

QString accessibleName(QWidget* w) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    return a ? a->text(QAccessible::Name) : QString();
}
}  // namespace

TEST(SetTrendWindow, CaptionControlsAndHeadings) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->windowTitle(), "SetUp Trends");
    EXPECT_EQ(r.w->objectName(), "SetTrend");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdPrev")->text(), "&Previous");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComNext")->text(), "&Next");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComExit")->text(), "E&xit");
    for (int n = 1; n <= 4; ++n) {
        const QString heading = QString("Tag Name - Pen %1").arg(n);
        EXPECT_EQ(r.pen(n)->accessibleName(), heading);
        // Where the name is typed: the text box inside the pen box.
        EXPECT_EQ(accessibleName(r.pen(n)->lineEdit()), heading);
        EXPECT_TRUE(r.pen(n)->isEditable());
        // The heading beside the box is its label for readers that follow relations.
        QAccessibleInterface* box = QAccessible::queryAccessibleInterface(r.pen(n));
        bool labelled = false;
        for (const auto& [other, relation] : box->relations(QAccessible::Label))
            if (other->text(QAccessible::Name) == heading) labelled = true;
        EXPECT_TRUE(labelled) << n;
    }
    EXPECT_EQ(accessibleName(test::child<QLabel>(r.w.get(), "LblTrendNo")), "Trend Number");
    // Each box has its heading beside it as the buddy, so Alt-less reading finds the pair.
    int buddies = 0;
    for (QLabel* l : r.w->findChildren<QLabel*>())
        if (l->buddy()) ++buddies;
    EXPECT_EQ(buddies, 5);
}

TEST(SetTrendWindow, OpensOnTrendOneWithItsPensAndEveryTagName) {
    Rig r;
    r.st.trends.CurrentTrend = 6;
    r.open();
    EXPECT_EQ(r.number(), "1");
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(r.pen(1)->currentText(), "TEMP");
    EXPECT_EQ(r.pen(2)->currentText(), "");
    EXPECT_EQ(r.pen(3)->currentText(), "TS");
    EXPECT_EQ(r.pen(1)->count(), 32);
    EXPECT_EQ(r.pen(4)->itemText(3), "PRESS");
    EXPECT_EQ(r.pen(4)->itemText(10), "");
}

TEST(SetTrendWindow, NextStoresTypedNamesAndShowsTheNextTrend) {
    Rig r;
    r.open();
    r.pen(1)->setEditText(" level");
    r.pen(4)->setCurrentIndex(2);  // FLOW picked from the list
    r.click("ComNext");
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.stored(1, 1), 1);
    EXPECT_EQ(r.stored(1, 3), 33);
    EXPECT_EQ(r.stored(1, 4), 3);
    EXPECT_EQ(r.number(), "2");
    EXPECT_EQ(r.pen(2)->currentText(), "PRESS");
    EXPECT_EQ(r.pen(1)->currentText(), "");
    EXPECT_EQ(r.pen(1)->count(), 32);  // the typed name was not added to the list
}

TEST(SetTrendWindow, PreviousFromTrendOneGoesToTen) {
    Rig r;
    r.open();
    r.click("CmdPrev");
    EXPECT_EQ(r.number(), "10");
    EXPECT_EQ(r.st.trends.CurrentTrend, 10);
}

TEST(SetTrendWindow, AMisspeltPenTwoIsReportedAndTheWindowStaysOnItsTrend) {
    Rig r;
    r.st.trends.TrendTable(1, 4) = 3;
    r.open();
    r.pen(1)->setEditText("press");
    r.pen(2)->setEditText("flwo");
    r.pen(4)->setEditText("");
    r.click("ComNext");
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"Tag Name FLWO not Found", "ERROR"}));
    EXPECT_EQ(r.number(), "1");
    EXPECT_EQ(r.pen(2)->currentText(), "flwo");
    EXPECT_EQ(r.stored(1, 1), 4);
    EXPECT_EQ(r.stored(1, 2), 0);
    EXPECT_EQ(r.stored(1, 3), 33);
    EXPECT_EQ(r.stored(1, 4), 3);  // left as it was
}

TEST(SetTrendWindow, ExitClosesOnlyWhenTheTrendWasStored) {
    Rig r;
    r.open();
    r.pen(3)->setEditText("NOPE");
    r.click("ComExit");
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_EQ(r.prompt.messages.size(), 1u);
    r.pen(3)->setEditText("temp");
    r.click("ComExit");
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(r.stored(1, 3), 2);
}

TEST(SetTrendWindow, WorksFromTheKeyboardAlone) {
    Rig r;
    r.open();
    r.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(r.w.get()));
    r.pen(1)->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return r.pen(1)->hasFocus(); }));
    QLineEdit* edit = r.pen(1)->lineEdit();
    edit->selectAll();
    QTest::keyClicks(edit, "flow");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(r.pen(2)->hasFocus());
    QTest::keyClicks(r.pen(2)->lineEdit(), "level");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_N, Qt::AltModifier);
    // A button's mnemonic clicks it after a short press animation.
    EXPECT_TRUE(QTest::qWaitFor([&] { return r.number() == "2"; }, 2000));
    EXPECT_EQ(r.stored(1, 1), 3);
    EXPECT_EQ(r.stored(1, 2), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return r.number() == "1"; }, 2000));
    EXPECT_EQ(r.pen(1)->currentText(), "FLOW");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !r.w->isVisible(); }, 2000));
}

TEST(SetTrendWindow, TabGoesThroughThePensThenTheButtons) {
    Rig r;
    r.open();
    r.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(r.w.get()));
    r.pen(1)->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return r.pen(1)->hasFocus(); }));
    const std::vector<QString> expected = {"CboTagNo2", "CboTagNo3", "CboTagNo4", "CmdPrev",
                                           "ComNext",   "ComExit",   "CboTagNo1"};
    for (const QString& name : expected) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* f = QApplication::focusWidget();
        ASSERT_NE(f, nullptr);
        // An editable box has the focus in its line edit.
        if (f->objectName().isEmpty() && f->parentWidget()) f = f->parentWidget();
        EXPECT_EQ(f->objectName(), name);
    }
}

}  // namespace kova
