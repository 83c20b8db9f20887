#include "app/window_registry.h"

#include <QGuiApplication>
#include <QScreen>

namespace kova::app {

void CenterOnScreen(QWidget* window) {
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect area = screen->availableGeometry();
    const QSize size =
        window->frameSize().isValid() && window->isVisible() ? window->frameSize() : window->size();
    window->move(area.x() + (area.width() - size.width()) / 2,
                 area.y() + (area.height() - size.height()) / 2);
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
    if (!w->testAttribute(Qt::WA_Resized)) w->adjustSize();
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
