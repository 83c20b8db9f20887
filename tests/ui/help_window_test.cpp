#include "app/help_window.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>

#include "kova_version.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova::app {

TEST(HelpWindow, TheDocumentShipsWithTheProgramAndOpensAtTheIntroduction) {
    HelpWindow w;
    w.showTopic("Introduction");
    EXPECT_EQ(w.windowTitle(), "KOVA Help");
    const QString text = w.browser()->toPlainText();
    EXPECT_TRUE(text.contains("Introduction"));
    EXPECT_GT(text.size(), 2000);  // a real document, not a placeholder
    EXPECT_EQ(w.browser()->source().fragment(), "Introduction");
}

TEST(HelpWindow, TheHelpIsTheInstalledFileAndNamesTheVersion) {
    HelpWindow w;
    w.showTopic("Contents");
    // Beside the program's bin folder, as installed: share/kova/help/kova.html.
    EXPECT_TRUE(w.browser()->source().isLocalFile());
    EXPECT_TRUE(w.browser()->source().path().endsWith("/share/kova/help/kova.html"))
        << w.browser()->source().toString().toStdString();
    EXPECT_TRUE(w.browser()->toPlainText().contains(QString("version %1.").arg(kVersion)));
}

TEST(HelpWindow, AMissingHelpFileIsNamed) {
    test::TempFolder dir;
    HelpWindow w(nullptr, dir / "kova.html");
    w.showTopic("Introduction");
    const QString text = w.browser()->toPlainText();
    EXPECT_TRUE(text.contains(QString::fromStdString((dir / "kova.html").string())))
        << text.toStdString();
    EXPECT_TRUE(text.contains("is missing")) << text.toStdString();
}

TEST(HelpWindow, EveryWindowOfTheProgramHasATopic) {
    HelpWindow w;
    w.showTopic("Contents");
    const QString html = w.browser()->document()->toHtml();
    for (const char* topic :
         {"Introduction", "FirstSession", "MainWindow", "FileMenu", "Periods", "DaqType",
          "AnalogTag", "PrinterPort", "Calibration", "Tags", "Screens", "Trends", "Logging",
          "Alarms", "ControlLanguage", "Readings", "MinMax", "History", "Errors"}) {
        EXPECT_TRUE(html.contains(QString("name=\"%1\"").arg(topic))) << topic;
    }
}

TEST(HelpWindow, TheTestModuleSessionIsDescribed) {
    HelpWindow w;
    w.showTopic("FirstSession");
    EXPECT_TRUE(w.browser()->toPlainText().contains("TEST"));
    EXPECT_TRUE(w.browser()->toPlainText().contains("Poll I/O"));
}

TEST(HelpWindow, ExitClosesIt) {
    HelpWindow w;
    w.show();
    test::child<QPushButton>(&w, "CmdExit")->click();
    EXPECT_FALSE(w.isVisible());
}

}  // namespace kova::app
