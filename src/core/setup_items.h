#pragma once
// The items of the setup file, in the order the file holds them. One walk over the station
// serves every reader and writer of the configuration (the binary codec, and the JSON form
// of kova-cli), so they cannot disagree about the order.
//
// A visitor V provides:
//   array(name, count, fn)  a list of `count` elements; fn(i) is called for i = 1..count
//   object(name, fn)        a group of named fields (a tag, a screen, an alarm, ...)
//   record(label, fn)       one 128-byte record of the file; `label` says which item it is
//                           (a RecordLabel: its text is made only by a visitor that needs it)
//   i16 / i32 / f32 / text / variant (name, field)
// Names are the item and field names of the file's record table; inside an array an
// element has the name "". `record` carries no name of its own: the binary codec counts
// records, the JSON form ignores them.
#include <string>
#include <string_view>

#include "core/station.h"

namespace kova {

inline constexpr int kSetupRecordLength = 128;
inline constexpr int kSetupRecordCount = 363;
inline constexpr int kSetupFileLength = kSetupRecordLength * kSetupRecordCount;  // 46464
inline constexpr int kScreenCount = 10;
inline constexpr int kScreenLineCount = 20;
inline constexpr int kTrendCount = 10;
inline constexpr int kPenCount = 4;

// Which item a record holds: "tag 3", "screen 2 header", "screen 2 line 7", "trend 1 pen 4",
// or the name of a single item. Kept as its parts, because every load, save and comparison
// walks all 363 records and only a problem needs the words.
struct RecordLabel {
    const char* what = "";  // "tag ", "screen ", ... or a single item's whole name
    int n = 0;              // its number, 0 for a single item
    const char* part = "";  // " header", " line ", " pen " or ""
    int m = 0;              // the line or pen number, 0 if none

    RecordLabel(const char* name) : what(name) {}  // NOLINT: a single item's name
    RecordLabel(const char* w, int number, const char* p = "", int sub = 0)
        : what(w), n(number), part(p), m(sub) {}

    bool isScreenHeader() const { return std::string_view(part) == " header"; }
    std::string text() const {
        std::string s = what;
        if (n > 0) s += std::to_string(n);
        s += part;
        if (m > 0) s += std::to_string(m);
        return s;
    }
};

// S is Station (readers) or const Station (writers).
template <class S, class V>
void VisitSetupItems(S& st, V& v) {
    // Records 1..32: the user tags.
    v.array("tags", kUserTags, [&](int i) {
        auto& t = st.tags[i];
        v.object("", [&] {
            v.record(RecordLabel("tag ", i), [&] {
                v.text("Label", t.Label);
                v.text("TagName", t.TagName);
                v.text("IOName", t.IOName);
                v.i16("Kind", t.Kind);
                v.i16("Direction", t.Direction);
                v.i16("Address", t.Address);
                v.i16("IONumber", t.IONumber);
                v.i16("RawValue1", t.RawValue1);
                v.f32("EngValue1", t.EngValue1);
                v.i16("RawValue2", t.RawValue2);
                v.f32("EngValue2", t.EngValue2);
                v.text("EngText1", t.EngText1);
                v.text("EngText2", t.EngText2);
                v.f32("Slope", t.Slope);
                v.f32("Offset", t.Offset);
                v.text("Units", t.Units);
                v.i16("Log", t.Log);
                v.f32("Value", t.Value);
            });
        });
    });
    // Records 33..242: each screen's header, then its twenty lines.
    v.array("screens", kScreenCount, [&](int s) {
        v.object("", [&] {
            auto& h = st.screens.Headers[s];
            v.record(RecordLabel("screen ", s, " header"), [&] {
                v.text("Title", h.Title);
                v.i16("JumpTo", h.JumpTo);
            });
            v.array("Lines", kScreenLineCount, [&](int l) {
                auto& line = st.screens.Lines(s, l);
                v.object("", [&] {
                    v.record(RecordLabel("screen ", s, " line ", l), [&] {
                        v.text("TagName", line.TagName);
                        v.i16("TagNumber", line.TagNumber);
                        v.i16("Editing", line.Editing);
                    });
                });
            });
        });
    });
    // Records 243..282: the trend table, trend by trend, pens 1..4 within each.
    v.array("TrendTable", kTrendCount, [&](int t) {
        v.array("", kPenCount, [&](int p) {
            v.record(RecordLabel("trend ", t, " pen ", p),
                     [&] { v.i16("", st.trends.TrendTable(t, p)); });
        });
    });
    // Single items: each takes a record of its own.
    auto i16 = [&](const char* name, auto& field) { v.record(name, [&] { v.i16(name, field); }); };
    auto i32 = [&](const char* name, auto& field) { v.record(name, [&] { v.i32(name, field); }); };
    auto f32 = [&](const char* name, auto& field) { v.record(name, [&] { v.f32(name, field); }); };
    auto text = [&](const char* name, auto& field) {
        v.record(name, [&] { v.text(name, field); });
    };
    auto var = [&](const char* name, auto& field) {
        v.record(name, [&] { v.variant(name, field); });
    };

    // Records 283..310: periods and logging.
    i16("IOPeriod", st.periods.IOPeriod);
    i16("IOUnits", st.periods.IOUnits);
    i16("LogPeriod", st.periods.LogPeriod);
    i16("LogUnits", st.periods.LogUnits);
    i16("TrendAtLogPeriod", st.periods.TrendAtLogPeriod);
    var("LogTimeColumn", st.logging.LogTimeColumn);
    var("LogDateColumn", st.logging.LogDateColumn);
    text("LogFileName", st.logging.LogFileName);
    i16("OverwriteFile", st.logging.OverwriteFile);
    i16("PrinterPortNumber", st.daq.PrinterPortNumber);
    i16("PrinterPortBase", st.daq.PrinterPortBase);
    i16("LogMode", st.logging.LogMode);
    var("StopSampleCount", st.logging.StopSampleCount);
    var("StartHour", st.logging.StartHour);
    var("StartMinute", st.logging.StartMinute);
    var("StartTimeSecs", st.logging.StartTimeSecs);
    var("StopHour", st.logging.StopHour);
    var("StopMinute", st.logging.StopMinute);
    i32("StopTimeSecs", st.logging.StopTimeSecs);
    i16("ConditionTag", st.logging.ConditionTag);
    var("StartValue", st.logging.StartValue);
    i16("StartAbove", st.logging.StartAbove);
    f32("StopValue", st.logging.StopValue);
    i16("StopAbove", st.logging.StopAbove);
    var("LoggingEnabled", st.switches.LoggingEnabled);
    i16("DailyFiles", st.logging.DailyFiles);
    text("LogDirectory", st.logging.LogDirectory);
    i16("DateFormatUS", st.logging.DateFormatUS);

    // Records 311..330: the alarms.
    v.array("alarms", kAlarmCount, [&](int i) {
        auto& a = st.alarms.Alarms[i];
        v.object("", [&] {
            v.record(RecordLabel("alarm ", i), [&] {
                v.text("TagName", a.TagName);
                v.i16("TagNo", a.TagNo);
                v.f32("HiVal", a.HiVal);
                v.text("HiMsg", a.HiMsg);
                v.f32("LoVal", a.LoVal);
                v.text("LoMsg", a.LoMsg);
                v.text("NormMsg", a.NormMsg);
                v.text("LastText", a.LastText);
                v.i16("State", a.State);
            });
        });
    });
    i16("AlarmsEnabled", st.switches.AlarmsEnabled);

    // Records 332..361: the control statement lines.
    v.array("controls", kControlLines, [&](int i) {
        auto& c = st.control.Lines[i];
        v.object("", [&] {
            v.record(RecordLabel("control line ", i), [&] {
                v.text("IfText", c.IfText);
                v.text("IfCode", c.IfCode);
                v.text("ThenText", c.ThenText);
                v.text("ThenCode", c.ThenCode);
                v.text("ElseText", c.ElseText);
                v.text("ElseCode", c.ElseCode);
                v.i16("LastResult", c.LastResult);
                v.i16("ThenOnRise", c.ThenOnRise);
            });
        });
    });
    i16("ControlsEnabled", st.switches.ControlsEnabled);
    i16("DaqType", st.profile.TypeCode);
}

}  // namespace kova
