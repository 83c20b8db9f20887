// Message boxes, questions and file dialogs belong to the window that raised them: they
// open centred over it, and when they close the keyboard is back in that window, in the box
// at fault where there is one. Questions whose Yes throws work away default to No.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>
#include <memory>
#include <sstream>

#include "alarms/forms/alarm_setup_form.h"
#include "app/main_window.h"
#include "app/qt_prompter.h"
#include "core/forms/periods_form.h"
#include "logging/forms/set_logging_form.h"
#include "support/test_support.h"
#include "tags/forms/tag_editor_form.h"
#include "ui/ui_support.h"

namespace kova {

namespace {

// Two windows side by side on the (800 x 600) screen: the main one and another with a box.
struct TwoWindows {
    QWidget main;
    QWidget other;
    QLineEdit* box;
    TwoWindows() {
        main.setWindowTitle("Main");
        main.setGeometry(10, 10, 200, 150);
        other.setWindowTitle("Other");
        other.setGeometry(330, 230, 400, 300);
        box = new QLineEdit(&other);
        auto* layout = new QVBoxLayout(&other);
        layout->addWidget(box);
        layout->addWidget(new QPushButton("Go", &other));
        main.show();
        other.show();
        test::ShowActive(&other);
        box->setFocus();
    }
};

// The distance between the centres of a box and of the window it should sit on.
int offCentre(QWidget* box, QWidget* window) {
    const QPoint d = box->frameGeometry().center() - window->frameGeometry().center();
    return d.manhattanLength();
}

}  // namespace

TEST(BoxOwner, ABoxOpensCentredOverItsOwnerAndGivesTheKeyboardBack) {
    TwoWindows w;
    app::QtPrompter prompter(&w.main);
    PromptOwner owner(prompter, &w.other);
    QWidget* parent = nullptr;
    int distance = -1;
    test::AnswerModal(
        [&](QWidget* modal) {
            parent = modal->parentWidget();
            distance = offCentre(modal, &w.other);
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::Ok)->click();
        },
        [&] { prompter.message("Tag Name Not Found", "ERROR"); });
    EXPECT_EQ(parent, &w.other);
    EXPECT_LE(distance, 40);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activeWindow(), &w.other);
    EXPECT_EQ(QApplication::focusWidget(), w.box);
}

TEST(BoxOwner, WithoutAnOwnerABoxBelongsToTheMainWindow) {
    TwoWindows w;
    app::QtPrompter prompter(&w.main);
    QWidget* parent = nullptr;
    test::AnswerModal(
        [&](QWidget* modal) {
            parent = modal->parentWidget();
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::Ok)->click();
        },
        [&] { prompter.message("Configuration Set to Default", "KOVA"); });
    EXPECT_EQ(parent, &w.main);
}

TEST(BoxOwner, AnOwnerThatIsGoneFallsBackToTheMainWindow) {
    TwoWindows w;
    app::QtPrompter prompter(&w.main);
    auto closed = std::make_unique<QWidget>();
    const void* gone = closed.get();
    closed.reset();  // the window closed; its token is only ever compared
    prompter.setOwner(gone);
    EXPECT_EQ(prompter.ownerWindow(), &w.main);
    // A control inside a window names the window.
    prompter.setOwner(w.box);
    EXPECT_EQ(prompter.ownerWindow(), &w.other);
}

TEST(BoxOwner, QuestionsAndFileDialogsBelongToTheirOwnerToo) {
    TwoWindows w;
    app::QtPrompter prompter(&w.main);
    PromptOwner owner(prompter, &w.other);
    QWidget* questionParent = nullptr;
    QWidget* dialogParent = nullptr;
    test::AnswerModal(
        [&](QWidget* modal) {
            questionParent = modal->parentWidget();
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::No)->click();
        },
        [&] { prompter.askYesNo("Do You Wish To Exit", "ERROR", DefaultAnswer::No); });
    test::AnswerModal(
        [&](QWidget* modal) {
            dialogParent = modal->parentWidget();
            qobject_cast<QDialog*>(modal)->reject();
        },
        [&] { prompter.chooseFile("Open SetUp File", "All Files (*.SUF)|*.SUF|", "", false); });
    EXPECT_EQ(questionParent, &w.other);
    EXPECT_EQ(dialogParent, &w.other);
}

TEST(BoxOwner, AQuestionsDefaultButtonIsTheOneAskedFor) {
    app::QtPrompter prompter;
    for (const DefaultAnswer enter : {DefaultAnswer::No, DefaultAnswer::Yes}) {
        bool yes = enter == DefaultAnswer::No;
        test::AnswerModal(
            [&](QWidget* modal) {
                auto* box = qobject_cast<QMessageBox*>(modal);
                const auto expected =
                    enter == DefaultAnswer::Yes ? QMessageBox::Yes : QMessageBox::No;
                EXPECT_EQ(box->defaultButton(), box->button(expected));
                QTest::keyClick(box, Qt::Key_Return);  // Enter presses the default
            },
            [&] { yes = prompter.askYesNo("Do You Wish to Delete this Tag", "Option", enter); });
        EXPECT_EQ(yes, enter == DefaultAnswer::Yes);
    }
}

TEST(BoxOwner, TheSaveQuestionHasSaveDiscardAndCancelWithSaveTheDefault) {
    app::QtPrompter prompter;
    SaveChoice answer = SaveChoice::Discard;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            EXPECT_EQ(box->windowTitle(), "KOVA");
            EXPECT_EQ(box->text(), "Save changes to PLANT.SUF?");
            EXPECT_EQ(box->buttons().size(), 3);
            EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::Save));
            EXPECT_EQ(box->button(QMessageBox::Discard)->text(), "&Discard");
            QTest::keyClick(box, Qt::Key_Return);
        },
        [&] { answer = prompter.askSaveDiscardCancel("Save changes to PLANT.SUF?", "KOVA"); });
    EXPECT_EQ(answer, SaveChoice::Save);
    test::AnswerModal(
        [&](QWidget* modal) {
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::Discard)->click();
        },
        [&] { answer = prompter.askSaveDiscardCancel("Save changes to PLANT.SUF?", "KOVA"); });
    EXPECT_EQ(answer, SaveChoice::Discard);
    test::AnswerModal(
        [&](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); },
        [&] { answer = prompter.askSaveDiscardCancel("Save changes to PLANT.SUF?", "KOVA"); });
    EXPECT_EQ(answer, SaveChoice::Cancel);
}

namespace {
struct Program {
    test::TempFolder folder;
    Station st;
    std::ostringstream errors;
    std::unique_ptr<app::MainWindow> w;
    Program() {
        st.workingFolder = folder.path();
        w = std::make_unique<app::MainWindow>(st, nullptr, &errors);  // the real dialogs
        w->show();
    }
    // Opens a window from its menu item and makes it the active one.
    QWidget* open(app::WindowKind kind, const char* name) {
        w->openWindow(kind);
        QWidget* window = w->windows().find(name);
        if (window) test::ShowActive(window);
        return window;
    }
};
}  // namespace

TEST(BoxOwner, ARefusalOfThePeriodsWindowOpensOverItAndTheKeyboardGoesToThePeriod) {
    Program p;
    auto* periods = qobject_cast<PeriodsWindow*>(p.open(app::WindowKind::Periods, "Periods"));
    ASSERT_NE(periods, nullptr);
    p.w->move(0, 0);
    periods->move(400, 220);
    auto* io = test::child<QLineEdit>(periods, "TxtIOPeriod");
    test::child<QRadioButton>(periods, "OptIOmSecs")->setChecked(true);
    io->setText("10");
    auto* exit = test::child<QPushButton>(periods, "CmdExit");
    exit->setFocus();
    QWidget* parent = nullptr;
    int distance = -1;
    test::AnswerModal(
        [&](QWidget* modal) {
            parent = modal->parentWidget();
            distance = offCentre(modal, periods);
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::Ok)->click();
        },
        [&] { exit->click(); });
    EXPECT_EQ(parent, periods);
    EXPECT_LE(distance, 40);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activeWindow(), periods);
    EXPECT_EQ(QApplication::focusWidget(), io);
    EXPECT_EQ(io->text(), "50");
    EXPECT_EQ(io->selectedText(), "50");
}

TEST(BoxOwner, EveryWindowRaisesItsBoxesAsTheirOwner) {
    // The scripted prompter records the owner of each box: the window whose button asked.
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    st.workingFolder = folder.path();
    app::MainWindow w(st, &prompt, &errors);
    w.openWindow(app::WindowKind::AlarmSetup);
    auto* alarms = qobject_cast<AlarmSetupWindow*>(w.windows().find("AlarmSetup"));
    ASSERT_NE(alarms, nullptr);
    test::child<QComboBox>(alarms, "CboTag")->setEditText("NOPE");
    alarms->nextClicked();
    w.openWindow(app::WindowKind::Tags);
    auto* tags = qobject_cast<TagEditorWindow*>(w.windows().find("Tags"));
    ASSERT_NE(tags, nullptr);
    tags->deleteClicked();  // the question, answered No
    w.openWindow(app::WindowKind::LogParameters);
    auto* logging = qobject_cast<SetLoggingWindow*>(w.windows().find("LogParameters"));
    ASSERT_NE(logging, nullptr);
    logging->chooseFileClicked();  // the file dialog, cancelled
    ASSERT_EQ(prompt.owners.size(), 3u);
    EXPECT_EQ(prompt.owners[0], static_cast<const void*>(static_cast<QWidget*>(alarms)));
    EXPECT_EQ(prompt.owners[1], static_cast<const void*>(static_cast<QWidget*>(tags)));
    EXPECT_EQ(prompt.owners[2], static_cast<const void*>(static_cast<QWidget*>(logging)));
    // The owner is the window only while its call runs.
    EXPECT_EQ(prompt.owner(), nullptr);
}

}  // namespace kova
