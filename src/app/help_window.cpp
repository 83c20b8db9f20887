#include "app/help_window.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>
#include <filesystem>
#include <system_error>

#include "app/program_data.h"

namespace kova::app {

HelpWindow::HelpWindow(QWidget* parent, std::filesystem::path document)
    : QWidget(parent, Qt::Window),
      browser_(new QTextBrowser(this)),
      document_(document.empty() ? HelpDocumentPath() : std::move(document)) {
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
    std::error_code ec;
    if (!std::filesystem::is_regular_file(document_, ec)) {
        browser_->setHtml(
            QString("<p>The help file %1 is missing: install KOVA again to get it back.</p>")
                .arg(QString::fromStdString(document_.string()).toHtmlEscaped()));
        return;
    }
    QUrl url = QUrl::fromLocalFile(QString::fromStdString(document_.string()));
    url.setFragment(topic);
    browser_->setSource(url);
    browser_->scrollToAnchor(topic);
}

}  // namespace kova::app
