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

// Centres a window on its screen: ((screen width - width) / 2, (screen height - height) / 2).
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
