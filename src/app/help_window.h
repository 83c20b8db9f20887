#pragma once
// The help viewer: the program's help document, opened at a topic.
#include <QWidget>

class QTextBrowser;

namespace kova::app {

inline constexpr const char* kHelpWindowTitle = "KOVA Help";
// The help document, shipped inside the program.
inline constexpr const char* kHelpDocument = "qrc:/help/kova.html";

class HelpWindow : public QWidget {
    Q_OBJECT
  public:
    explicit HelpWindow(QWidget* parent = nullptr);
    // Shows the topic (an anchor of the document) at the top of the view.
    void showTopic(const QString& topic);
    QTextBrowser* browser() const { return browser_; }

  private:
    QTextBrowser* browser_;
};

}  // namespace kova::app
