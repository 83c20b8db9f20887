#include "app/qt_printer.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "support/test_support.h"

namespace kova::app {

TEST(QtPrinter, ATextListingPrintsIntoTheChosenFile) {
    test::TempFolder folder;
    QtPrinter printer;
    const auto pdf = folder / "listing.pdf";
    printer.setOutputFile(QString::fromStdString(pdf.string()));
    EXPECT_TRUE(printer.printText("Tag Listing", "1 TANK AI-1\n2 PUMP DO-1\n"));
    const std::string bytes = test::ReadFileBytes(pdf);
    ASSERT_GT(bytes.size(), 500u);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
}

TEST(QtPrinter, AWindowsImagePrintsIntoTheChosenFile) {
    test::TempFolder folder;
    QtPrinter printer;
    const auto pdf = folder / "window.pdf";
    printer.setOutputFile(QString::fromStdString(pdf.string()));
    QLabel window("History");
    window.resize(300, 200);
    EXPECT_TRUE(printer.printWidget(&window, "History"));
    EXPECT_EQ(test::ReadFileBytes(pdf).substr(0, 5), "%PDF-");
    EXPECT_FALSE(printer.printWidget(nullptr, "nothing"));
}

}  // namespace kova::app
