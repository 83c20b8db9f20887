#include "app/qt_printer.h"

#include <QPainter>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

#include "app/qt_prompter.h"
#include "core/forms/fixed_pitch_font.h"

namespace kova::app {

bool QtPrinter::choosePrinter(QPrinter& printer, QWidget* over) {
    if (!outputFile_.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(outputFile_);
        return true;
    }
    QWidget* owner = over ? over : owner_ ? owner_() : nullptr;
    if (!owner) owner = parent_;
    QPrintDialog dialog(&printer, owner);
    dialog.setObjectName("KovaPrintDialog");
    return ExecOverOwner(dialog, owner) == QDialog::Accepted;
}

bool QtPrinter::printText(const std::string& documentName, const std::string& text) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(QString::fromStdString(documentName));
    if (!choosePrinter(printer, nullptr)) return false;
    QTextDocument doc;
    doc.setDefaultFont(forms::FixedPitchFont(10));
    doc.setPlainText(QString::fromStdString(text));
    doc.print(&printer);
    return true;
}

bool QtPrinter::printWidget(QWidget* window, const QString& documentName) {
    if (!window) return false;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(documentName);
    if (!choosePrinter(printer, window)) return false;
    const QPixmap image = window->grab();
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const QRect page = painter.viewport();
    QSize size = image.size();
    size.scale(page.size(), Qt::KeepAspectRatio);
    painter.drawPixmap(QRect(page.topLeft(), size), image);
    painter.end();
    return true;
}

}  // namespace kova::app
