#include "logging/start_log_model.h"

#include <cctype>
#include <cfloat>
#include <cmath>
#include <cstdio>

#include "core/numeric.h"
#include "logging/log_switch.h"
#include "logging/log_texts.h"
#include "tags/tag_name_index.h"

namespace kova {

namespace {
std::string upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

bool wholeNumber(const std::string& text, long low, long high, int& out) {
    if (!isNumeric(text)) return false;
    const double v = leadingNumber(text);
    if (v != std::floor(v) || v < low || v > high) return false;
    out = static_cast<int>(v);
    return true;
}

// A value box that must hold a number the stored type can take.
bool numberFits(const std::string& text, double limit) {
    return isNumeric(text) && std::fabs(leadingNumber(text)) <= limit;
}

std::string timeText(double hours, double minutes) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%s:%02d", plainNumberText(hours).c_str(),
                  static_cast<int>(std::fabs(minutes)));
    return buf;
}

// A refusal: its message, and the box where the keyboard goes back.
bool refuse(Station& st, StartLogForm& form, const char* box, const char* text, const char* title) {
    form.FailedBox = box;
    st.platform.prompter->message(text, title);
    return false;
}

bool checkSampleCount(Station& st, StartLogForm& form) {
    if (!form.TxtSampleNo.empty()) {
        const double count = leadingNumber(form.TxtSampleNo);
        st.logging.StopSampleCount = Variant::real(count);
        if (!isNumeric(form.TxtSampleNo) || count < 0 || count > 32000)
            return refuse(st, form, "TxtSampleNo", logtext::kSampleNumberRange,
                          logtext::kTitleERROR);
    } else if (st.logging.LogMode == 0) {
        return refuse(st, form, "TxtSampleNo", logtext::kEnterNumberOfSamples,
                      logtext::kTitleERROR);
    }
    return true;
}

bool checkTagCondition(Station& st, StartLogForm& form) {
    const std::string name = upper(form.CboTag);
    if (name.empty() && st.logging.LogMode != 1) return true;
    if (name.empty()) return refuse(st, form, "CboTag", logtext::kTagNameEmpty, kAppTitle);
    const int number = FindTag(st.nameIndex, name);
    if (number < 1 || number > kUserTags)
        return refuse(st, form, "CboTag", logtext::kTagNotFound, logtext::kTitleError);
    if (!numberFits(form.TxtStartValue, DBL_MAX))
        return refuse(st, form, "TxtStartValue", logtext::kStartValueNotNumber,
                      logtext::kTitleError);
    if (!numberFits(form.TxtStopValue, FLT_MAX))
        return refuse(st, form, "TxtStopValue", logtext::kStopValueNotNumber, logtext::kTitleError);
    LogSettings& s = st.logging;
    s.ConditionTag = static_cast<std::int16_t>(number);
    s.StartValue = Variant::real(leadingNumber(form.TxtStartValue));
    s.StartAbove = form.OptStartAbove ? -1 : 0;
    s.StopValue = toSingle(leadingNumber(form.TxtStopValue));
    s.StopAbove = form.OptStopAbove ? -1 : 0;
    return true;
}

// One of the two clock-time boxes; stores hours, minutes and seconds of the day on success.
bool checkTime(Station& st, const std::string& text, const char* message, Variant& hourOut,
               Variant& minuteOut, auto&& storeSecs) {
    if (text.empty()) return true;
    int hours = 0, minutes = 0;
    if (!ParseLogTime(text, hours, minutes)) {
        st.platform.prompter->message(message, logtext::kTitleERROR);
        return false;
    }
    hourOut = Variant::integer(static_cast<std::int16_t>(hours));
    minuteOut = Variant::integer(static_cast<std::int16_t>(minutes));
    storeSecs(static_cast<std::int32_t>(hours * 3600 + minutes * 60));
    return true;
}
}  // namespace

bool ParseLogTime(const std::string& text, int& hours, int& minutes) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || colon < 1) return false;
    return wholeNumber(text.substr(0, colon), 0, 23, hours) &&
           wholeNumber(text.substr(colon + 1), 0, 59, minutes);
}

StartLogForm OpenStartLogForm(const Station& st) {
    const LogSettings& s = st.logging;
    StartLogForm f;
    f.OptLogMode = s.LogMode;
    f.TxtSampleNo = plainNumberText(s.StopSampleCount.asNumber());
    if (s.ConditionTag >= 1 && s.ConditionTag <= kUserTags)
        f.CboTag = st.tag(s.ConditionTag).TagName;
    f.TxtStartValue = plainNumberText(s.StartValue.asNumber());
    f.OptStartAbove = s.StartAbove != 0;
    f.TxtStopValue = plainNumberText(static_cast<double>(s.StopValue));
    f.OptStopAbove = s.StopAbove != 0;
    f.TxtStartTime = timeText(s.StartHour.asNumber(), s.StartMinute.asNumber());
    f.TxtStopTime = timeText(s.StopHour.asNumber(), s.StopMinute.asNumber());
    f.ChkLogging = st.switches.LoggingEnabled.isOn();
    return f;
}

std::vector<std::string> ConditionTagChoices(const Station& st) {
    std::vector<std::string> names;
    for (int n = 1; n <= kUserTags; ++n)
        if (!st.tag(n).TagName.empty()) names.push_back(st.tag(n).TagName);
    return names;
}

void StartLogTablesChanged(const Station& st, StartLogForm& form, StartLogForm& shown,
                           TableChange change) {
    if (change == TableChange::DaqType) return;
    const StartLogForm now = OpenStartLogForm(st);
    if (change == TableChange::Configuration) {
        form = shown = now;
        return;
    }
    if (form.CboTag == shown.CboTag) form.CboTag = now.CboTag;
    shown.CboTag = now.CboTag;
}

bool ExitStartLogForm(Station& st, StartLogForm& form) {
    form.FailedBox.clear();
    LogSettings& s = st.logging;
    s.LogMode = static_cast<std::int16_t>(form.OptLogMode);

    if (!checkSampleCount(st, form)) return false;
    if (!checkTagCondition(st, form)) return false;
    if (!checkTime(st, form.TxtStartTime, logtext::kStartTimeFormat, s.StartHour, s.StartMinute,
                   [&](std::int32_t secs) { s.StartTimeSecs = Variant::longInt(secs); })) {
        form.FailedBox = "TxtStartTime";
        return false;
    }
    if (!checkTime(st, form.TxtStopTime, logtext::kStopTimeFormat, s.StopHour, s.StopMinute,
                   [&](std::int32_t secs) { s.StopTimeSecs = secs; })) {
        form.FailedBox = "TxtStopTime";
        return false;
    }

    if (form.ChkLogging && s.LogFileName.empty()) {
        st.platform.prompter->message(logtext::kNoLogFileName, kAppTitle);
        form.ChkLogging = false;  // the box is cleared, logging stays off, the window closes
    }
    SetLoggingSwitch(st, form.ChkLogging);
    return true;
}

}  // namespace kova
