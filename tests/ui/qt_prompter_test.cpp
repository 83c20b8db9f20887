#include "app/qt_prompter.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova::app {

TEST(QtPrompter, AMessageIsAModalBoxWithItsTitleTextAndOneOkButton) {
    QtPrompter prompter;
    QString title, text;
    int buttons = 0;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            ASSERT_NE(box, nullptr);
            title = box->windowTitle();
            text = box->text();
            buttons = static_cast<int>(box->buttons().size());
            box->button(QMessageBox::Ok)->click();
        },
        [&] { prompter.message("Configuration Set to Default", "KOVA"); });
    EXPECT_EQ(title, "KOVA");
    EXPECT_EQ(text, "Configuration Set to Default");
    EXPECT_EQ(buttons, 1);
}

TEST(QtPrompter, TextsKeepTheirTrailingBlanks) {
    QtPrompter prompter;
    QString text;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            text = box->text();
            box->button(QMessageBox::Ok)->click();
        },
        [&] { prompter.message("Value out of range ", "ERROR"); });
    EXPECT_EQ(text, "Value out of range ");
}

TEST(QtPrompter, AQuestionHasYesAndNo) {
    QtPrompter prompter;
    QString title;
    bool yes = false;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            title = box->windowTitle();
            EXPECT_NE(box->button(QMessageBox::Yes), nullptr);
            EXPECT_NE(box->button(QMessageBox::No), nullptr);
            EXPECT_EQ(box->buttons().size(), 2);
            box->button(QMessageBox::Yes)->click();
        },
        [&] { yes = prompter.askYesNo("Delete this tag?", "Option", DefaultAnswer::No); });
    EXPECT_EQ(title, "Option");
    EXPECT_TRUE(yes);
    test::AnswerModal(
        [&](QWidget* modal) {
            qobject_cast<QMessageBox*>(modal)->button(QMessageBox::No)->click();
        },
        [&] { yes = prompter.askYesNo("Delete this tag?", "Option", DefaultAnswer::No); });
    EXPECT_FALSE(yes);
}

TEST(QtPrompter, AnInputBoxGivesTheTypedTextOrNothingWhenCancelled) {
    QtPrompter prompter;
    std::optional<std::string> got;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* dialog = qobject_cast<QInputDialog*>(modal);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Find");
            EXPECT_EQ(dialog->labelText(), "Tag Name");
            dialog->setTextValue("TANK");
            static_cast<QDialog*>(dialog)->accept();
        },
        [&] { got = prompter.input("Tag Name", "Find"); });
    EXPECT_EQ(got, std::optional<std::string>("TANK"));
    test::AnswerModal([&](QWidget* modal) { qobject_cast<QInputDialog*>(modal)->reject(); },
                      [&] { got = prompter.input("Tag Name", "Find"); });
    EXPECT_EQ(got, std::nullopt);
}

TEST(QtPrompter, TheOpenDialogHasItsTitleAndTheConvertedFilterAndFindsSufFilesInAnyCase) {
    test::TempFolder folder;
    test::WriteFileBytes(folder / "Default.Suf", "x");
    test::WriteFileBytes(folder / "notes.txt", "x");
    QtPrompter prompter;
    std::optional<std::string> got;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            ASSERT_NE(dialog, nullptr);
            auto* model = dialog->findChild<QFileSystemModel*>();
            ASSERT_NE(model, nullptr);
            const QModelIndex dir = model->index(QString::fromStdString(folder.path().string()));
            EXPECT_TRUE(QTest::qWaitFor([&] { return model->rowCount(dir) > 0; }, 3000));
            QStringList offered;
            for (int i = 0; i < model->rowCount(dir); ++i) {
                const QModelIndex item = model->index(i, 0, dir);
                if (model->flags(item) & Qt::ItemIsEnabled) offered << model->fileName(item);
            }
            EXPECT_EQ(offered, QStringList{"Default.Suf"});
            EXPECT_EQ(dialog->windowTitle(), "Open SetUp File");
            EXPECT_EQ(dialog->nameFilters(), QStringList{"All Files (*.SUF)"});
            EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
            EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
            // The user types the name into the file name box.
            auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
            ASSERT_NE(name, nullptr);
            name->setText("Default.Suf");
            static_cast<QDialog*>(dialog)->accept();
        },
        [&] {
            got = prompter.chooseFile("Open SetUp File", "All Files (*.SUF)|*.SUF|",
                                      folder.path().string(), false);
        });
    ASSERT_TRUE(got.has_value());
    EXPECT_EQ(std::filesystem::path(*got).filename(), "Default.Suf");
}

TEST(QtPrompter, TheSaveDialogProposesTheCurrentFile) {
    test::TempFolder folder;
    QtPrompter prompter;
    std::optional<std::string> got;
    const std::string proposed = (folder / "PLANT.SUF").string();
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Save SetUp File");
            EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
            EXPECT_EQ(dialog->defaultSuffix(), "SUF");
            static_cast<QDialog*>(dialog)->accept();
        },
        [&] {
            got = prompter.chooseFile("Save SetUp File", "All Files (*.SUF)|*.SUF", proposed, true);
        });
    ASSERT_TRUE(got.has_value());
    EXPECT_EQ(std::filesystem::path(*got).filename(), "PLANT.SUF");
}

TEST(QtPrompter, TheDialogForAFileToWriteTakesANameThatDoesNotExistYet) {
    test::TempFolder folder;
    QtPrompter prompter;
    std::optional<std::string> got;
    test::AnswerModal(
        [&](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Open Logging File");
            EXPECT_EQ(dialog->nameFilters(), QStringList{"All Files (*.CSV)"});
            EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
            EXPECT_EQ(dialog->fileMode(), QFileDialog::AnyFile);
            EXPECT_EQ(dialog->defaultSuffix(), "CSV");
            dialog->setDirectory(QString::fromStdString(folder.path().string()));
            auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
            ASSERT_NE(name, nullptr);
            name->setText("NEWLOG");
            static_cast<QDialog*>(dialog)->accept();
        },
        [&] {
            got = prompter.chooseFileToWrite("Open Logging File", "All Files (*.CSV)|*.CSV|",
                                             "*.CSV");
        });
    ASSERT_TRUE(got.has_value());
    EXPECT_EQ(std::filesystem::path(*got).filename(), "NEWLOG.CSV");
    EXPECT_FALSE(std::filesystem::exists(*got));  // only named; logging makes it
}

TEST(QtPrompter, ACancelledFileDialogGivesNothing) {
    QtPrompter prompter;
    std::optional<std::string> got = std::string("x");
    test::AnswerModal([&](QWidget* modal) { qobject_cast<QFileDialog*>(modal)->reject(); },
                      [&] {
                          got = prompter.chooseFile("Open SetUp File", "All Files (*.SUF)|*.SUF|",
                                                    "", false);
                      });
    EXPECT_EQ(got, std::nullopt);
}

}  // namespace kova::app
