#include "links/records/record_maker.h"

#include <cmath>
#include <cstdio>

#include "core/numeric.h"
#include "links/records/scan_quality.h"
#include "links/records/utc_time.h"
#include "logging/log_conditions.h"

namespace kova::links {

std::string JsonNumber(double v) {
    if (!std::isfinite(v)) return "null";
    return plainNumberText(v);
}

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c == 0x7F) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

namespace {

// ISO 8601 local time with milliseconds, as the record's time reads on the station.
std::string LocalText(const LocalDateTime& t) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", t.year, t.month, t.day,
                  t.hour, t.minute, t.second, t.millisecond);
    return buf;
}

// The logging clock as a local date and time (its minutes may pass 59 after a long period:
// they are carried here, as the time they stand for).
LocalDateTime LogClockTime(const LogRunState& r) {
    LocalDateTime t;
    dateFromSerial(r.LogDate, t.year, t.month, t.day);
    return addMilliseconds(
        t, ((static_cast<long long>(r.LogHour) * 60 + r.LogMinute) * 60 + r.LogSecond) * 1000LL +
               r.LogMillisecond);
}

}  // namespace

std::optional<MadeRecord> RecordAfterTick(const Station& st) {
    // A logging period ends on a scan that brings the count back to 0.
    if (!st.scan.DoScan || st.scan.LogAccumMs != 0) return std::nullopt;
    const bool loggingOn = st.switches.LoggingEnabled.isOn();
    if (loggingOn && !LoggingActive(st)) return std::nullopt;
    const LocalDateTime time = loggingOn ? LogClockTime(st.logRun) : st.platform.clock->now();
    const ScanQuality quality = QualityOfScan(st);
    MadeRecord made;
    made.timeMs = LocalToUtcMs(time);
    std::string& b = made.body;
    b = "{\"ts\":" + std::to_string(made.timeMs) + ",\"time\":" + JsonString(LocalText(time));
    if (loggingOn) b += ",\"sample\":" + std::to_string(st.logRun.SampleNumber);
    b += ",\"q\":\"";
    b += quality.good ? "good" : "bad";
    b += "\",\"values\":{";
    bool first = true;
    for (int n = 1; n <= kUserTags; ++n) {
        const Tag& t = st.tags[n];
        if (t.Log == 0) continue;
        if (!first) b += ',';
        first = false;
        b += JsonString(t.TagName.empty() ? "TAG" + std::to_string(n) : t.TagName);
        b += ':';
        b += JsonNumber(static_cast<double>(t.Value));
    }
    b += "}}";
    return made;
}

}  // namespace kova::links
