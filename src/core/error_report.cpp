#include "core/error_report.h"

#include "core/station.h"

namespace kova {

std::string FaultText(const std::exception& e) {
    const std::string what = e.what();
    return what.empty() ? std::string("Run-time error") : what;
}

void ErrorReport::report(const std::exception& e) {
    show(FaultText(e));
}

void ErrorReport::tickFailed(const std::exception& e) {
    const std::string text = FaultText(e);
    if (text == repeating_) return;
    // Remembered before the message box opens: ticks that fail the same way while it is
    // up stay quiet.
    repeating_ = text;
    show(text);
}

void ErrorReport::show(const std::string& what) {
    ++reported_;
    log_ << "kova: run-time error: " << what << std::endl;
    platform_.status->setStatusText("Run-time error: " + what);
    platform_.prompter->message("Run-time error: " + what, kAppTitle);
}

}  // namespace kova
