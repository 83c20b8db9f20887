#include "app/kova_application.h"

#include <iostream>

#include "core/error_report.h"

namespace kova::app {

KovaApplication::KovaApplication(int& argc, char** argv) : QApplication(argc, argv) {
    // No display name: it would be appended to every window's caption.
    setApplicationName("KOVA");
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
