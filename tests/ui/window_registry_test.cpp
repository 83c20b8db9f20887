#include "app/window_registry.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>

namespace kova::app {

TEST(WindowRegistry, OpensOneWindowOfAKindCentredAndModeless) {
    WindowRegistry reg;
    int made = 0;
    auto make = [&] {
        ++made;
        auto* w = new QWidget(nullptr, Qt::Window);
        w->resize(300, 200);
        return w;
    };
    QWidget* w = reg.open("Periods", make);
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(w->isModal());
    EXPECT_TRUE(w->testAttribute(Qt::WA_DeleteOnClose));
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(w->x(), area.x() + (area.width() - w->width()) / 2);
    EXPECT_EQ(w->y(), area.y() + (area.height() - w->height()) / 2);
    EXPECT_EQ(reg.open("Periods", make), w);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(reg.openCount(), 1);
    reg.closeAll();
    EXPECT_FALSE(w->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(reg.find("Periods"), nullptr);
}

TEST(WindowRegistry, AHiddenWindowIsShownAgainNotMadeAgain) {
    WindowRegistry reg;
    int made = 0;
    QWidget* w = reg.open("X", [&] {
        ++made;
        return new QWidget(nullptr, Qt::Window);
    });
    w->setAttribute(Qt::WA_DeleteOnClose, false);
    w->hide();
    EXPECT_EQ(reg.open("X", [&] { return new QWidget(nullptr, Qt::Window); }), w);
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(made, 1);
    delete w;
    EXPECT_EQ(reg.openCount(), 0);
}

TEST(WindowRegistry, AFactoryThatMakesNothingOpensNothing) {
    WindowRegistry reg;
    EXPECT_EQ(reg.open("Later", [] { return nullptr; }), nullptr);
    EXPECT_EQ(reg.openCount(), 0);
}

}  // namespace kova::app
