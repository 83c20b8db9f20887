#include "links/web/web_json.h"

#include <nlohmann/json.hpp>

#include "core/numeric.h"
#include "displays/readings_view.h"

namespace kova::web {

namespace {

using Json = nlohmann::json;

// Texts from the station may hold bytes that are not UTF-8 (a label typed on an old PC):
// they are replaced, never a reason to fail.
std::string dump(const Json& j) {
    return j.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string timeText(const LocalDateTime& t) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour,
                  t.minute, t.second);
    return buf;
}

bool penHasTag(int tag) {
    return tag >= 1 && tag <= kTableTags;
}

}  // namespace

std::string UnacknowledgedText(const links::AlarmView& alarms) {
    int inAlarm = 0, backToNormal = 0;
    for (std::int16_t state : alarms.state) {
        if (state == 1 || state == 2) ++inAlarm;
        if (state == 4) ++backToNormal;
    }
    const int total = inAlarm + backToNormal;
    if (total == 0) return "No unacknowledged alarms";
    std::string text = "Unacknowledged alarms: " + std::to_string(total);
    if (backToNormal > 0) text += " (" + std::to_string(backToNormal) + " back to normal)";
    return text;
}

std::string LiveJson(const links::StationSnapshot& s) {
    Json j;
    j["type"] = "live";
    j["sequence"] = s.sequence;
    j["time"] = timeText(s.time);
    j["layoutVersion"] = s.layoutVersion;
    j["poll"] = s.pollEnabled;
    j["logging"] = s.loggingEnabled;
    j["loggingActive"] = s.loggingActive;
    j["alarmsEnabled"] = s.alarmsEnabled == 1;
    j["controlsEnabled"] = s.controlsEnabled == 1;
    j["scanTime"] = plainNumberText(s.scanTime);
    Json values = Json::array(), states = Json::array();
    for (int n = 1; n <= kTableTags; ++n) {
        values.push_back(numberText(s.values[n]));
        states.push_back(s.values[n] != 0 ? 1 : 0);
    }
    j["values"] = std::move(values);
    j["states"] = std::move(states);
    Json minmax = Json::array();
    for (int n = 1; n <= kMinMaxTags; ++n)
        minmax.push_back({{"label", s.layout->tags[n].Label},
                          {"reading", numberText(s.values[n])},
                          {"maximum", numberText(s.tagMaximum[n])},
                          {"minimum", numberText(s.tagMinimum[n])}});
    j["minmax"] = std::move(minmax);
    const links::AlarmView& a = *s.alarms;
    Json current = Json::array(), alarmStates = Json::array(), history = Json::array();
    for (int n = 1; n <= kAlarmCount; ++n) {
        current.push_back(a.lastText[n]);
        alarmStates.push_back(a.state[n]);
    }
    for (const std::string& line : a.history) history.push_back(line);
    j["alarms"] = {{"current", std::move(current)},
                   {"states", std::move(alarmStates)},
                   {"history", std::move(history)},
                   {"unacknowledged", UnacknowledgedText(a)}};
    return dump(j);
}

std::string LayoutJson(const links::StationSnapshot& s) {
    const links::StationLayout& l = *s.layout;
    Json j;
    j["layoutVersion"] = s.layoutVersion;
    j["setupFile"] = l.setupFileName;
    Json tags = Json::array();
    for (int n = 1; n <= kTableTags; ++n) {
        const links::TagInfo& t = l.tags[n];
        tags.push_back({{"number", n},
                        {"name", t.TagName},
                        {"label", t.Label},
                        {"prefixedLabel", DirectionPrefix(t.Direction) + t.Label},
                        {"units", t.Units},
                        {"kind", t.Kind},
                        {"direction", t.Direction},
                        {"writable", t.Direction == kOutput || t.Direction == kVariable},
                        {"text0", t.EngText1},
                        {"text1", t.EngText2}});
    }
    j["tags"] = std::move(tags);
    Json screens = Json::array();
    for (int n = 1; n <= 10; ++n) {
        const links::ScreenInfo& sc = l.screens[n];
        Json analog = Json::array(), digital = Json::array();
        for (int line = 0; line < 10; ++line) {
            const int a = sc.TagNumbers[static_cast<std::size_t>(line)];
            const int d = sc.TagNumbers[static_cast<std::size_t>(line + 10)];
            analog.push_back(a >= 1 && a <= kTableTags ? a : 0);
            digital.push_back(d >= 1 && d <= kTableTags ? d : 0);
        }
        screens.push_back({{"number", n},
                           {"caption", "Screen " + std::to_string(n) + "     " + sc.Title},
                           {"title", sc.Title},
                           {"jumpTo", sc.JumpTo},
                           {"analog", std::move(analog)},
                           {"digital", std::move(digital)}});
    }
    j["screens"] = std::move(screens);
    Json trends = Json::array();
    for (int t = 1; t <= 10; ++t) {
        Json pens = Json::array();
        for (int p = 1; p <= 4; ++p) {
            const int tag = l.trendTable(t, p);
            pens.push_back(penHasTag(tag) ? l.tags[tag].Label : " ");
        }
        trends.push_back(std::move(pens));
    }
    j["trends"] = std::move(trends);
    j["trendPeriod"] = l.trendPeriodText;
    return dump(j);
}

std::string TrendJson(const links::StationSnapshot& s, int trend) {
    const links::StationLayout& l = *s.layout;
    const links::TrendRing& ring = *s.trend;
    Json j;
    j["trend"] = trend;
    j["period"] = l.trendPeriodText;
    j["seconds"] = l.trendPeriodSeconds;
    Json pens = Json::array();
    // The oldest of the 200 samples is the row after the newest; point 0 is the newest.
    const int oldest = ring.newestSample % kTrendRows + 1;
    for (int p = 1; p <= 4; ++p) {
        const int tag = l.trendTable(trend, p);
        std::vector<float> points(kTrendRows, 0.0f);
        if (penHasTag(tag)) {
            int r = oldest;
            for (int k = kTrendRows; k >= 1; --k) {
                points[static_cast<std::size_t>(k - 1)] = ring.samples(r, (trend - 1) * 4 + p);
                r = r >= kTrendRows ? 1 : r + 1;
            }
        }
        pens.push_back({{"label", penHasTag(tag) ? l.tags[tag].Label : " "}, {"points", points}});
    }
    j["pens"] = std::move(pens);
    return dump(j);
}

std::string LogFilesJson(const std::vector<LogFileEntry>& files, const std::string& folder) {
    Json list = Json::array();
    for (const LogFileEntry& f : files) list.push_back({{"name", f.name}, {"bytes", f.bytes}});
    return dump({{"folder", folder}, {"files", std::move(list)}});
}

std::string HistoryColumnsJson(const HistoryAnswer& a) {
    Json items = Json::array();
    // Every header position the list offers (not DATE, not TIME), so the page can name it.
    for (std::size_t i = 0; i < a.columns.names.size(); ++i) {
        const std::string& name = a.columns.names[i];
        if (name == "DATE" || name == "TIME") continue;
        items.push_back({{"column", i + 1}, {"name", name}});
    }
    return dump({{"columns", std::move(items)},
                 {"hasTime", a.columns.timeColumn != 0},
                 {"hasPeriod", a.columns.periodColumn != 0}});
}

std::string HistoryBlockJson(const HistoryAnswer& a, std::int64_t startRow) {
    Json j;
    j["startRow"] = startRow;
    j["rowsRead"] = a.rowsRead;
    if (a.rowsRead == 0) {
        j["message"] = "No More Points To Plot";
        return dump(j);
    }
    Json pens = Json::array();
    for (const auto& values : a.block.values)
        pens.push_back(std::vector<float>(values.begin(), values.end()));
    j["pens"] = std::move(pens);
    j["timeTexts"] = a.block.timeTexts;
    j["periodTexts"] = a.block.periodTexts;
    return dump(j);
}

std::string ErrorJson(const std::string& message) {
    return dump({{"error", message}});
}

std::string EscapeHtml(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

}  // namespace kova::web
