// Every window fits the screen it opens on: each one opened from the main window as its menu
// item does, and every button of it inside the screen, where a user can reach it. CTest runs
// this on a 1366 x 768 screen at a scale factor of 2 and on a 1024 x 768 screen at 100 %
// (tests/ui/screens), and with the rest of the widget tests on the default offscreen screen.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <sstream>
#include <string>

#include "app/main_window.h"
#include "support/test_support.h"
#include "tags/daq_profile.h"
#include "ui/ui_support.h"

namespace kova::app {

namespace {

std::string text(const QRect& r) {
    std::ostringstream s;
    s << r.width() << "x" << r.height() << "+" << r.x() << "+" << r.y();
    return s.str();
}

// The scroll area a widget sits in, if any: what lies in it is reached by scrolling.
QScrollArea* scrolledIn(QWidget* w, QWidget* window) {
    for (QWidget* p = w->parentWidget(); p && p != window; p = p->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(p)) return area;
    return nullptr;
}

QRect onScreen(QWidget* w) {
    return QRect(w->mapToGlobal(QPoint(0, 0)), w->size());
}

}  // namespace

TEST(WindowFit, EveryWindowAndEveryButtonLiesInsideTheScreen) {
    test::TempFolder folder;
    Station st;
    st.workingFolder = folder.path();
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    MainWindow main(st, &prompt, &errors);
    BuildIOList(st.profile, kDaqQrt105);  // a module with analog inputs: Calibration opens
    main.show();
    app::CenterOnScreen(&main);
    for (int k = 0; k <= static_cast<int>(WindowKind::Help); ++k)
        main.openWindow(static_cast<WindowKind>(k));
    QApplication::processEvents();

    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    RecordProperty("screen", text(screen->geometry()));
    int windows = 0;
    int buttons = 0;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (!top->isVisible()) continue;
        ++windows;
        const std::string title =
            top->windowTitle().toStdString() + " (" + top->objectName().toStdString() + ")";
        EXPECT_TRUE(area.contains(top->frameGeometry()))
            << "\"" << title << "\" is " << text(top->frameGeometry()) << " on a screen of "
            << text(area) << " (it can shrink to "
            << text(QRect(QPoint(), top->minimumSizeHint().expandedTo(top->minimumSize()))) << ")";
        for (QAbstractButton* b : top->findChildren<QAbstractButton*>()) {
            // The other windows are the main window's children, but not its part.
            if (b->window() != top || !b->isVisibleTo(top)) continue;
            ++buttons;
            // A button in a scroll area is reached by scrolling: its area must be on screen.
            QWidget* shown = b;
            if (QScrollArea* scroll = scrolledIn(b, top)) shown = scroll->viewport();
            EXPECT_TRUE(area.contains(onScreen(shown)))
                << "\"" << title << "\": " << b->objectName().toStdString() << " \""
                << b->text().toStdString() << "\" at " << text(onScreen(shown))
                << " is off a screen of " << text(area);
        }
    }
    EXPECT_EQ(windows, 18);  // the main window and the seventeen its menus open (Help included)
    EXPECT_GT(buttons, 100);
}

}  // namespace kova::app
