#pragma once
// Printing on Qt: a text listing or a window's image, on the printer chosen in the print
// dialog, or straight into a PDF file when one is set (no dialog).
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "platform/printer.h"

class QPrinter;

namespace kova::app {

class QtPrinter final : public Printer {
  public:
    explicit QtPrinter(QWidget* dialogParent = nullptr) : parent_(dialogParent) {}
    // The print dialog opens over the window this names at the time of printing (the window
    // whose button asked), instead of a fixed one.
    void setDialogOwner(std::function<QWidget*()> owner) { owner_ = std::move(owner); }
    // Print into this PDF file instead of asking for a printer ("" asks again).
    void setOutputFile(const QString& pdfPath) { outputFile_ = pdfPath; }

    bool printText(const std::string& documentName, const std::string& text) override;
    // The window's image, scaled to fit the page.
    bool printWidget(QWidget* window, const QString& documentName);

  private:
    bool choosePrinter(QPrinter& printer, QWidget* over);

    QPointer<QWidget> parent_;
    std::function<QWidget*()> owner_;
    QString outputFile_;
};

}  // namespace kova::app
