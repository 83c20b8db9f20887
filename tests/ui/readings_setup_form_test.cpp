// The "Set Up Screens" window: its controls, the navigation and checks through the
// widgets, the tag picker from an analog row, and keyboard use.
#include "displays/forms/readings_setup_form.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <sstream>

#include "displays/screen_rig.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
// Alt + key as the keyboard gives it: the button whose caption marks that letter is
// pressed. (Qt's offscreen platform delivers no shortcut events, so the mnemonic is looked
// up as Qt registers it; the real program is driven with Alt keys under Xvfb.)
void pressMnemonic(QWidget* window, Qt::Key key) {
    const QKeySequence wanted(QKeyCombination(Qt::AltModifier, key));
    for (QPushButton* b : window->findChildren<QPushButton*>())
        if (b->isVisible() && b->isEnabled() && QKeySequence::mnemonic(b->text()) == wanted) {
            b->animateClick();
            QTest::qWait(200);
            return;
        }
    ADD_FAILURE() << "no button answers Alt+" << QKeySequence(key).toString().toStdString();
}

struct Rig {
    test::ScreenRig r;
    std::ostringstream errors;
    ErrorReport report{r.st.platform, errors};
    std::unique_ptr<ReadingsSetupWindow> w;
    Rig() {
        w = std::make_unique<ReadingsSetupWindow>(r.st, report);
        w->show();
    }
    QComboBox* an(int i) { return combo(QString("CboAnTag%1").arg(i)); }
    QComboBox* dig(int i) { return combo(QString("CboDigTag%1").arg(i)); }
    QComboBox* combo(const QString& name) {
        return test::child<QComboBox>(w.get(), name.toLatin1().constData());
    }
    QLabel* label(const char* name) { return test::child<QLabel>(w.get(), name); }
    QLineEdit* box(const char* name) { return test::child<QLineEdit>(w.get(), name); }
    void click(const char* name) { test::child<QPushButton>(w.get(), name)->click(); }
};

// The next control the Tab key reaches from w (its own inner parts skipped).
QWidget* nextTabStop(QWidget* w) {
    QWidget* n = w->nextInFocusChain();
    while (n && n != w && (w->isAncestorOf(n) || !(n->focusPolicy() & Qt::TabFocus)))
        n = n->nextInFocusChain();
    return n;
}

QStringList labelTexts(QWidget* w) {
    QStringList out;
    for (QLabel* l : w->findChildren<QLabel*>()) out << l->text();
    return out;
}
}  // namespace

TEST(ReadingsSetupWindow, CaptionHeadingsAndButtonsAreThoseOfTheWindow) {
    Rig g;
    EXPECT_EQ(g.w->windowTitle(), "Set Up Screens");
    EXPECT_EQ(g.w->objectName(), "SetRead");
    const QStringList texts = labelTexts(g.w.get());
    for (const char* h :
         {"Screen Title", "Screen No.", "Jump To", "ANALOGS", "DIGITALS", "TagName", "Description"})
        EXPECT_TRUE(texts.contains(h)) << h;
    EXPECT_EQ(texts.count("TagName"), 2);
    EXPECT_EQ(texts.count("Description"), 2);
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "CmdPrev")->text(), "&Previous");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "CmdNext")->text(), "&Next");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "ComExit")->text(), "E&xit");
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(g.an(i)->isEditable());
        EXPECT_TRUE(g.dig(i)->isEditable());
        EXPECT_NE(g.w->findChild<QLabel*>(QString("LblAn%1").arg(i)), nullptr);
        EXPECT_NE(g.w->findChild<QLabel*>(QString("LblDig%1").arg(i)), nullptr);
    }
}

TEST(ReadingsSetupWindow, OpensOnScreen1WithItsLinesAndLists) {
    Rig g;
    EXPECT_EQ(g.box("TxtScreen")->text(), "Plant");
    EXPECT_EQ(g.box("TxtJump")->text(), "3");
    EXPECT_EQ(g.label("LblScrNo")->text(), "1");
    EXPECT_EQ(g.an(0)->currentText(), "LEVEL");
    EXPECT_EQ(g.label("LblAn0")->text(), "Tank Level");
    EXPECT_EQ(g.an(3)->currentText(), "TS");
    EXPECT_EQ(g.dig(1)->currentText(), "PUMP");
    EXPECT_EQ(g.label("LblDig1")->text(), "Feed Pump");
    EXPECT_EQ(g.an(9)->currentText(), "");
    EXPECT_EQ(g.an(5)->itemText(0), "LEVEL");
    EXPECT_EQ(g.an(5)->findText("PUMP"), -1);
    ASSERT_EQ(g.dig(7)->count(), 4);
    EXPECT_EQ(g.dig(7)->itemText(3), "LAMP");
}

TEST(ReadingsSetupWindow, TypedTsIsStoredAsTag33AndNextShowsScreen2) {
    Rig g;
    g.an(6)->setEditText("ts");
    g.click("CmdNext");
    EXPECT_EQ(g.r.st.screens.Lines(1, 7).TagName, "TS");
    EXPECT_EQ(g.r.st.screens.Lines(1, 7).TagNumber, 33);
    EXPECT_EQ(g.label("LblScrNo")->text(), "2");
    EXPECT_EQ(g.an(6)->currentText(), "");
    g.click("CmdPrev");
    EXPECT_EQ(g.an(6)->currentText(), "TS");
    EXPECT_EQ(g.label("LblAn6")->text(), "Time In Secs");
}

TEST(ReadingsSetupWindow, ARefusedNameShowsItsMessageAndStaysOnTheScreen) {
    Rig g;
    g.an(2)->setEditText("door");
    g.click("CmdNext");
    ASSERT_EQ(g.r.prompt.messages.size(), 1u);
    EXPECT_EQ(g.r.prompt.messages[0], (test::Shown{"Error DOOR is a digital variable", "KOVA"}));
    EXPECT_EQ(g.label("LblScrNo")->text(), "1");
    EXPECT_EQ(g.an(2)->currentText(), "door");
}

TEST(ReadingsSetupWindow, PreviousOnScreen1ShowsScreen10) {
    Rig g;
    g.click("CmdPrev");
    EXPECT_EQ(g.label("LblScrNo")->text(), "10");
    g.click("CmdNext");
    EXPECT_EQ(g.label("LblScrNo")->text(), "1");
}

TEST(ReadingsSetupWindow, ABadJumpAsksOnExitAndClosesOnlyOnYes) {
    Rig g;
    g.box("TxtJump")->setText("abc");
    g.r.prompt.yesNoAnswers = {false};
    g.click("ComExit");
    EXPECT_TRUE(g.w->isVisible());
    ASSERT_EQ(g.r.prompt.messages.size(), 1u);
    EXPECT_EQ(g.r.prompt.messages[0].text, "ERROR - Jump to must be a number between 1 and 10");
    ASSERT_EQ(g.r.prompt.questions.size(), 1u);
    EXPECT_EQ(g.r.prompt.questions[0], (test::Shown{"Do You Wish To Exit", "ERROR"}));
    g.r.prompt.yesNoAnswers = {true};
    g.click("ComExit");
    EXPECT_FALSE(g.w->isVisible());
}

TEST(ReadingsSetupWindow, ExitStoresTheScreen) {
    Rig g;
    g.box("TxtScreen")->setText("Boiler House");
    g.box("TxtJump")->setText("");
    g.dig(4)->setEditText("lamp");
    g.click("ComExit");
    EXPECT_FALSE(g.w->isVisible());
    EXPECT_TRUE(g.r.prompt.questions.empty());
    EXPECT_EQ(g.r.st.screens.Headers[1].Title, "Boiler House");
    EXPECT_EQ(g.r.st.screens.Headers[1].JumpTo, 0);
    EXPECT_EQ(g.r.st.screens.Lines(1, 15).TagNumber, test::kLamp);
}

TEST(ReadingsSetupWindow, TheCloseBoxStoresTheScreenAsExitDoes) {
    Rig g;
    g.box("TxtScreen")->setText("Closed By The Box");
    g.w->close();
    EXPECT_EQ(g.r.st.screens.Headers[1].Title, "Closed By The Box");
}

TEST(ReadingsSetupWindow, TheRowsPickerButtonOpensTheAnalogTagPickerAndFillsThatRow) {
    Rig g;
    test::child<QToolButton>(g.w.get(), "CmdPickAnTag4")->click();
    AnalogTagWindow* picker = g.w->picker();
    ASSERT_NE(picker, nullptr);
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picker->objectName(), "FrmAnalogTag");
    g.an(0)->setEditText("setpt");  // an edit elsewhere survives the pick
    auto* list = test::child<QComboBox>(picker, "CboTagNo");
    const int setpt = list->findText("SETPT");
    ASSERT_GE(setpt, 0);
    picker->choose(setpt);
    EXPECT_EQ(g.an(4)->currentText(), "SETPT");
    EXPECT_EQ(g.an(0)->currentText(), "setpt");
    EXPECT_EQ(g.an(3)->currentText(), "TS");
}

TEST(ReadingsSetupWindow, F2InAnAnalogDropDownOpensThePickerForThatRow) {
    Rig g;
    QTest::keyClick(g.an(7), Qt::Key_F2);
    AnalogTagWindow* picker = g.w->picker();
    ASSERT_NE(picker, nullptr);
    picker->choose(test::child<QComboBox>(picker, "CboTagNo")->findText("VALVE"));
    EXPECT_EQ(g.an(7)->currentText(), "VALVE");
}

TEST(ReadingsSetupWindow, EveryBoxIsNamedForScreenReadersAndTabFollowsTheLayout) {
    Rig g;
    EXPECT_EQ(g.box("TxtScreen")->accessibleName(), "Screen Title");
    EXPECT_EQ(g.box("TxtJump")->accessibleName(), "Jump To");
    EXPECT_EQ(g.label("LblScrNo")->accessibleName(), "Screen No.");
    EXPECT_EQ(g.an(0)->accessibleName(), "Analog TagName 1");
    EXPECT_EQ(g.dig(9)->accessibleName(), "Digital TagName 10");
    EXPECT_EQ(g.label("LblAn2")->accessibleName(), "Analog Description 3");
    EXPECT_EQ(test::child<QToolButton>(g.w.get(), "CmdPickAnTag0")->accessibleName(),
              "Choose Analog Tag for analog row 1");
    EXPECT_EQ(nextTabStop(g.box("TxtScreen")), g.box("TxtJump"));
    EXPECT_EQ(nextTabStop(g.box("TxtJump")), g.an(0));
    EXPECT_EQ(nextTabStop(g.an(0)), test::child<QToolButton>(g.w.get(), "CmdPickAnTag0"));
    EXPECT_EQ(nextTabStop(test::child<QToolButton>(g.w.get(), "CmdPickAnTag0")), g.an(1));
    EXPECT_EQ(nextTabStop(test::child<QToolButton>(g.w.get(), "CmdPickAnTag9")), g.dig(0));
    EXPECT_EQ(nextTabStop(g.dig(9)), test::child<QPushButton>(g.w.get(), "CmdPrev"));
}

TEST(ReadingsSetupWindow, TheKeyboardAloneMovesThroughTheScreens) {
    Rig g;
    g.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(g.w.get()));
    g.box("TxtScreen")->setFocus();
    pressMnemonic(g.w.get(), Qt::Key_N);
    EXPECT_EQ(g.label("LblScrNo")->text(), "2");
    pressMnemonic(g.w.get(), Qt::Key_P);
    pressMnemonic(g.w.get(), Qt::Key_P);
    EXPECT_EQ(g.label("LblScrNo")->text(), "10");
    pressMnemonic(g.w.get(), Qt::Key_X);
    EXPECT_FALSE(g.w->isVisible());
}

}  // namespace kova

namespace kova {

TEST(ReadingsSetupWindow, ATypedPrefixIsNotCompletedToAnotherTag) {
    Rig g;
    g.an(8)->lineEdit()->clear();
    QTest::keyClicks(g.an(8)->lineEdit(), "VAL");
    EXPECT_EQ(g.an(8)->currentText(), "VAL");
    g.click("CmdNext");
    ASSERT_EQ(g.r.prompt.messages.size(), 1u);
    EXPECT_EQ(g.r.prompt.messages[0].text, "Error VAL is not in Variable Database");
}

}  // namespace kova
