#include "logging/set_logging_model.h"

#include "logging/log_format.h"
#include "logging/log_texts.h"

namespace kova {

namespace {
// A check box's value as the program stores it: 1 checked, 0 not.
std::int16_t boxValue(bool checked) {
    return checked ? 1 : 0;
}
}  // namespace

SetLoggingForm OpenSetLoggingForm(const Station& st) {
    const LogSettings& s = st.logging;
    SetLoggingForm f;
    f.TxtFileName = s.LogFileName;
    f.OptDateFormat2 = s.DateFormatUS != 0;
    f.ChkTime = s.LogTimeColumn.isOn();
    f.ChkDate = s.LogDateColumn.isOn();
    f.ChkDaily = s.DailyFiles != 0;
    f.NewFile = s.OverwriteFile != 0;
    return f;
}

void ClickDailyFiles(Station& st, SetLoggingForm& form, bool checked) {
    form.ChkDaily = checked;
    st.logging.DailyFiles = boxValue(checked);
}

bool ChooseLogFile(Station& st, SetLoggingForm& form) {
    LogSettings& s = st.logging;
    std::string proposed = logtext::kProposedLogFile;
    if (s.DailyFiles != 0) {
        proposed = s.LogFileName;
        st.logRun.LogDate = st.platform.clock->now().dateSerial();
    }
    // The log file need not exist yet: logging makes it.
    const auto chosen = st.platform.prompter->chooseFileToWrite(
        logtext::kOpenLoggingFileTitle, logtext::kLoggingFileFilter, proposed);
    if (!chosen || chosen->empty()) return false;
    s.LogFileName = *chosen;
    s.LogDirectory = LogDirectoryOf(*chosen);
    form.TxtFileName = s.LogFileName;
    return true;
}

void ExitSetLoggingForm(Station& st, const SetLoggingForm& form) {
    LogSettings& s = st.logging;
    s.DateFormatUS = form.OptDateFormat2 ? -1 : 0;
    s.LogTimeColumn = Variant::integer(boxValue(form.ChkTime));
    s.LogDateColumn = Variant::integer(boxValue(form.ChkDate));
    s.DailyFiles = boxValue(form.ChkDaily);
    s.OverwriteFile = boxValue(form.NewFile);
}

}  // namespace kova
