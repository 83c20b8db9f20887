#include "core/error_report.h"

#include "core/station.h"

namespace kova {

std::string FaultText(const std::exception& e) {
    const std::string what = e.what();
    return what.empty() ? std::string("Run-time error") : what;
}

void ErrorReport::report(const std::exception& e) {
    show(FaultText(e), false);
}

void ErrorReport::tickFailed(const std::exception& e) {
    const std::string text = FaultText(e);
    if (text == repeating_) return;
    // Remembered before the message box opens: ticks that fail the same way while it is
    // up stay quiet.
    repeating_ = text;
    show(text, true);
}

void ErrorReport::show(const std::string& what, bool fromScan) {
    ++reported_;
    const std::string text = "Run-time error: " + what;
    log_ << "kova: run-time error: " << what << std::endl;
    platform_.status->setStatusText(text);
    auto box = [&platform = platform_, text] { platform.prompter->message(text, kAppTitle); };
    if (fromScan && post_) {
        post_(box);
    } else {
        box();
    }
}

}  // namespace kova
