#pragma once
// The station's records for the links: at every logging period, the logged tags with the
// record's time, whether or not a CSV log is being written. When the CSV log writes a line,
// the record holds exactly that line's values, time stamp (the logging clock) and sample
// number; with logging off the record is made all the same, stamped with the scan's time.
// While logging is on but its start condition holds it back, no record is made, as no line
// is written.
#include <cstdint>
#include <optional>
#include <string>

#include "core/station.h"

namespace kova::links {

struct MadeRecord {
    std::int64_t timeMs = 0;  // UTC
    std::string body;         // one JSON object: {"ts":...,"time":"...","q":"good","values":{...}}
};

// Called on the scan's thread after every tick: the record when a logging period ended
// with this tick, else nothing.
std::optional<MadeRecord> RecordAfterTick(const Station& st);

// The number text of the log as a JSON value: "12.5", "1.234568E+07"; null for a value no
// JSON number can hold (an infinity).
std::string JsonNumber(double v);
// A text as a JSON string, quotes included.
std::string JsonString(const std::string& text);

}  // namespace kova::links
