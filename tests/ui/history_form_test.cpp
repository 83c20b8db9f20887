#include "displays/forms/history_form.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <QAction>
#include <QCategoryAxis>
#include <QChart>
#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGroupBox>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <filesystem>
#include <sstream>

#include "app/main_window.h"
#include "app/qt_printer.h"
#include "displays/forms/chart_view.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {

// A log of n rows: period r, time, date, then A = r, B = 2r, C, D, E.
std::string logFile(int n) {
    std::string s = "LOG PERIOD,TIME,DATE,A,B,C,D,E\r\n";
    for (int r = 1; r <= n; ++r) {
        char time[32];
        std::snprintf(time, sizeof time, "10:%02d:%02d.000", (r / 60) % 60, r % 60);
        s += std::to_string(r) + ".000," + time + ",15/11/26, " + std::to_string(r) + " , " +
             std::to_string(2 * r) + " , 3 , 4 , 5 \r\n";
    }
    return s;
}

struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::CountingBeeper beeper;
    test::TempFolder folder;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    int printed = 0;
    std::unique_ptr<HistoryWindow> w;
    explicit Rig(HistoryWindow::PrintWindow print = {}) {
        st.platform.prompter = &prompt;
        st.platform.beeper = &beeper;
        if (!print) print = [this](QWidget*) { return ++printed > 0; };
        w = std::make_unique<HistoryWindow>(st, report, print);
        w->show();
    }
    QPushButton* button(const char* n) { return test::child<QPushButton>(w.get(), n); }
    QRadioButton* opt(const char* n) { return test::child<QRadioButton>(w.get(), n); }
    QListWidget* list() { return test::child<QListWidget>(w.get(), "List1"); }
    QLabel* label(const char* n) { return test::child<QLabel>(w.get(), n); }
    std::string path(const std::string& name, const std::string& bytes) {
        test::WriteFileBytes(folder / name, bytes);
        return (folder / name).string();
    }
    // The file is read away from the window's thread: waits until what it found is shown.
    void settle() {
        QElapsedTimer waited;
        waited.start();
        while (w->model().busy() && waited.elapsed() < 5000) QTest::qWait(2);
        EXPECT_FALSE(w->model().busy()) << "the file was still being read after 5 s";
    }
    void choose(const std::string& p) {
        prompt.fileAnswers.push_back(p);
        click("CmdSelectFile");
    }
    void click(const char* name) {
        button(name)->click();
        settle();
    }
    // Toggles list row r from the keyboard, as a user does with the space bar.
    void toggle(int r) {
        list()->setFocus();
        list()->setCurrentRow(r, QItemSelectionModel::NoUpdate);
        QTest::keyClick(list(), Qt::Key_Space);
        settle();
    }
    QLineSeries* curve(int i) { return w->chart()->series(i); }
    QStringList axisLabels() {
        QStringList t;
        for (const QString& l : w->chart()->xLabelAxis()->categoriesLabels())
            t << QString(l).remove(QChar(0x200B)).trimmed();
        return t;
    }
};

}  // namespace

TEST(HistoryWindow, CaptionsAndNamesAreThoseOfTheWindow) {
    Rig r;
    EXPECT_EQ(r.w->windowTitle(), "Chart History");
    EXPECT_EQ(r.w->objectName(), "ViewHist");
    EXPECT_EQ(r.button("CmdSelectFile")->text(), "&Select File");
    EXPECT_EQ(r.button("CmdUp")->text(), "&Forward");
    EXPECT_EQ(r.button("CmdDown")->text(), "&Back");
    EXPECT_EQ(r.button("CmdPrint")->text(), "&Print");
    EXPECT_EQ(r.button("CmdExit")->text(), "E&xit");
    EXPECT_EQ(r.opt("OptTime")->text(), "Time");
    EXPECT_EQ(r.opt("OptPeriod")->text(), "Period");
    auto* frame = qobject_cast<QGroupBox*>(r.opt("OptTime")->parentWidget());
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->title(), "X-Axis");
    EXPECT_EQ(r.opt("OptPeriod")->parentWidget(), frame);
    EXPECT_EQ(r.list()->selectionMode(), QAbstractItemView::MultiSelection);
    for (int p = 1; p <= 4; ++p)
        EXPECT_NE(r.label(QString("Lbl1_%1").arg(p).toLatin1().constData()), nullptr);
    EXPECT_NE(r.label("LblFile"), nullptr);
    EXPECT_NE(test::child<ChartView>(r.w.get(), "DynaPlot1"), nullptr);
}

TEST(HistoryWindow, LongColumnNamesDoNotWidenTheWindow) {
    Rig r;
    const QSize before = r.w->minimumSizeHint();
    r.choose(r.path("LONG.CSV", "LOG PERIOD," + std::string(400, 'W') + "\r\n1, 2 \r\n"));
    r.toggle(1);
    EXPECT_EQ(r.label("Lbl1_1")->text().size(), 400);
    EXPECT_EQ(r.w->minimumSizeHint().width(), before.width());
    EXPECT_LE(before.width(), 800);
    EXPECT_LE(before.height(), 600);
}

TEST(HistoryWindow, OpensWithPeriodChosen) {
    Rig r;
    EXPECT_TRUE(r.opt("OptPeriod")->isChecked());
    EXPECT_FALSE(r.opt("OptTime")->isChecked());
    EXPECT_EQ(r.list()->count(), 0);
}

TEST(HistoryWindow, EveryControlCarriesTheNameAUserReads) {
    Rig r;
    EXPECT_EQ(r.list()->accessibleName(), "Columns");
    bool hasBuddyLabel = false;
    for (QLabel* l : r.w->findChildren<QLabel*>())
        if (l->buddy() == r.list() && l->text() == "&Columns") hasBuddyLabel = true;
    EXPECT_TRUE(hasBuddyLabel);
    EXPECT_EQ(r.label("LblFile")->accessibleName(), "File");
    for (int p = 1; p <= 4; ++p)
        EXPECT_EQ(r.label(QString("Lbl1_%1").arg(p).toLatin1().constData())->accessibleName(),
                  QString("Pen %1").arg(p));
    EXPECT_EQ(r.w->chart()->focusPolicy(), Qt::NoFocus);
}

TEST(HistoryWindow, TabFollowsTheLayout) {
    Rig r;
    QApplication::setActiveWindow(r.w.get());
    r.button("CmdSelectFile")->setFocus();
    auto tab = [] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        return QApplication::focusWidget();
    };
    EXPECT_EQ(tab(), r.list());
    // The X-axis frame is one stop; the arrow keys move between its two options.
    QWidget* axis = tab();
    EXPECT_TRUE(axis == r.opt("OptTime") || axis == r.opt("OptPeriod"));
    EXPECT_EQ(tab(), r.button("CmdUp"));
    EXPECT_EQ(tab(), r.button("CmdDown"));
    EXPECT_EQ(tab(), r.button("CmdPrint"));
    EXPECT_EQ(tab(), r.button("CmdExit"));
    EXPECT_EQ(tab(), r.button("CmdSelectFile"));
}

TEST(HistoryWindow, TheArrowKeysChooseTheXAxis) {
    Rig r;
    QApplication::setActiveWindow(r.w.get());
    r.opt("OptPeriod")->setFocus();
    QTest::keyClick(r.opt("OptPeriod"), Qt::Key_Up);
    EXPECT_TRUE(r.opt("OptTime")->isChecked());
    EXPECT_TRUE(r.w->model().timeAxis());
    QTest::keyClick(r.opt("OptTime"), Qt::Key_Down);
    EXPECT_TRUE(r.opt("OptPeriod")->isChecked());
    EXPECT_FALSE(r.w->model().timeAxis());
}

TEST(HistoryWindow, ChoosingAFileShowsItsNameAndColumns) {
    Rig r;
    const std::string p = r.path("PLANT.CSV", logFile(10));
    r.choose(p);
    ASSERT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.fileDialogs[0],
              (test::Shown{"Open SetUp File", "All Files (*.CSV)|*.CSV|"}));
    EXPECT_EQ(r.label("LblFile")->text().toStdString(), p);
    ASSERT_EQ(r.list()->count(), 6);
    EXPECT_EQ(r.list()->item(0)->text(), "LOG PERIOD");
    EXPECT_EQ(r.list()->item(1)->text(), "A");
    EXPECT_EQ(r.list()->item(5)->text(), "E");
}

TEST(HistoryWindow, ACancelledOrRefusedChoiceLeavesTheListAsItWas) {
    Rig r;
    const std::string p = r.path("PLANT.CSV", logFile(10));
    r.choose(p);
    r.click("CmdSelectFile");  // cancelled
    EXPECT_EQ(r.list()->count(), 6);
    const std::string logging = r.path("NOW.CSV", "LOG PERIOD,X\r\n");
    r.st.logging.LogFileName = logging;
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.choose(logging);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Cannot View Current Logging File " + logging);
    EXPECT_EQ(r.list()->count(), 6);
    EXPECT_EQ(r.label("LblFile")->text().toStdString(), p);
}

TEST(HistoryWindow, AFileThatCannotBeReadIsReportedAndTheWindowStays) {
    Rig r;
    r.choose((r.folder / "GONE.CSV").string());
    EXPECT_EQ(r.report.reportedCount(), 1);
    EXPECT_NE(r.errors.str().find("GONE.CSV"), std::string::npos);
    EXPECT_EQ(r.list()->count(), 0);
    EXPECT_TRUE(r.w->isVisible());
}

TEST(HistoryWindow, AFifoOrAFolderIsRefusedByNameAndTheWindowStays) {
    Rig r;
    const std::string good = r.path("PLANT.CSV", logFile(10));
    r.choose(good);
    ASSERT_EQ(::mkfifo((r.folder / "PIPE.CSV").c_str(), 0600), 0);
    r.choose((r.folder / "PIPE.CSV").string());
    std::filesystem::create_directory(r.folder / "DIR.CSV");
    r.choose((r.folder / "DIR.CSV").string());
    EXPECT_EQ(r.report.reportedCount(), 2);
    EXPECT_NE(r.errors.str().find("PIPE.CSV cannot be read: it is a FIFO (named pipe), not a log "
                                  "file"),
              std::string::npos)
        << r.errors.str();
    EXPECT_NE(r.errors.str().find("DIR.CSV cannot be read: it is a folder, not a log file"),
              std::string::npos);
    EXPECT_EQ(r.label("LblFile")->text().toStdString(), good);
    EXPECT_EQ(r.list()->count(), 6);
    EXPECT_TRUE(r.w->isVisible());
}

TEST(HistoryWindow, SelectingColumnsFromTheKeyboardChartsThemOnPens) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(300)));
    r.toggle(2);  // B
    r.toggle(1);  // A
    EXPECT_EQ(r.label("Lbl1_1")->text(), "A");
    EXPECT_EQ(r.label("Lbl1_2")->text(), "B");
    EXPECT_EQ(r.label("Lbl1_3")->text(), "");
    ASSERT_NE(r.curve(0), nullptr);
    ASSERT_EQ(r.curve(0)->count(), 200);
    EXPECT_EQ(r.curve(0)->at(199), QPointF(199, 200));
    EXPECT_EQ(r.curve(1)->at(0), QPointF(0, 2));
    EXPECT_EQ(r.curve(0)->name(), "A");
    EXPECT_EQ(r.axisLabels(), (QStringList{"1.000", "26.000", "51.000", "76.000", "101.000",
                                           "126.000", "151.000", "176.000"}));
    // A pen's label wears its curve's colour; unused pens stay out of the legend.
    EXPECT_EQ(r.label("Lbl1_2")->palette().color(QPalette::WindowText), r.curve(1)->pen().color());
    QApplication::processEvents();  // the legend lays its markers out
    auto* legend = r.w->chart()->chart()->legend();
    EXPECT_TRUE(legend->markers(r.curve(1)).at(0)->isVisible());
    EXPECT_FALSE(legend->markers(r.curve(2)).at(0)->isVisible());
    EXPECT_FALSE(legend->markers(r.curve(3)).at(0)->isVisible());
}

TEST(HistoryWindow, EveryXLabelIsDrawnWholeAtTheWindowsSmallestSize) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(300)));
    r.toggle(1);
    r.w->resize(r.w->minimumSizeHint());
    for (const char* axis : {"OptTime", "OptPeriod"}) {
        r.opt(axis)->click();
        QApplication::processEvents();
        const QStringList expected = r.axisLabels();
        ASSERT_EQ(expected.size(), 8) << axis;
        // The labels as the chart draws them: visible, not cut short, inside the chart and
        // clear of each other.
        std::vector<QRectF> drawn;
        const QRectF inside = r.w->chart()->chart()->geometry();
        for (const QString& text : expected) {
            const QGraphicsTextItem* found = nullptr;
            for (QGraphicsItem* item : r.w->chart()->scene()->items()) {
                auto* t = dynamic_cast<QGraphicsTextItem*>(item);
                if (t && t->isVisible() && t->toPlainText().remove(QChar(0x200B)) == text)
                    found = t;
            }
            ASSERT_NE(found, nullptr) << axis << " label " << text.toStdString() << " not drawn";
            const QRectF box = found->sceneBoundingRect();
            EXPECT_TRUE(inside.contains(box)) << axis << " " << text.toStdString();
            for (const QRectF& other : drawn)
                EXPECT_FALSE(box.intersects(other)) << axis << " " << text.toStdString();
            drawn.push_back(box);
        }
    }
    // The first label stands at X = 0, the left end of the axis.
    QCategoryAxis* axis = r.w->chart()->xLabelAxis();
    EXPECT_EQ(axis->endValue(axis->categoriesLabels()[0]), 0);
}

TEST(HistoryWindow, AFifthColumnIsNotSelected) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(20)));
    for (int row : {1, 2, 3, 4}) r.toggle(row);
    r.toggle(5);
    EXPECT_FALSE(r.list()->item(5)->isSelected());
    EXPECT_EQ(r.list()->selectedItems().size(), 4);
    EXPECT_EQ(r.beeper.count, 1);
    EXPECT_EQ(r.label("Lbl1_4")->text(), "D");
    r.toggle(1);  // A off: now E can go on
    r.toggle(5);
    EXPECT_TRUE(r.list()->item(5)->isSelected());
    EXPECT_EQ(r.label("Lbl1_1")->text(), "B");
    EXPECT_EQ(r.label("Lbl1_4")->text(), "E");
}

TEST(HistoryWindow, ForwardStepsThroughTheFileUntilNoMorePoints) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(250)));
    r.toggle(1);
    r.click("CmdUp");
    EXPECT_EQ(r.curve(0)->at(0).y(), 201);
    EXPECT_EQ(r.curve(0)->at(49).y(), 250);
    EXPECT_EQ(r.curve(0)->count(), 50);  // the chart does not fall to 0 after the last row
    ASSERT_EQ(r.axisLabels().size(), 8);
    EXPECT_EQ(r.axisLabels()[1], "226.000");
    EXPECT_EQ(r.axisLabels()[2], "");  // row 251 is beyond the file
    const auto before = r.curve(0)->points();
    r.click("CmdUp");
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"No More Points To Plot", "KOVA"}));
    EXPECT_EQ(r.curve(0)->points(), before);
}

TEST(HistoryWindow, BackStaysIdleAfterASelection) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(450)));
    r.toggle(1);
    r.click("CmdUp");
    r.click("CmdDown");
    EXPECT_EQ(r.curve(0)->at(0).y(), 201);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(HistoryWindow, TheTimeChoiceLabelsTheAxisWithTimes) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(300)));
    r.toggle(1);
    r.opt("OptTime")->click();
    EXPECT_EQ(r.axisLabels()[0], "10:00:01.000");
    EXPECT_EQ(r.axisLabels()[1], "10:00:26.000");
    r.opt("OptPeriod")->click();
    EXPECT_EQ(r.axisLabels()[1], "26.000");
}

TEST(HistoryWindow, PrintHandsTheWindowToThePrinter) {
    test::TempFolder out;
    app::QtPrinter printer;
    const auto pdf = out / "history.pdf";
    printer.setOutputFile(QString::fromStdString(pdf.string()));
    QWidget* given = nullptr;
    Rig r([&](QWidget* w) {
        given = w;
        return printer.printWidget(w, "Chart History");
    });
    r.choose(r.path("PLANT.CSV", logFile(50)));
    r.toggle(1);
    r.button("CmdPrint")->click();
    EXPECT_EQ(given, r.w.get());
    EXPECT_EQ(test::ReadFileBytes(pdf).substr(0, 5), "%PDF-");
}

TEST(HistoryWindow, ExitClosesTheFileAndTheWindow) {
    Rig r;
    r.choose(r.path("PLANT.CSV", logFile(50)));
    r.toggle(1);
    EXPECT_TRUE(r.w->model().fileOpen());
    r.button("CmdExit")->click();
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_FALSE(r.w->model().fileOpen());
}

TEST(HistoryWindow, OpensFromTheViewMenuOnce) {
    test::TempFolder folder;
    Station st;
    st.workingFolder = folder.path();
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    app::MainWindow main(st, &prompt, &errors);
    QAction* item = test::child<QAction>(&main, "History");
    ASSERT_NE(item, nullptr);
    item->trigger();
    QWidget* w = main.windows().find("History");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Chart History");
    EXPECT_FALSE(w->isModal());
    item->trigger();
    EXPECT_EQ(main.windows().find("History"), w);
    EXPECT_EQ(main.findChildren<HistoryWindow*>().size(), 1);
}

}  // namespace kova
