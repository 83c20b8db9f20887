#include "tags/forms/tag_editor_form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <sstream>

#include "app/main_window.h"
#include "app/qt_printer.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"
#include "ui/ui_support.h"

namespace kova {

namespace {

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    app::QtPrinter printer;
    std::unique_ptr<TagEditorWindow> w;

    explicit Rig(int daqType = kDaqTest, bool open = true) {
        st.platform.prompter = &prompt;
        BuildIOList(st.profile, daqType);
        if (open) this->open();
    }
    void open() {
        w = std::make_unique<TagEditorWindow>(st, report, printer);
        w->show();
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    QComboBox* ioName() { return test::child<QComboBox>(w.get(), "CboIOName"); }
    QCheckBox* log() { return test::child<QCheckBox>(w.get(), "ChkLog"); }
    QPushButton* button(const char* n) { return test::child<QPushButton>(w.get(), n); }
    QString tagNumber() { return test::child<QLabel>(w.get(), "LblTag")->text(); }

    // Types into a box as a user would: the old text selected and replaced.
    void type(const char* name, const QString& text) {
        QLineEdit* e = box(name);
        e->setFocus();
        e->selectAll();
        QTest::keyClick(e, Qt::Key_Delete);
        QTest::keyClicks(e, text);
    }
    // Picks an entry of the drop-down with the keyboard: Home, then Down to the entry.
    void pick(const QString& ioName) {
        QComboBox* c = ioName_();
        const int index = c->findText(ioName);
        ASSERT_GE(index, 0) << ioName.toStdString();
        c->setFocus();
        QTest::keyClick(c, Qt::Key_Home);
        if (c->currentIndex() != 0) {  // an editable box moves the cursor on Home
            c->setCurrentIndex(0);
        }
        for (int i = 0; i < index; ++i) QTest::keyClick(c, Qt::Key_Down);
        EXPECT_EQ(c->currentText(), ioName);
    }
    QComboBox* ioName_() { return ioName(); }
    void define(const QString& name, const QString& io, const QString& raw1, const QString& raw2,
                const QString& eng1, const QString& eng2) {
        type("TxtTagName", name);
        pick(io);
        type("TxtRawValue1", raw1);
        type("TxtRawValue2", raw2);
        type("TxtEngValue1", eng1);
        type("TxtEngValue2", eng2);
    }
    void nameAll() {
        for (int n = 1; n <= kUserTags; ++n) {
            Tag& t = st.tags[n];
            t.TagName = "V" + std::to_string(n);
            BindIOName(t, "Analog Variable");
            t.Address = 1;
            t.RawValue2 = 1;
            t.EngValue2 = 1;
        }
    }
};

std::string unescape(std::string s) {
    const std::pair<const char*, const char*> entities[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
    for (const auto& [from, to] : entities)
        for (std::size_t at = s.find(from); at != std::string::npos; at = s.find(from, at + 1))
            s.replace(at, std::strlen(from), to);
    return s;
}

double attribute(const std::string& tag, const char* name) {
    const std::string key = std::string(name) + "=\"";
    const std::size_t at = tag.find(key);
    return at == std::string::npos ? 0 : std::atof(tag.c_str() + at + key.size());
}

// The text lines of a PDF printed in a monospaced font, read back with pdftotext's word
// boxes: words on one baseline make a line, and the gaps between them (and the indent from
// the left margin) are turned back into blanks at the font's character width.
std::vector<std::string> pdfLines(const std::filesystem::path& pdf) {
    const std::string command = "pdftotext -bbox '" + pdf.string() + "' - 2>/dev/null";
    std::string xml;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buf[4096];
        std::size_t n;
        while ((n = fread(buf, 1, sizeof buf, pipe)) > 0) xml.append(buf, n);
        pclose(pipe);
    }
    struct Word {
        double x0, x1;
        std::string text;
    };
    std::map<std::pair<int, long>, std::vector<Word>> rows;  // (page, baseline) -> words
    int page = 0;
    double left = 1e9;
    double charWidth = 0;
    std::size_t at = 0;
    while ((at = xml.find('<', at)) != std::string::npos) {
        const std::size_t end = xml.find('>', at);
        const std::string tag = xml.substr(at, end - at + 1);
        if (tag.rfind("<page ", 0) == 0) ++page;
        if (tag.rfind("<word ", 0) == 0) {
            const std::size_t close = xml.find("</word>", end);
            Word w{attribute(tag, "xMin"), attribute(tag, "xMax"),
                   unescape(xml.substr(end + 1, close - end - 1))};
            left = std::min(left, w.x0);
            if (!w.text.empty()) charWidth = (w.x1 - w.x0) / static_cast<double>(w.text.size());
            rows[{page, std::lround(attribute(tag, "yMax") * 10)}].push_back(w);
        }
        at = end;
    }
    std::vector<std::string> lines;
    if (charWidth <= 0) return lines;
    for (auto& [key, words] : rows) {
        std::sort(words.begin(), words.end(),
                  [](const Word& a, const Word& b) { return a.x0 < b.x0; });
        std::string line;
        double x = left;
        for (const Word& w : words) {
            line.append(static_cast<std::size_t>(std::lround((w.x0 - x) / charWidth)), ' ');
            line += w.text;
            x = w.x1;
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

TEST(TagEditorWindow, CaptionsNamesAndTheScalingFrame) {
    Rig r;
    EXPECT_EQ(r.w->windowTitle(), "Tag Configuration");
    EXPECT_EQ(r.w->objectName(), "CfgTags");
    const std::vector<std::pair<const char*, const char*>> buttons = {
        {"ComPrev", "&Previous"}, {"ComNext", "&Next"},   {"CmdFind", "&Find"},
        {"CmdDelete", "&Delete"}, {"CmdPrint", "P&rint"}, {"Exit", "E&xit"}};
    for (const auto& [name, caption] : buttons) EXPECT_EQ(r.button(name)->text(), caption) << name;
    EXPECT_EQ(r.log()->text(), "Log To Disk");
    for (const char* name : {"TxtRawValue1", "TxtRawValue2", "TxtEngValue1", "TxtEngValue2"}) {
        auto* frame = qobject_cast<QGroupBox*>(r.box(name)->parentWidget());
        ASSERT_NE(frame, nullptr) << name;
        EXPECT_EQ(frame->title(), "Scaling") << name;
    }
}

TEST(TagEditorWindow, EveryBoxCarriesItsLabelAsItsAccessibleName) {
    Rig r;
    const std::vector<std::pair<const char*, const char*>> boxes = {
        {"TxtLabel", "Description"},
        {"TxtTagName", "Tag Name"},
        {"TxtRTUAddr", "DAQ Address"},
        {"TxtRawValue1", "Raw Value1"},
        {"TxtRawValue2", "Raw Value2"},
        {"TxtEngValue1", "Engineering Value1"},
        {"TxtEngValue2", "Engineering Value2"},
        {"TxtUnits", "Units"}};
    for (const auto& [name, label] : boxes) {
        QLineEdit* e = r.box(name);
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(e);
        ASSERT_NE(a, nullptr) << name;
        EXPECT_EQ(a->text(QAccessible::Name), label) << name;
        // and the label beside it is its buddy
        bool found = false;
        for (QLabel* l : r.w->findChildren<QLabel*>())
            if (l->buddy() == e) found = l->text() == label;
        EXPECT_TRUE(found) << name;
    }
    QAccessibleInterface* combo = QAccessible::queryAccessibleInterface(r.ioName());
    EXPECT_EQ(combo->text(QAccessible::Name), "I/O Name");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(r.log())->text(QAccessible::Name),
              "Log To Disk");
}

TEST(TagEditorWindow, TabOrderFollowsTheLayout) {
    Rig r;
    const std::vector<QString> expected = {
        "TxtLabel",     "TxtTagName",   "TxtRTUAddr", "CboIOName", "TxtRawValue1", "TxtEngValue1",
        "TxtRawValue2", "TxtEngValue2", "TxtUnits",   "ChkLog",    "ComPrev",      "ComNext",
        "CmdFind",      "CmdDelete",    "CmdPrint",   "Exit"};
    QWidget* w = r.box("TxtLabel");
    for (std::size_t i = 1; i < expected.size(); ++i) {
        w = w->nextInFocusChain();
        // Only what Tab stops at; the drop-down's own line edit sits inside it in the chain.
        while (w && (!(w->focusPolicy() & Qt::TabFocus) || w->objectName().isEmpty()))
            w = w->nextInFocusChain();
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(w->objectName(), expected[i]) << i;
    }
}

TEST(TagEditorWindow, OpensOnTagOneWithTheModulesIONames) {
    Rig r(kDaqQrt110);
    EXPECT_EQ(r.tagNumber(), "1");
    ASSERT_EQ(r.ioName()->count(), 12);
    EXPECT_EQ(r.ioName()->itemText(0), "Analog Variable");
    EXPECT_EQ(r.ioName()->itemText(11), "AO-2");
    EXPECT_EQ(r.box("TxtRTUAddr")->text(), "1");
    EXPECT_TRUE(r.box("TxtLabel")->hasFocus() || !r.w->isActiveWindow());
}

TEST(TagEditorWindow, ATagTypedInIsStoredOnNext) {
    Rig r;
    r.type("TxtLabel", "Tank level");
    r.define("tank", "AI-3", "0", "4095", "0", "100");
    r.type("TxtUnits", "%");
    r.log()->setFocus();
    QTest::keyClick(r.log(), Qt::Key_Space);
    r.button("ComNext")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    const Tag& t = r.st.tags[1];
    EXPECT_EQ(t.TagName, "TANK");
    EXPECT_EQ(t.Label, "TANK LEVEL");
    EXPECT_EQ(t.IOName, "AI-3");
    EXPECT_EQ(t.IONumber, 3);
    EXPECT_EQ(t.Slope, 0.024420025f);
    EXPECT_EQ(t.Units, "%");
    EXPECT_NE(t.Log, 0);
    EXPECT_EQ(r.tagNumber(), "2");
    EXPECT_EQ(r.box("TxtTagName")->text(), "");
    r.button("ComPrev")->click();  // blank tag 2 is refused: the window stays
    EXPECT_EQ(r.tagNumber(), "2");
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(
        r.prompt.messages[0],
        (test::Shown{"Tag Name cannot be blank. If not used name it as a variable", "ERROR"}));
}

TEST(TagEditorWindow, ChoosingADigitalNameSwitchesTheScalingBoxes) {
    Rig r;
    r.st.tags[1].EngText1 = "OFF";
    r.st.tags[1].EngText2 = "ON";
    r.pick("DO-2");
    EXPECT_EQ(r.box("TxtRawValue1")->text(), "0");
    EXPECT_EQ(r.box("TxtRawValue2")->text(), "1");
    EXPECT_EQ(r.box("TxtEngValue1")->text(), "OFF");
    EXPECT_EQ(r.box("TxtEngValue2")->text(), "ON");
    r.type("TxtTagName", "pump");
    r.button("ComNext")->click();
    EXPECT_EQ(r.st.tags[1].Kind, kDigital);
    EXPECT_EQ(r.st.tags[1].Direction, kOutput);
    EXPECT_EQ(r.st.tags[1].IONumber, 2);
}

TEST(TagEditorWindow, ANameTypedInFullIsChosenWhenTheBoxIsLeft) {
    Rig r;
    r.st.tags[1].EngText1 = "SHUT";
    r.st.tags[1].EngText2 = "OPEN";
    QApplication::setActiveWindow(r.w.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(r.w.get()));
    r.type("TxtTagName", "valve");
    r.ioName()->setFocus();
    r.ioName()->lineEdit()->selectAll();
    QTest::keyClicks(r.ioName()->lineEdit(), "DO-3");
    QTest::keyClick(r.ioName()->lineEdit(), Qt::Key_Tab);
    EXPECT_EQ(r.box("TxtRawValue1")->text(), "0");
    EXPECT_EQ(r.box("TxtRawValue2")->text(), "1");
    EXPECT_EQ(r.box("TxtEngValue1")->text(), "SHUT");
    EXPECT_EQ(r.box("TxtEngValue2")->text(), "OPEN");
    r.button("ComNext")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.tags[1].IOName, "DO-3");
    EXPECT_EQ(r.st.tags[1].EngText2, "OPEN");
}

TEST(TagEditorWindow, ATypedIONameNotInTheListIsRefused) {
    Rig r(kDaqQrt115);
    r.type("TxtTagName", "X");
    r.ioName()->setFocus();
    r.ioName()->lineEdit()->selectAll();
    QTest::keyClicks(r.ioName()->lineEdit(), "AI-1");
    r.button("ComNext")->click();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "I/O Name Not Selected From List ");
    EXPECT_EQ(r.ioName()->count(), 18);  // nothing typed is added to the list
    EXPECT_EQ(r.tagNumber(), "1");
    EXPECT_EQ(r.st.tags[1], Tag{});
}

TEST(TagEditorWindow, TheButtonsWorkFromTheKeyboard) {
    Rig r;
    r.nameAll();
    r.w.reset();
    r.open();
    r.w->activateWindow();
    QApplication::setActiveWindow(r.w.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(r.w.get()));
    r.box("TxtUnits")->setFocus();
    // A mnemonic clicks its button the way a mouse would, released a moment later.
    auto press = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key, Qt::AltModifier);
        QTest::qWait(250);
    };
    press(Qt::Key_N);
    EXPECT_EQ(r.tagNumber(), "2");
    press(Qt::Key_P);
    EXPECT_EQ(r.tagNumber(), "1");
    r.prompt.inputAnswers = {std::string("v7")};
    press(Qt::Key_F);
    EXPECT_EQ(r.tagNumber(), "7");
    EXPECT_EQ(r.box("TxtTagName")->text(), "V7");
    r.prompt.yesNoAnswers = {false};
    press(Qt::Key_D);
    EXPECT_EQ(r.prompt.questions.size(), 1u);
    press(Qt::Key_X);
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(TagEditorWindow, FindOfAnUnknownNameSaysSo) {
    Rig r;
    r.prompt.inputAnswers = {std::string("nope")};
    r.button("CmdFind")->click();
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"Cannot Find TagName NOPE", "Find Tag"}}));
    EXPECT_EQ(r.tagNumber(), "1");
}

TEST(TagEditorWindow, DeleteMovesTheTagsUpAndShowsTheNextOne) {
    Rig r;
    r.nameAll();
    r.w.reset();
    r.open();
    for (int i = 0; i < 4; ++i) r.button("ComNext")->click();
    ASSERT_EQ(r.tagNumber(), "5");
    r.prompt.yesNoAnswers = {true};
    r.button("CmdDelete")->click();
    EXPECT_EQ(r.tagNumber(), "5");
    EXPECT_EQ(r.box("TxtTagName")->text(), "V6");
    EXPECT_EQ(r.st.tags[32].TagName, "AVAR0");
    EXPECT_EQ(r.st.tags[31].TagName, "V32");
}

TEST(TagEditorWindow, ExitWithErrorsAsksAndStaysOnNo) {
    Rig r;
    r.define("A", "Analog Variable", "0", "1", "0", "1");
    r.button("Exit")->click();
    EXPECT_EQ(r.prompt.messages.size(), 31u);  // tags 2..32 have no name
    EXPECT_EQ(r.prompt.questions,
              (std::vector<test::Shown>{{"Errors Found Do you wish to exit", "ERROR"}}));
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_EQ(r.st.tags[1].TagName, "A");  // the shown record was accepted
}

TEST(TagEditorWindow, ExitWithAGoodTableClosesAndTheScanFindsTheTags) {
    Rig r;
    r.nameAll();
    r.w.reset();
    r.open();
    r.type("TxtTagName", "LEVEL");
    r.pick("AI-2");
    r.button("Exit")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(FindTag(r.st.nameIndex, "LEVEL"), 1);
    EXPECT_EQ(r.st.daq.Summary.LowestAnalogInput, 2);
}

TEST(TagEditorWindow, ClosingByTheFrameRebuildsTheIndexAndStoresNothing) {
    Rig r;
    r.st.tags[4].TagName = "HIDDEN";  // changed behind the window's back
    r.type("TxtTagName", "TYPED");
    r.w->close();
    EXPECT_EQ(FindTag(r.st.nameIndex, "HIDDEN"), 4);
    EXPECT_EQ(r.st.tags[1].TagName, "");
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(TagEditorWindow, TheListingPrintsIntoAPdfInTheFiveLineFormat) {
    Rig r;
    Tag& a = r.st.tags[1];
    a.TagName = "TANK";
    a.Label = "TANK LEVEL";
    BindIOName(a, "AI-3");
    a.Address = 1;
    a.RawValue2 = 4095;
    a.EngValue2 = 100;
    a.Units = "%";
    a.Log = 1;
    Tag& d = r.st.tags[2];
    d.TagName = "PUMP";
    BindIOName(d, "DO-1");
    d.Address = 1;
    d.RawValue2 = 1;
    d.EngText1 = "OFF";
    d.EngText2 = "ON";
    const auto pdf = r.folder / "tags.pdf";
    r.printer.setOutputFile(QString::fromStdString(pdf.string()));
    r.button("CmdPrint")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    std::vector<std::string> lines = pdfLines(pdf);
    ASSERT_FALSE(lines.empty()) << "pdftotext (poppler-utils) read nothing from " << pdf;
    // The page number at the foot of the page.
    EXPECT_EQ(lines.back().substr(lines.back().find_first_not_of(' ')), "1");
    lines.pop_back();
    // The listing's lines, less the lines of two blanks, which print nothing to read back.
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "********** Record 1 **********",
                         "TagName=TANK  Label=TANK LEVEL",
                         "Analog IOName=AI-3  Address=1",
                         "RawValue1=0  EngValue1=0  RawValue2=4095  EngValue2=100",
                         "Units=%  Log=Yes",
                         "********** Record 2 **********",
                         "TagName=PUMP  Label=",
                         "DigitalIOName=DO-1  Address=1",
                         "RawValue1=0  EngValue1=OFF  RawValue2=1  EngValue2=ON",
                         "  Log=No",
                     }));
}

TEST(TagEditorWindow, SetUpTagsOpensTheWindowOnceAndTheScanGoesOn) {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    st.workingFolder = folder.path();
    app::MainWindow main(st, &prompt, &errors);
    QAction* item = test::child<QAction>(&main, "SetUpTags");
    item->trigger();
    QWidget* w = main.windows().find("Tags");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Tag Configuration");
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(w->isModal());
    item->trigger();
    EXPECT_EQ(main.windows().find("Tags"), w);
    EXPECT_EQ(main.windows().openCount(), 1);
}

}  // namespace kova
