#pragma once
// The open windows, one of each kind: opening a window that is already open brings it to
// the front instead of making a second copy. Every window is modeless and centred on the
// screen when it opens.
#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

namespace kova::app {

// Shrinks a window that is larger than its screen's free area to fit it (never below the
// window's minimum size): on a small screen or at a large scale factor every window fits.
void FitOnScreen(QWidget* window);

// Centres a window on its screen: ((screen width - width) / 2, (screen height - height) / 2),
// its top left corner kept on the screen.
void CenterOnScreen(QWidget* window);

class WindowRegistry {
  public:
    using Factory = std::function<QWidget*()>;

    // The open window of this kind raised, or a new one from make() shown modeless and
    // centred (make() may return nullptr: nothing opens).
    QWidget* open(const QString& kind, const Factory& make);
    // The open window of this kind, or nullptr.
    QWidget* find(const QString& kind) const;
    int openCount() const;
    // Closes every window opened through the registry.
    void closeAll();

  private:
    QHash<QString, QPointer<QWidget>> windows_;
};

}  // namespace kova::app
