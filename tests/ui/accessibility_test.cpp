// Every window as a screen reader or a UI automation tool meets it: each one opened from the
// main window as its menu item does, its accessible tree walked, and every input checked for
// a name of its own (not empty, and not merely the text it holds).
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "app/main_window.h"
#include "core/forms/form_widgets.h"
#include "support/test_support.h"
#include "tags/daq_profile.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"
#include "ui/ui_support.h"

namespace kova::app {

namespace {

// The roles of controls that take input (or, for buttons, act on it).
bool isInput(QAccessible::Role role) {
    switch (role) {
        case QAccessible::EditableText:
        case QAccessible::ComboBox:
        case QAccessible::CheckBox:
        case QAccessible::RadioButton:
        case QAccessible::SpinBox:
        case QAccessible::Slider:
        case QAccessible::List:
        case QAccessible::Table:
        case QAccessible::Tree:
        case QAccessible::PushButton:
        case QAccessible::ButtonMenu:
            return true;
        default:
            return false;
    }
}

// Roles whose value is text the user reads or types: such a control named by its own text
// tells a listener nothing about what the text is.
bool holdsText(QAccessible::Role role) {
    return role == QAccessible::EditableText || role == QAccessible::ComboBox ||
           role == QAccessible::SpinBox;
}

struct Finding {
    std::string window;
    std::string control;
    std::string problem;
};

std::string describe(QAccessibleInterface* a) {
    std::ostringstream s;
    QObject* o = a->object();
    s << (o ? o->metaObject()->className() : "?");
    if (o && !o->objectName().isEmpty()) s << " " << o->objectName().toStdString();
    if (o && !o->objectName().isEmpty()) return s.str();
    // An unnamed helper (the line edit of a combo box): name its parent too.
    if (o && o->parent() && !o->parent()->objectName().isEmpty())
        s << " in " << o->parent()->objectName().toStdString();
    return s.str();
}

// A name given to the box itself or by a label that is its buddy; Qt otherwise falls back to
// the caption of the frame the box sits in, which names the frame rather than the box.
bool hasNameOfItsOwn(QObject* o) {
    auto* w = qobject_cast<QWidget*>(o);
    if (!w || !w->accessibleName().isEmpty()) return true;
    if (QWidget* parent = w->parentWidget())
        for (QLabel* l : parent->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
            if (l->buddy() == w) return true;
    return false;
}

void walk(QAccessibleInterface* a, const std::string& window, int& inputs,
          std::vector<Finding>& found, int depth = 0) {
    if (!a || !a->isValid() || depth > 40) return;
    const QAccessible::State state = a->state();
    if (state.invisible) return;
    const QAccessible::Role role = a->role();
    if (isInput(role)) {
        ++inputs;
        const QString name = a->text(QAccessible::Name).trimmed();
        const QString value = a->text(QAccessible::Value).trimmed();
        if (name.isEmpty())
            found.push_back({window, describe(a), "has no name"});
        else if (holdsText(role) && !hasNameOfItsOwn(a->object()))
            found.push_back(
                {window, describe(a),
                 "is named only by the frame around it (\"" + name.toStdString() + "\")"});
        else if (holdsText(role) && !value.isEmpty() && name == value)
            found.push_back(
                {window, describe(a), "is named by its own text \"" + value.toStdString() + "\""});
    }
    for (int i = 0; i < a->childCount(); ++i) walk(a->child(i), window, inputs, found, depth + 1);
}

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    std::unique_ptr<MainWindow> w;
    Rig() {
        st.workingFolder = folder.path();
        w = std::make_unique<MainWindow>(st, &prompt, &errors);
        configure();
        w->show();
    }
    // A module with analog inputs (Calibration opens) and tags in every table, so that the
    // combo boxes and the boxes hold text.
    void configure() {
        BuildIOList(st.profile, kDaqQrt105);
        const char* io[] = {"AI-1", "AI-2", "DI-1", "DO-1"};
        const char* names[] = {"LEVEL", "TEMP", "DOOR", "PUMP"};
        for (int n = 1; n <= 4; ++n) {
            Tag& t = st.tags[n];
            t.TagName = names[n - 1];
            t.Label = std::string(names[n - 1]) + " label";
            BindIOName(t, io[n - 1]);
            t.RawValue2 = 4095;
            t.EngValue2 = 100;
            ComputeScaling(t);
        }
        RebuildTagNameIndex(st.tags, st.nameIndex);
        for (int line = 1; line <= 20; ++line) {
            ScreenLine& l = st.screens.Lines(1, line);
            l.TagNumber = static_cast<std::int16_t>(line <= 10 ? 1 + line % 2 : 3 + line % 2);
            l.TagName = st.tags[l.TagNumber].TagName;
        }
        st.screens.Headers[1].Title = "Plant";
        for (int pen = 1; pen <= 4; ++pen)
            st.trends.TrendTable(1, pen) = static_cast<std::int16_t>(pen);
        st.alarms.Alarms[1].TagNo = 1;
        st.alarms.Alarms[1].TagName = "LEVEL";
        st.alarms.Alarms[1].HiMsg = "Level high";
        st.logging.ConditionTag = 1;
        st.logging.LogFileName = (folder / "PLANT.CSV").string();
        st.control.Lines[1].IfText = "@LEVEL > 50";
        st.control.Lines[1].ThenText = "@PUMP = 1";
    }
};

}  // namespace

TEST(Accessibility, EveryInputOfEveryWindowHasANameOfItsOwn) {
    Rig r;
    std::vector<QWidget*> windows = {r.w.get()};
    for (int k = 0; k <= static_cast<int>(WindowKind::Help); ++k) {
        r.w->openWindow(static_cast<WindowKind>(k));
        ASSERT_TRUE(r.prompt.messages.empty())
            << "window " << k << " said " << r.prompt.messages.back().text;
    }
    QApplication::processEvents();
    std::set<QWidget*> seen;
    int inputs = 0;
    std::vector<Finding> found;
    int windowCount = 0;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (!top->isVisible() || !seen.insert(top).second) continue;
        ++windowCount;
        walk(QAccessible::queryAccessibleInterface(top), top->windowTitle().toStdString(), inputs,
             found);
    }
    // The main window and the seventeen windows its menus open (Help included).
    EXPECT_EQ(windowCount, 18);
    EXPECT_GT(inputs, 250);
    for (const Finding& f : found)
        ADD_FAILURE() << "\"" << f.window << "\": " << f.control << " " << f.problem;
    EXPECT_EQ(found.size(), 0u) << "of " << inputs << " inputs";
}

TEST(Accessibility, AComboBoxIsNamedByItsCaptionAndHoldsItsTextAsItsValue) {
    QWidget window;
    auto* box = new QComboBox(&window);
    box->setEditable(true);
    box->addItems({"AI-1", "AI-2"});
    box->setEditText("AI-1");
    forms::caption("&I/O Name", box, &window);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(box);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::ComboBox);
    EXPECT_EQ(a->text(QAccessible::Name), "I/O Name");
    EXPECT_EQ(a->text(QAccessible::Value), "AI-1");
    ASSERT_EQ(a->childCount(), 2);
    QAccessibleInterface* typed = a->child(1);
    ASSERT_NE(typed, nullptr);
    EXPECT_EQ(typed->object(), box->lineEdit());
    EXPECT_EQ(typed->text(QAccessible::Name), "I/O Name");
    EXPECT_EQ(a->indexOfChild(typed), 1);
    EXPECT_TRUE(a->state().editable);
    // A combo box nobody named still reads as its text rather than as nothing.
    auto* unnamed = new QComboBox(&window);
    unnamed->addItem("DOOR");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(unnamed)->text(QAccessible::Name), "DOOR");
}

}  // namespace kova::app
