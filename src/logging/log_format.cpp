#include "logging/log_format.h"

#include <cstdio>

#include "core/numeric.h"
#include "core/text_encoding.h"

namespace kova {

namespace {
std::string twoDigits(long v) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%02ld", v);
    return buf;
}

// The date's day, month and two-digit year, in the order the format asks for.
std::string dateDigits(long dateSerial, bool dateFormatUS, const char* separator) {
    int year = 0, month = 0, day = 0;
    dateFromSerial(dateSerial, year, month, day);
    const std::string yy = twoDigits(((year % 100) + 100) % 100);
    const std::string first = twoDigits(dateFormatUS ? month : day);
    const std::string second = twoDigits(dateFormatUS ? day : month);
    return first + separator + second + separator + yy;
}

// Length of the UTF-8 sequence that starts with this byte (1 for a stray byte).
std::size_t sequenceLength(unsigned char lead) {
    if ((lead & 0xE0) == 0xC0) return 2;
    if ((lead & 0xF0) == 0xE0) return 3;
    if ((lead & 0xF8) == 0xF0) return 4;
    return 1;
}

bool loggedTag(const Tag& t) {
    return t.Log != 0;
}
}  // namespace

std::string LogDirectoryOf(const std::string& path) {
    const std::size_t last = path.find_last_of("\\/");
    if (last == std::string::npos) return {};
    return path.substr(0, last + 1);
}

std::string DailyLogFileName(const std::string& directory, long dateSerial, bool dateFormatUS) {
    return directory + "DA" + dateDigits(dateSerial, dateFormatUS, "") + ".CSV";
}

std::string LogDateText(long dateSerial, bool dateFormatUS) {
    return dateDigits(dateSerial, dateFormatUS, "/");
}

std::string LogTimeText(std::int16_t hour, std::int16_t minute, std::int16_t second,
                        std::int16_t millisecond) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d.%03d", hour, minute, second, millisecond);
    return buf;
}

std::string LogFileText(const std::string& utf8) {
    if (auto whole = Utf8ToCp1252(utf8)) return *whole;
    std::string out;
    for (std::size_t i = 0; i < utf8.size();) {
        std::size_t len = sequenceLength(static_cast<unsigned char>(utf8[i]));
        bool wellFormed = i + len <= utf8.size();
        for (std::size_t k = 1; wellFormed && k < len; ++k)
            wellFormed = (static_cast<unsigned char>(utf8[i + k]) & 0xC0) == 0x80;
        if (!wellFormed) len = 1;
        const auto one = Utf8ToCp1252(utf8.substr(i, len));
        out += one ? *one : std::string("?");
        i += len;
    }
    return out;
}

std::string LogHeaderLine(const Station& st) {
    const LogSettings& s = st.logging;
    std::string line = "LOG PERIOD,";
    bool first = true;
    auto item = [&](const std::string& text) {
        if (!first) line += ',';
        line += text;
        first = false;
    };
    if (s.LogTimeColumn.isOn()) item("TIME");
    if (s.LogDateColumn.isOn()) item("DATE");
    for (int n = 1; n <= kUserTags; ++n)
        if (loggedTag(st.tag(n))) item(LogFileText(st.tag(n).Label));
    return line + kLogLineEnd;
}

void FormatLogRecordLine(const Station& st, std::string& line) {
    const LogSettings& s = st.logging;
    const LogRunState& r = st.logRun;
    line.clear();
    char buf[kNumberTextRoom + 64];
    auto put = [&](const char* first, const char* last) { line.append(first, last); };

    const float elapsed =
        static_cast<float>(st.periods.LogPeriod) * static_cast<float>(r.SampleNumber);
    // Seconds with three decimals for a millisecond period, whole seconds otherwise; "."
    // whatever the locale.
    const bool ms = st.periods.LogUnits == kUnitMs;
    const double seconds =
        ms ? static_cast<double>(elapsed / 1000.0f) : static_cast<double>(elapsed);
    put(buf, writeFixedText(buf, buf + sizeof buf, seconds, ms ? 3 : 0));
    line += ',';
    if (s.LogTimeColumn.isOn()) {
        const int n = std::snprintf(buf, sizeof buf, "%02d:%02d:%02d.%03d,", r.LogHour, r.LogMinute,
                                    r.LogSecond, r.LogMillisecond);
        put(buf, buf + n);
    }
    if (s.LogDateColumn.isOn()) {
        int year = 0, month = 0, day = 0;
        dateFromSerial(r.LogDate, year, month, day);
        const bool us = s.DateFormatUS != 0;
        const int n = std::snprintf(buf, sizeof buf, "%02d/%02d/%02d,", us ? month : day,
                                    us ? day : month, ((year % 100) + 100) % 100);
        put(buf, buf + n);
    }
    bool first = true;
    for (int n = 1; n <= kUserTags; ++n) {
        const Tag& t = st.tag(n);
        if (!loggedTag(t)) continue;
        if (!first) line += ',';
        // The print form of a number: a blank where a minus sign would go, one after.
        buf[0] = ' ';
        char* end = writeNumberText(buf + 1, buf + sizeof buf, static_cast<double>(t.Value));
        put(buf[1] == '-' ? buf + 1 : buf, end);
        line += ' ';
        first = false;
    }
    line += kLogLineEnd;
}

std::string LogRecordLine(const Station& st) {
    std::string line;
    FormatLogRecordLine(st, line);
    return line;
}

}  // namespace kova
