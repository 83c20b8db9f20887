#include "support/full_station.h"

#include <string>

#include "logging/log_writer.h"
#include "support/control_lines.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::bench {

namespace {

void tag(Station& st, int n, const std::string& name, const std::string& io) {
    Tag& t = st.tags[n];
    t.TagName = name;
    t.Label = name;
    BindIOName(t, io);
    t.Address = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = 2000;
    t.EngValue2 = 100;
    t.Log = 1;
    ComputeScaling(t);
}

void buildTags(Station& st) {
    BuildIOList(st.profile, kDaqTest);
    for (int i = 1; i <= 8; ++i) tag(st, i, "LEVEL" + std::to_string(i), "AI-" + std::to_string(i));
    for (int i = 1; i <= 4; ++i)
        tag(st, 8 + i, "SW" + std::to_string(i), "DI-" + std::to_string(i));
    for (int i = 1; i <= 2; ++i)
        tag(st, 12 + i, "SETPT" + std::to_string(i), "AO-" + std::to_string(i));
    for (int i = 1; i <= 4; ++i)
        tag(st, 14 + i, "PUMP" + std::to_string(i), "DO-" + std::to_string(i));
    for (int i = 19; i <= 32; ++i) tag(st, i, "VAR" + std::to_string(i), "Analog Variable");
    RebuildTagNameIndex(st.tags, st.nameIndex);
}

void buildControls(Station& st) {
    const char* const lines[30][3] = {
        {"@LEVEL1>50", "@PUMP1 = 1", "@PUMP1 = 0"},
        {"@LEVEL2>80&@LEVEL3<20", "@PUMP2 = 1", "@PUMP2 = 0"},
        {"@LEVEL4>=50|@LEVEL5>=50", "@PUMP3 = 1\r\n@VAR19 = @VAR19 + 1", "@PUMP3 = 0"},
        {"", "@VAR20 = (@LEVEL1 + @LEVEL2 + @LEVEL3 + @LEVEL4) / 4", ""},
        {"@VAR20>60", "@SETPT1 = @VAR20 * 0.5 + 10", "@SETPT1 = 20"},
        {"@HR>=8&@HR<18", "@PUMP4 = 1", "@PUMP4 = 0"},
        {"@SU=0", "@VAR21 = 0\r\n@VAR22 = 0", ""},
        {"", "@VAR21 = @VAR21 + 1", ""},
        {"@VAR21>100", "@VAR21 = 0\r\n@VAR22 = @VAR22 + 1", ""},
        {"", "@VAR23 = SIN(@VAR21 / 10) * 50 + 50", ""},
        {"@VAR23>75", "@SETPT2 = 1", "@SETPT2 = 0"},
        {"@LEVEL6<>@LEVEL7", "@VAR24 = ABS(@LEVEL6 - @LEVEL7)", "@VAR24 = 0"},
        {"@VAR24>5", "@VAR25 = 1", "@VAR25 = 0"},
        {"", "@VAR26 = SQR(@LEVEL8 * @LEVEL8 + 1)", ""},
        {"", "@VAR27 = @VAR27 * 0.9 + @LEVEL1 * 0.1", ""},
        {"@VAR27>@LEVEL1", "@VAR28 = 1", "@VAR28 = 0"},
        {"(@LEVEL1>10)&(@LEVEL2>10)&(@SW1=1)", "@VAR29 = 1", "@VAR29 = 0"},
        {"", "@VAR30 = LOG(@LEVEL2 + 1) + EXP(0 - @LEVEL3 / 100)", ""},
        {"@MN=0&@SC<2", "@VAR31 = @VAR31 + 1", ""},
        {"", "@VAR32 = 2 ^ (@LEVEL4 / 50)", ""},
        {"@VAR32>3", "@PUMP4 = 1", ""},
        {"", "@VAR30 = ATN(@LEVEL5 / 10) * 57.29578", ""},
        {"@VAR30>45", "@VAR31 = COS(@VAR30 / 57.29578)", "@VAR31 = 1"},
        {"@DW=1|@DW=7", "@VAR28 = @VAR28 + 0", ""},
        {"@LEVEL1<5", "@SETPT1 = 0", ""},
        {"", "@VAR19 = @VAR19 - 1", ""},
        {"@VAR19<0", "@VAR19 = 0", ""},
        {"@SW2=1|@SW3=1", "@VAR25 = @VAR25 + 1", ""},
        {"@LEVEL3<=@LEVEL4", "@VAR28 = @VAR28 + 0", "@VAR28 = 0"},
        {"", "@VAR29 = TAN(@LEVEL6 / 200)", ""},
    };
    InstallControlLines(st, lines, 30);
}

// Alarms on the eight ramping inputs and twelve variables the statements move.
void buildAlarms(Station& st, bool crossing) {
    const int tags[20] = {1, 2, 3, 4, 5, 6, 7, 8, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    for (int n = 1; n <= 20; ++n) {
        AlarmDef& a = st.alarms.Alarms[n];
        a.TagNo = static_cast<std::int16_t>(tags[n - 1]);
        a.TagName = st.tags[a.TagNo].TagName;
        a.HiMsg = a.TagName + " too high";
        a.LoMsg = a.TagName + " too low";
        a.NormMsg = a.TagName + " back to normal";
        // The inputs ramp through about 10 engineering units per channel step.
        const float base = n <= 8 ? static_cast<float>(n) * 10.0f : 40.0f;
        a.HiVal = crossing ? base + 9.0f : 1e9f;
        a.LoVal = crossing ? base + 1.0f : -1e9f;
    }
    st.switches.AlarmsEnabled = 1;
}

// Screen 1 shows ten analog and ten digital tags, so every box of the readings window moves.
void buildScreens(Station& st) {
    st.screens.Headers[1].Title = "Everything";
    const int lines[20] = {1, 2, 3, 4, 5, 6, 7, 8, 13, 14, 9, 10, 11, 12, 15, 16, 17, 18, 0, 0};
    for (int line = 1; line <= 20; ++line) {
        ScreenLine& l = st.screens.Lines(1, line);
        l.TagNumber = static_cast<std::int16_t>(lines[line - 1]);
        l.TagName = l.TagNumber > 0 ? st.tags[l.TagNumber].TagName : "";
    }
}

}  // namespace

void BuildFullStation(Station& st, bool crossingAlarms) {
    buildTags(st);
    buildControls(st);
    buildAlarms(st, crossingAlarms);
    for (int trend = 1; trend <= 10; ++trend)
        for (int pen = 1; pen <= 4; ++pen)
            st.trends.TrendTable(trend, pen) =
                static_cast<std::int16_t>(1 + ((trend - 1) * 4 + pen - 1) % 32);
    buildScreens(st);
}

void LogEverythingTo(Station& st, const std::string& file) {
    st.logging.LogFileName = file;
    st.logging.OverwriteFile = 1;
    st.logging.LogTimeColumn = Variant::integer(1);
    st.logging.LogDateColumn = Variant::integer(1);
    st.switches.LoggingEnabled = Variant::integer(1);
    OpenLogFile(st);
}

}  // namespace kova::bench
