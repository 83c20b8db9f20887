#include "support/setup_fixtures.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>

#include "core/setup_items.h"

namespace kova::test {

namespace {

std::string FloatText(float f) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.9g (0x%08x)", static_cast<double>(f),
                  std::bit_cast<std::uint32_t>(f));
    return buf;
}

// Lists the items as they are visited, with their path.
class Lister {
  public:
    std::vector<std::string> lines;

    template <class F>
    void array(const char* name, int count, F fn) {
        const std::string base = path(name);
        for (int i = 1; i <= count; ++i) {
            prefix_.push_back(base + "[" + std::to_string(i) + "]");
            fn(i);
            prefix_.pop_back();
        }
    }
    template <class F>
    void object(const char*, F fn) {
        fn();
    }
    template <class F>
    void record(const RecordLabel&, F fn) {
        fn();
    }
    void i16(const char* name, std::int16_t v) { add(name, std::to_string(v)); }
    void i32(const char* name, std::int32_t v) { add(name, std::to_string(v)); }
    void f32(const char* name, float v) { add(name, FloatText(v)); }
    void text(const char* name, const std::string& v) { add(name, "\"" + v + "\""); }
    void variant(const char* name, const Variant& v) {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.17g (0x%016llx)", v.number,
                      static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(v.number)));
        add(name, "variant type " + std::to_string(v.type) + " number " + buf + " text \"" +
                      v.text + "\"");
    }

  private:
    std::string path(const char* name) const {
        std::string p = prefix_.empty() ? "" : prefix_.back();
        if (*name) p += (p.empty() ? "" : ".") + std::string(name);
        return p;
    }
    void add(const char* name, const std::string& value) {
        lines.push_back(path(name) + " = " + value);
    }
    std::vector<std::string> prefix_;
};

}  // namespace

void FillRichConfiguration(Station& st) {
    for (int i = 1; i <= kUserTags; ++i) {
        Tag& t = st.tags[i];
        const std::string n = std::to_string(i);
        t.Label = "Tank " + n + " °C";
        t.TagName = "TANK" + n;
        t.IOName = i % 2 ? "AI-" + n : "Digital Variable";
        t.Kind = static_cast<std::int16_t>(i % 2);
        t.Direction = static_cast<std::int16_t>(i % 3);
        t.Address = 1;
        t.IONumber = static_cast<std::int16_t>(i);
        t.RawValue1 = static_cast<std::int16_t>(-i);
        t.EngValue1 = -0.1f * static_cast<float>(i);
        t.RawValue2 = static_cast<std::int16_t>(4095 - i);
        t.EngValue2 = 100.5f + static_cast<float>(i);
        t.EngText1 = "OFF€" + n;
        t.EngText2 = "ON µs";
        t.Slope = 0.0245f * static_cast<float>(i);
        t.Offset = -3.75f;
        t.Units = "°C";
        t.Log = static_cast<std::int16_t>(i % 2 ? -1 : 0);
        t.Value = 1e-3f * static_cast<float>(i);
    }
    st.tags[7].Value = std::numeric_limits<float>::quiet_NaN();
    st.tags[8].Value = -std::numeric_limits<float>::infinity();
    st.tags[9].Value = -0.0f;
    st.tags[10].Value = std::numeric_limits<float>::denorm_min();
    for (int s = 1; s <= kScreenCount; ++s) {
        st.screens.Headers[s] = {"Screen " + std::to_string(s) + " – Boiler",
                                 static_cast<std::int16_t>(11 - s)};
        for (int l = 1; l <= kScreenLineCount; ++l)
            st.screens.Lines(s, l) = {"TANK" + std::to_string(l), static_cast<std::int16_t>(l),
                                      static_cast<std::int16_t>(l == s ? -1 : 0)};
    }
    for (int t = 1; t <= kTrendCount; ++t)
        for (int p = 1; p <= kPenCount; ++p)
            st.trends.TrendTable(t, p) = static_cast<std::int16_t>((t - 1) * 4 + p);
    st.periods = {500, 1, 2, 1000, -1};
    st.logging.LogTimeColumn = Variant::boolean(true);
    st.logging.LogDateColumn = Variant::integer(-1);
    st.logging.LogFileName = "C:\\LOGS\\Kühlhaus.CSV";
    st.logging.OverwriteFile = -1;
    st.daq.PrinterPortNumber = 2;
    st.daq.PrinterPortBase = 0x3BC;
    st.logging.LogMode = 2;
    st.logging.StopSampleCount = Variant::longInt(32000);
    st.logging.StartHour = Variant::string("22");
    st.logging.StartMinute = Variant::single(30.5f);
    st.logging.StartTimeSecs = Variant::real(81000.25);
    st.logging.StopHour = Variant{kVarDate, 46341.75, {}};
    st.logging.StopMinute = Variant{kVarNull, 0, {}};
    st.logging.StopTimeSecs = 21600;
    st.logging.ConditionTag = 3;
    st.logging.StartValue = Variant{kVarEmpty, 0, {}};
    st.logging.StartAbove = -1;
    st.logging.StopValue = 50.1f;
    st.logging.StopAbove = 0;
    st.switches.LoggingEnabled = Variant::boolean(true);
    st.logging.DailyFiles = -1;
    st.logging.LogDirectory = "C:\\LOGS\\";
    st.logging.DateFormatUS = -1;
    for (int i = 1; i <= kAlarmCount; ++i) {
        AlarmDef& a = st.alarms.Alarms[i];
        a.TagName = "TANK" + std::to_string(i);
        a.TagNo = static_cast<std::int16_t>(i);
        a.HiVal = 80.25f + static_cast<float>(i);
        a.HiMsg = "Tank too hot > 80 °C";
        a.LoVal = -5.5f;
        a.LoMsg = "Tank frozen";
        a.NormMsg = "Tank back to normal";
        a.LastText = "ALARM 11-15-2026 14:05:09 Tank too hot";
        a.State = static_cast<std::int16_t>(i % 5);
    }
    for (int i = 1; i <= kControlLines; ++i) {
        ControlLine& c = st.control.Lines[i];
        c.IfText = "@TANK" + std::to_string(i) + ">80";
        c.IfCode =
            "\x01"
            "T1>80";
        c.ThenText = "@PUMP=1\r\n@FAN=0";
        c.ThenCode = "P=1!F=0!";
        c.ElseText = "@PUMP=0";
        c.ElseCode = "P=0!";
        c.LastResult = static_cast<std::int16_t>(i % 2 ? -2 : 1);
        c.ThenOnRise = static_cast<std::int16_t>(i % 2);
    }
    st.switches.AlarmsEnabled = 1;
    st.switches.ControlsEnabled = 1;
    st.profile.TypeCode = kDaqQrt115;
}

std::vector<std::string> StoredItems(const Station& st) {
    Lister l;
    VisitSetupItems(st, l);
    return std::move(l.lines);
}

}  // namespace kova::test
