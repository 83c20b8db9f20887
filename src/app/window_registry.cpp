#include "app/window_registry.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace kova::app {

namespace {
QScreen* screenOf(QWidget* window) {
    return window->screen() ? window->screen() : QGuiApplication::primaryScreen();
}

// What the window system's frame adds to a window; before the window is shown, its parent's
// frame says how much that is.
QSize frameExtra(QWidget* window) {
    QWidget* framed = window->isVisible() ? window : window->parentWidget();
    if (!framed || !framed->window()->isVisible()) return {0, 0};
    return framed->window()->frameSize() - framed->window()->size();
}
}  // namespace

void FitOnScreen(QWidget* window) {
    QScreen* screen = screenOf(window);
    if (!screen) return;
    const QSize room =
        (screen->availableGeometry().size() - frameExtra(window)).expandedTo(window->minimumSize());
    if (window->width() > room.width() || window->height() > room.height())
        window->resize(window->size().boundedTo(room));
}

void CenterOnScreen(QWidget* window) {
    QScreen* screen = screenOf(window);
    if (!screen) return;
    const QRect area = screen->availableGeometry();
    const QSize size = window->size() + frameExtra(window);
    // A window larger than the screen keeps its top left corner on it, where its title bar is.
    window->move(area.x() + std::max(0, (area.width() - size.width()) / 2),
                 area.y() + std::max(0, (area.height() - size.height()) / 2));
}

QWidget* WindowRegistry::open(const QString& kind, const Factory& make) {
    if (QWidget* w = find(kind)) {
        if (w->isMinimized()) w->showNormal();
        w->show();
        w->raise();
        w->activateWindow();
        return w;
    }
    QWidget* w = make();
    if (!w) return nullptr;
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowModality(Qt::NonModal);
    // A window that chose its own size keeps it; the others take their layout's size.
    // (Not adjustSize(): it stops at two thirds of the screen, which would make a window
    // with a scrolling part scroll on a screen that has room for all of it.)
    if (!w->testAttribute(Qt::WA_Resized))
        w->resize(w->sizeHint().expandedTo(w->minimumSizeHint()).expandedTo(w->minimumSize()));
    FitOnScreen(w);
    CenterOnScreen(w);
    w->show();
    w->raise();
    w->activateWindow();
    windows_.insert(kind, w);
    return w;
}

QWidget* WindowRegistry::find(const QString& kind) const {
    const auto it = windows_.constFind(kind);
    if (it == windows_.constEnd() || it.value().isNull()) return nullptr;
    return it.value().data();
}

int WindowRegistry::openCount() const {
    int n = 0;
    for (const auto& w : windows_)
        if (!w.isNull()) ++n;
    return n;
}

void WindowRegistry::closeAll() {
    for (auto& w : windows_)
        if (!w.isNull()) w->close();
    windows_.clear();
}

}  // namespace kova::app
