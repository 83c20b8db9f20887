#include "app/help_window.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace kova::app {

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), browser_(new QTextBrowser(this)) {
    setObjectName("HelpWindow");
    setWindowTitle(kHelpWindowTitle);
    browser_->setObjectName("HelpText");
    browser_->setOpenExternalLinks(false);
    auto* contents = new QPushButton("&Contents", this);
    contents->setObjectName("CmdContents");
    auto* back = new QPushButton("&Back", this);
    back->setObjectName("CmdBack");
    auto* exit = new QPushButton("E&xit", this);
    exit->setObjectName("CmdExit");
    connect(contents, &QPushButton::clicked, this, [this] { showTopic("Contents"); });
    connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(exit, &QPushButton::clicked, this, &QWidget::close);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(contents);
    buttons->addWidget(back);
    buttons->addStretch();
    buttons->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(browser_);
    resize(760, 600);
}

void HelpWindow::showTopic(const QString& topic) {
    QUrl url(kHelpDocument);
    url.setFragment(topic);
    browser_->setSource(url);
    browser_->scrollToAnchor(topic);
}

}  // namespace kova::app
