// kova-cli check against what the alarm, screen and trend set-up windows and the control
// statement editor refuse: one bad file per window, with the exact report.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "cli_runner.h"
#include "control/line_check.h"
#include "core/setup_file.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::test {
namespace {

// The TEST module (8 AI, 2 AO, 4 DI, 4 DO) with tags the tag editor accepts: LEVEL an
// analog input (tag 1), PUMP a digital output (tag 2), TEMP an analog input (tag 3).
std::unique_ptr<Station> WithTags() {
    auto st = std::make_unique<Station>();
    auto tag = [&](int n, const char* name, const char* io, int channel) {
        Tag& t = st->tags[n];
        t.TagName = name;
        BindIOName(t, io);
        t.Address = 1;
        t.IONumber = static_cast<std::int16_t>(channel);
        t.RawValue2 = t.Kind == kAnalog ? 4095 : 1;
        t.EngValue2 = 100;
        t.EngText2 = "ON";
    };
    tag(1, "LEVEL", "AI-1", 1);
    tag(2, "PUMP", "DO-1", 1);
    tag(3, "TEMP", "AI-2", 2);
    RebuildTagNameIndex(st->tags, st->nameIndex);
    return st;
}

struct Checked {
    std::string path;
    CliResult result;
};

Checked Check(const TempFolder& dir, const Station& st) {
    const std::string path = (dir / "bad.SUF").string();
    WriteFileBytes(dir / "bad.SUF", EncodeSetupFile(st));
    return {path, RunCli({"check", path})};
}

void SetAlarm(Station& st, int n, const char* name, float hi, float lo) {
    AlarmDef& a = st.alarms.Alarms[n];
    a.TagName = name;
    a.TagNo = static_cast<std::int16_t>(FindTag(st.nameIndex, name));
    a.HiVal = hi;
    a.LoVal = lo;
}

// A line stored as the editor stores it after its check: texts and their codes.
void StoreControl(Station& st, int n, const std::string& ifText, const std::string& thenText,
                  const std::string& elseText = "") {
    const LineCheck c = CheckLineTexts(st, nullptr, ifText, thenText, elseText);
    ControlLine& l = st.control.Lines[n];
    l.IfText = ifText;
    l.ThenText = thenText;
    l.ElseText = elseText;
    l.IfCode = c.ifCode;
    l.ThenCode = c.thenCode;
    l.ElseCode = c.elseCode;
}

}  // namespace

TEST(CliCheckWindows, TagsAloneCheckClean) {
    TempFolder dir;
    auto st = WithTags();
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 0) << c.result.out;
    EXPECT_EQ(c.result.out, c.path + ": no problems found\n");
}

TEST(CliCheckWindows, ReportsAlarmsTheAlarmSetUpWindowRefuses) {
    TempFolder dir;
    auto st = WithTags();
    SetAlarm(*st, 1, "LEVEL", 90, 10);  // accepted
    SetAlarm(*st, 2, "LEVEL", 10, 10);
    SetAlarm(*st, 3, "FLOW", 90, 10);
    SetAlarm(*st, 5, "TEMP", INFINITY, 10);  // the window shows "INF"
    SetAlarm(*st, 6, "TEMP", 90, 10);
    // Fits its record as stored, but the line the alarm would make does not.
    st->alarms.Alarms[6].HiMsg = std::string(40, 'H');
    st->alarms.Alarms[6].LoMsg = std::string(40, 'L');
    st->alarms.Alarms[7].HiMsg = "an unused alarm";  // no tag: not a problem
    st->alarms.Alarms[7].HiVal = 1;
    st->alarms.Alarms[7].LoVal = 5;
    st->alarms.Alarms[8].TagNo = 1;  // checked by the scan, shown as no alarm
    SetAlarm(*st, 9, "LEVEL", 90, 10);
    st->alarms.Alarms[9].TagNo = 3;
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 1) << c.result.err;
    const std::string& p = c.path;
    EXPECT_EQ(c.result.out,
              p +
                  ": alarm 2 (LEVEL): the alarm set-up window refuses it (\"High Alarm Value "
                  "must be greater than Low Alarm Value\")\n" +
                  p +
                  ": alarm 3 (FLOW): the alarm set-up window refuses it (\"Tag Name Not "
                  "Found\")\n" +
                  p +
                  ": alarm 5 (TEMP): the alarm set-up window refuses it (\"High and Low Alarm "
                  "Values must be numbers\")\n" +
                  p +
                  ": alarm 6 (TEMP): the alarm set-up window refuses it (\"Alarm messages too "
                  "long to save: the tag name and the three messages, with the longest message "
                  "counted twice, may have at most 80 characters together; these have 124\")\n" +
                  p +
                  ": alarm 8: TagNo 1 without a tag name: the alarm checks tag 1, the alarm "
                  "set-up window shows no tag and stores 0\n" +
                  p +
                  ": alarm 9: TagNo 3 is not the number of LEVEL (1): the alarm checks tag 3, "
                  "the alarm set-up window stores 1\n");
}

TEST(CliCheckWindows, ReportsScreensTheScreenSetUpWindowRefuses) {
    TempFolder dir;
    auto st = WithTags();
    auto line = [&](int screen, int l, const char* name) {
        ScreenLine& sl = st->screens.Lines(screen, l);
        sl.TagName = name;
        sl.TagNumber = static_cast<std::int16_t>(FindTag(st->nameIndex, name));
    };
    st->screens.Headers[1].JumpTo = 15;
    st->screens.Headers[2].JumpTo = 10;  // accepted, as are 0 and an empty line
    st->screens.Headers[3].JumpTo = -1;
    line(1, 1, "LEVEL");  // accepted
    line(1, 2, "PUMP");
    line(1, 3, "FLOW");
    line(1, 4, "TS");  // a system variable, typed in: accepted
    line(1, 5, "");
    st->screens.Lines(1, 5).TagNumber = 1;
    line(1, 6, "LEVEL");
    st->screens.Lines(1, 6).TagNumber = 3;
    line(1, 11, "PUMP");  // accepted
    line(1, 12, "TEMP");
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 1) << c.result.err;
    const std::string& p = c.path;
    EXPECT_EQ(c.result.out,
              p +
                  ": screen 1: JumpTo 15: the screen set-up window refuses it (\"ERROR - Jump to "
                  "must be a number between 1 and 10\")\n" +
                  p +
                  ": screen 1 line 2 (PUMP): the screen set-up window refuses it (\"Error PUMP "
                  "is a digital variable\")\n" +
                  p +
                  ": screen 1 line 3 (FLOW): the screen set-up window refuses it (\"Error FLOW "
                  "is not in Variable Database\")\n" +
                  p +
                  ": screen 1 line 5: TagNumber 1 without a tag name: the screen shows tag 1, "
                  "the screen set-up window shows no tag and stores 0\n" +
                  p +
                  ": screen 1 line 6: TagNumber 3 is not the number of LEVEL (1): the screen "
                  "shows tag 3, the screen set-up window stores 1\n" +
                  p +
                  ": screen 1 line 12 (TEMP): the screen set-up window refuses it (\"ERROR TEMP "
                  "is an analog variable\")\n" +
                  p +
                  ": screen 3: JumpTo -1: the screen set-up window refuses it (\"ERROR - Jump "
                  "to must be a number between 1 and 10\")\n");
}

TEST(CliCheckWindows, ReportsPensTheTrendSetUpWindowDoesNotKeep) {
    TempFolder dir;
    auto st = WithTags();
    // A name typed past the tag editor, which upper-cases names: the window cannot find it.
    Tag& flow = st->tags[4];
    flow.TagName = "flow";
    BindIOName(flow, "AI-3");
    flow.Address = 1;
    flow.IONumber = 3;
    flow.RawValue2 = 4095;
    flow.EngValue2 = 100;
    st->trends.TrendTable(1, 1) = 1;  // LEVEL: accepted
    st->trends.TrendTable(1, 2) = 4;
    st->trends.TrendTable(2, 3) = 9;   // a tag without a name
    st->trends.TrendTable(3, 4) = 33;  // TS: accepted
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 1) << c.result.err;
    const std::string& p = c.path;
    EXPECT_EQ(c.result.out, p +
                                ": trend 1 pen 2 (tag 4): the trend set-up window refuses it "
                                "(\"Tag Name FLOW not Found\")\n" +
                                p +
                                ": trend 2 pen 3 (tag 9): the tag has no name, so the trend "
                                "set-up window shows the pen empty and stores 0\n");
}

TEST(CliCheckWindows, ReportsControlLinesTheEditorRefuses) {
    TempFolder dir;
    auto st = WithTags();
    StoreControl(*st, 1, "@LEVEL > 40", "@PUMP = 1", "@PUMP = 0");  // accepted
    // Compiles, but PUMP is digital: executing it once, as the editor does, fails.
    StoreControl(*st, 2, "", "@PUMP = 1\r\n@PUMP = 2");
    st->control.Lines[3].IfText = "@FLOW > 1";
    st->control.Lines[3].ThenText = "@PUMP = 1 +";
    StoreControl(*st, 4, "", "@TEMP = 3");  // an analog input takes only 0 and 1
    StoreControl(*st, 5, "@LEVEL > 40", "@PUMP = 1");
    st->control.Lines[5].IfText = "@LEVEL > 50";  // the code is still that of "> 40"
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 1) << c.result.err;
    const std::string& p = c.path;
    EXPECT_EQ(c.result.out,
              p +
                  ": control line 2: the control statement editor refuses it (\"Syntax Error in "
                  "Then Statement\")\n" +
                  p +
                  ": control line 3: the control statement editor refuses it (\"Unknown Token "
                  "@FLOW in If Statement\")\n" +
                  p +
                  ": control line 3: the control statement editor refuses it (\"Syntax Error in "
                  "Then Statement\")\n" +
                  p +
                  ": control line 4: the control statement editor refuses it (\"Syntax Error in "
                  "Then Statement\")\n" +
                  p +
                  ": control line 5: Stored Code Does Not Match The Statement Text. Check The "
                  "Line In The Editor\n");
}

TEST(CliCheckWindows, TheDemoConfigurationChecksClean) {
    TempFolder dir;
    const char* src = std::getenv("KOVA_SOURCE_DIR");
    ASSERT_NE(src, nullptr) << "KOVA_SOURCE_DIR names the source folder";
    const std::string demo = (std::filesystem::path(src) / "examples" / "demo.json").string();
    const std::string out = (dir / "demo.SUF").string();
    const CliResult built = RunCli({"build", demo, "-o", out});
    ASSERT_EQ(built.exitCode, 0) << built.err;
    const CliResult r = RunCli({"check", out});
    EXPECT_EQ(r.exitCode, 0) << r.out;
    EXPECT_EQ(r.out, out + ": no problems found\n");
}

}  // namespace kova::test

namespace kova::test {

TEST(CliCheckWindows, ControlLinesOnTagsWithImpossibleChannelsAreReportedNotFatal) {
    TempFolder dir;
    auto st = WithTags();
    StoreControl(*st, 1, "", "@PUMP = 1");
    st->tags[2].IONumber = 20;  // no module has digital output 20
    const Checked c = Check(dir, *st);
    EXPECT_EQ(c.result.exitCode, 1) << c.result.err;
    EXPECT_EQ(c.result.err, "");
    const std::string& p = c.path;
    EXPECT_EQ(c.result.out,
              p +
                  ": tag 2 (PUMP): the tag editor refuses it (\"I/O Number of Digital Outputs "
                  "must be between 1 and 4\")\n" +
                  p +
                  ": control line 1: executing it fails: Subscript out of range: digital output "
                  "bit index 20 not in 1..16\n");
}

}  // namespace kova::test
