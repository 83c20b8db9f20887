#pragma once
// The JSON the web page reads, made from a snapshot on the server's threads. Texts are the
// station's own (numbers as the windows show them, state texts, alarm lines); the page puts
// them into the document as text, never as markup.
#include <string>

#include "links/station_snapshot.h"
#include "links/web/web_history.h"

namespace kova::web {

// The live state pushed to every page: values (as the readings screens show them), digital
// states, switches, min/max rows and the alarm list with its history.
std::string LiveJson(const links::StationSnapshot& s);

// What changes only with the configuration: tags, readings screens and trend pens.
std::string LayoutJson(const links::StationSnapshot& s);

// Trend 1..10: its four pens' labels and 200 points each, newest first, as the trend window
// draws them.
std::string TrendJson(const links::StationSnapshot& s, int trend);

// "No unacknowledged alarms", "Unacknowledged alarms: 3 (1 back to normal)".
std::string UnacknowledgedText(const links::AlarmView& alarms);

// The history answers.
std::string LogFilesJson(const std::vector<LogFileEntry>& files, const std::string& folder);
std::string HistoryColumnsJson(const HistoryAnswer& a);
std::string HistoryBlockJson(const HistoryAnswer& a, std::int64_t startRow);

// {"error": text}
std::string ErrorJson(const std::string& message);

// Text escaped for HTML element content and attribute values.
std::string EscapeHtml(const std::string& text);

}  // namespace kova::web
