#include "app/kova_application.h"

#include <QIcon>
#include <QLocale>
#include <clocale>
#include <iostream>
#include <locale>

#include "core/error_report.h"
#include "core/forms/combo_box_accessible.h"
#include "kova_version.h"

namespace kova::app {

KovaApplication::KovaApplication(int& argc, char** argv) : QApplication(argc, argv) {
    // No display name: it would be appended to every window's caption.
    setApplicationName("KOVA");
    setApplicationVersion(kVersion);
    // Ties the windows to the installed desktop entry and its icon.
    setDesktopFileName(kAppId);
    setWindowIcon(QIcon::fromTheme(kAppId));
    UseFixedNumberFormat();
    forms::InstallComboBoxAccessible();
}

void UseFixedNumberFormat() {
    // QApplication has just set the C library's locale from the environment; numbers in
    // files, messages and boxes must read and write "." whatever the user's locale.
    std::setlocale(LC_NUMERIC, "C");
    std::locale::global(std::locale::classic());
    QLocale::setDefault(QLocale::c());
}

bool KovaApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& e) {
        if (report_) {
            report_->report(e);
        } else {
            std::cerr << "kova: run-time error: " << FaultText(e) << std::endl;
        }
    }
    return false;
}

}  // namespace kova::app
