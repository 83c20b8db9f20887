#pragma once
// The help viewer: the program's help document, opened at a topic.
#include <QWidget>
#include <filesystem>

class QTextBrowser;

namespace kova::app {

inline constexpr const char* kHelpWindowTitle = "KOVA Help";

class HelpWindow : public QWidget {
    Q_OBJECT
  public:
    // document: the installed help (share/kova/help/kova.html) unless a test gives another.
    explicit HelpWindow(QWidget* parent = nullptr, std::filesystem::path document = {});
    // Shows the topic (an anchor of the document) at the top of the view; a help file that
    // is missing is named in the view instead.
    void showTopic(const QString& topic);
    QTextBrowser* browser() const { return browser_; }

  private:
    QTextBrowser* browser_;
    std::filesystem::path document_;
};

}  // namespace kova::app
