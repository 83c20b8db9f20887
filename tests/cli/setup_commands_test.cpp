// The dump, build and check commands of kova-cli, run as a user runs them.
#include <gtest/gtest.h>

#include <algorithm>

#include <bit>
#include <functional>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli_runner.h"
#include "core/setup_file.h"
#include "kova_version.h"
#include "support/setup_fixtures.h"
#include "support/test_support.h"
#include "tags/tag_table.h"

namespace kova::test {

namespace {

using Json = nlohmann::ordered_json;

std::string Rich() {
    auto st = std::make_unique<Station>();
    FillRichConfiguration(*st);
    return EncodeSetupFile(*st);
}

// A configuration every check accepts: the defaults.
std::string Clean() {
    auto st = std::make_unique<Station>();
    return EncodeSetupFile(*st);
}

bool OneLine(const std::string& s) {
    return !s.empty() && s.back() == '\n' && s.find('\n') == s.size() - 1;
}

testing::AssertionResult SameBytes(const std::string& a, const std::string& b) {
    if (a == b) return testing::AssertionSuccess();
    std::size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return testing::AssertionFailure()
           << "sizes " << a.size() << " and " << b.size() << ", first difference at byte " << i;
}

std::vector<std::string> Keys(const Json& j) {
    std::vector<std::string> keys;
    for (const auto& item : j.items()) keys.push_back(item.key());
    return keys;
}

Json Dump(const TempFolder& dir, const std::string& bytes) {
    WriteFileBytes(dir / "in.SUF", bytes);
    const CliResult r = RunCli({"dump", (dir / "in.SUF").string()});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    return Json::parse(r.out);
}

}  // namespace

TEST(CliCommands, NoCommandIsAOneLineErrorWithExitCode2) {
    const CliResult r = RunCli({});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "kova-cli: no command given (kova-cli --help lists them)\n");
    EXPECT_EQ(r.out, "");
}

TEST(CliCommands, UnknownCommandIsAOneLineErrorWithExitCode2) {
    const CliResult r = RunCli({"dumpp", "x.SUF"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "kova-cli: unknown command \"dumpp\" (kova-cli --help lists the commands)\n");
}

TEST(CliCommands, HelpListsTheCommands) {
    const CliResult r = RunCli({"--help"});
    EXPECT_EQ(r.exitCode, 0);
    for (const char* c : {"kova-cli dump FILE.SUF", "kova-cli build FILE.json -o FILE.SUF",
                          "kova-cli check FILE.SUF", "kova-cli run FILE.SUF"})
        EXPECT_NE(r.out.find(c), std::string::npos) << c;
}

TEST(CliCommands, VersionIsTheProjectsAndTheHelpNamesIt) {
    const CliResult r = RunCli({"--version"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, std::string("kova-cli ") + kVersion + "\n");
    EXPECT_EQ(RunCli({"--help"}).out.rfind(std::string("kova-cli ") + kVersion + ": ", 0), 0u);
}

TEST(CliDump, NeedsExactlyOneFile) {
    for (const auto& args : std::vector<std::vector<std::string>>{
             {"dump"}, {"dump", "a.SUF", "b.SUF"}, {"dump", "--pretty"}}) {
        const CliResult r = RunCli(args);
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_TRUE(OneLine(r.err)) << r.err;
        EXPECT_EQ(r.err.rfind("kova-cli: dump: ", 0), 0u) << r.err;
        EXPECT_NE(r.err.find("(kova-cli dump --help)\n"), std::string::npos) << r.err;
        EXPECT_EQ(r.out, "");
    }
}

TEST(CliDump, MissingFileIsNamed) {
    TempFolder dir;
    const CliResult r = RunCli({"dump", (dir / "None.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(OneLine(r.err)) << r.err;
    EXPECT_EQ(r.err.rfind("kova-cli: dump: " + (dir / "None.SUF").string() + ": cannot open", 0),
              0u)
        << r.err;
    EXPECT_EQ(r.out, "");
}

TEST(CliDump, CutFileNamesTheFileRecordAndItem) {
    TempFolder dir;
    WriteFileBytes(dir / "Cut.SUF", Rich().substr(0, 99 * 128 + 3));
    const CliResult r = RunCli({"dump", (dir / "Cut.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "kova-cli: dump: " + (dir / "Cut.SUF").string() +
                         ": record 100 (screen 4 line 4), TagName: the length 5 runs past the end "
                         "of the file\n");
    EXPECT_EQ(r.out, "");
}

TEST(CliDump, ListsEveryItemByNameInFileOrder) {
    TempFolder dir;
    const Json j = Dump(dir, Rich());
    EXPECT_EQ(Keys(j), (std::vector<std::string>{"tags",
                                                 "screens",
                                                 "TrendTable",
                                                 "IOPeriod",
                                                 "IOUnits",
                                                 "LogPeriod",
                                                 "LogUnits",
                                                 "TrendAtLogPeriod",
                                                 "LogTimeColumn",
                                                 "LogDateColumn",
                                                 "LogFileName",
                                                 "OverwriteFile",
                                                 "PrinterPortNumber",
                                                 "PrinterPortBase",
                                                 "LogMode",
                                                 "StopSampleCount",
                                                 "StartHour",
                                                 "StartMinute",
                                                 "StartTimeSecs",
                                                 "StopHour",
                                                 "StopMinute",
                                                 "StopTimeSecs",
                                                 "ConditionTag",
                                                 "StartValue",
                                                 "StartAbove",
                                                 "StopValue",
                                                 "StopAbove",
                                                 "LoggingEnabled",
                                                 "DailyFiles",
                                                 "LogDirectory",
                                                 "DateFormatUS",
                                                 "alarms",
                                                 "AlarmsEnabled",
                                                 "controls",
                                                 "ControlsEnabled",
                                                 "DaqType"}));
    ASSERT_EQ(j["tags"].size(), 32u);
    for (const auto& tag : j["tags"])
        EXPECT_EQ(Keys(tag),
                  (std::vector<std::string>{"Label", "TagName", "IOName", "Kind", "Direction",
                                            "Address", "IONumber", "RawValue1", "EngValue1",
                                            "RawValue2", "EngValue2", "EngText1", "EngText2",
                                            "Slope", "Offset", "Units", "Log", "Value"}));
    ASSERT_EQ(j["screens"].size(), 10u);
    for (const auto& screen : j["screens"]) {
        EXPECT_EQ(Keys(screen), (std::vector<std::string>{"Title", "JumpTo", "Lines"}));
        ASSERT_EQ(screen["Lines"].size(), 20u);
        for (const auto& line : screen["Lines"])
            EXPECT_EQ(Keys(line), (std::vector<std::string>{"TagName", "TagNumber", "Editing"}));
    }
    ASSERT_EQ(j["TrendTable"].size(), 10u);
    for (const auto& pens : j["TrendTable"]) EXPECT_EQ(pens.size(), 4u);
    ASSERT_EQ(j["alarms"].size(), 20u);
    for (const auto& alarm : j["alarms"])
        EXPECT_EQ(Keys(alarm),
                  (std::vector<std::string>{"TagName", "TagNo", "HiVal", "HiMsg", "LoVal", "LoMsg",
                                            "NormMsg", "LastText", "State"}));
    ASSERT_EQ(j["controls"].size(), 30u);
    for (const auto& line : j["controls"])
        EXPECT_EQ(Keys(line),
                  (std::vector<std::string>{"IfText", "IfCode", "ThenText", "ThenCode", "ElseText",
                                            "ElseCode", "LastResult", "ThenOnRise"}));
}

TEST(CliDump, ShowsTheValuesWithTheirTypes) {
    TempFolder dir;
    const Json j = Dump(dir, Rich());
    EXPECT_EQ(j["tags"][0]["Label"], "Tank 1 °C");
    EXPECT_EQ(j["tags"][0]["Units"], "°C");
    EXPECT_EQ(j["tags"][0]["EngText1"], "OFF€1");
    EXPECT_EQ(j["tags"][0]["RawValue2"], 4094);
    EXPECT_EQ(j["screens"][1]["Title"], "Screen 2 – Boiler");
    EXPECT_EQ(j["screens"][1]["JumpTo"], 9);
    EXPECT_EQ(j["screens"][1]["Lines"][1]["Editing"], -1);
    EXPECT_EQ(j["TrendTable"][2], Json::parse("[9, 10, 11, 12]"));
    EXPECT_EQ(j["IOPeriod"], 500);
    EXPECT_EQ(j["LogTimeColumn"], Json::parse(R"({"type": 11, "value": -1})"));
    EXPECT_EQ(j["StopSampleCount"], Json::parse(R"({"type": 3, "value": 32000})"));
    EXPECT_EQ(j["StartHour"], Json::parse(R"({"type": 8, "value": "22"})"));
    EXPECT_EQ(j["StartMinute"], Json::parse(R"({"type": 4, "value": 30.5})"));
    EXPECT_EQ(j["StartTimeSecs"], Json::parse(R"({"type": 5, "value": 81000.25})"));
    EXPECT_EQ(j["StopHour"], Json::parse(R"({"type": 7, "value": 46341.75})"));
    EXPECT_EQ(j["StopMinute"], Json::parse(R"({"type": 1, "value": null})"));
    EXPECT_EQ(j["StartValue"], Json::parse(R"({"type": 0, "value": null})"));
    EXPECT_EQ(j["StopTimeSecs"], 21600);
    EXPECT_EQ(j["LogFileName"], "C:\\LOGS\\Kühlhaus.CSV");
    EXPECT_EQ(j["alarms"][19]["LastText"], "ALARM 11-15-2026 14:05:09 Tank too hot");
    EXPECT_EQ(j["controls"][0]["ThenText"], "@PUMP=1\r\n@FAN=0");
    EXPECT_EQ(j["DaqType"], 3);
}

TEST(CliDump, WritesSinglesAsTheirShortestDecimal) {
    TempFolder dir;
    Station st;
    st.tags[1].EngValue1 = 0.1f;
    st.tags[1].EngValue2 = std::numeric_limits<float>::max();
    st.tags[1].Slope = std::numeric_limits<float>::denorm_min();
    st.tags[1].Offset = -0.0f;
    st.tags[1].Value = std::numeric_limits<float>::quiet_NaN();
    st.tags[2].Value = -std::numeric_limits<float>::infinity();
    st.tags[3].Value = 16777216.0f;
    st.logging.StopValue = 50.1f;
    st.logging.StartValue = Variant::real(static_cast<double>(0.1f));
    st.logging.StartMinute = Variant::single(0.3f);
    WriteFileBytes(dir / "f.SUF", EncodeSetupFile(st));
    const CliResult r = RunCli({"dump", (dir / "f.SUF").string()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (const char* text :
         {"\"EngValue1\": 0.1,", "\"EngValue2\": 3.4028235e+38,", "\"Slope\": 1e-45,",
          "\"Offset\": -0.0,", "\"Value\": \"NaN\"", "\"Value\": \"-Infinity\"",
          "\"Value\": 16777216\n", "\"StopValue\": 50.1,",
          "\"StartMinute\": {\"type\": 4, \"value\": 0.3}",
          "\"StartValue\": {\"type\": 5, \"value\": 0.10000000149011612}"})
        EXPECT_NE(r.out.find(text), std::string::npos) << text;
}

TEST(CliDumpBuild, DumpThenBuildGivesIdenticalBytes) {
    TempFolder dir;
    Station defaults;
    for (const std::string& original : {Rich(), EncodeSetupFile(defaults)}) {
        WriteFileBytes(dir / "a.SUF", original);
        const CliResult dumped = RunCli({"dump", (dir / "a.SUF").string()});
        ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
        WriteFileBytes(dir / "a.json", dumped.out);
        const CliResult built =
            RunCli({"build", (dir / "a.json").string(), "-o", (dir / "b.SUF").string()});
        ASSERT_EQ(built.exitCode, 0) << built.err;
        EXPECT_EQ(built.out + built.err, "");
        EXPECT_TRUE(SameBytes(ReadFileBytes(dir / "b.SUF"), original));
    }
}

TEST(CliBuild, AcceptsHandWrittenNumbers) {
    TempFolder dir;
    Json j = Dump(dir, Rich());
    j["tags"][0]["EngValue1"] = 0.1;  // as a double: the nearest single is taken
    j["tags"][0]["Value"] = 12;       // a whole number for a float
    j["StopValue"] = Json::parse("0.10000000149011612");
    j["LoggingEnabled"] = Json::parse(R"({"type": 11, "value": true})");
    WriteFileBytes(dir / "hand.json", j.dump());
    const CliResult r =
        RunCli({"build", (dir / "hand.json").string(), "-o", (dir / "hand.SUF").string()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Station st;
    std::string error;
    ASSERT_TRUE(DecodeSetupFile(st, ReadFileBytes(dir / "hand.SUF"), error)) << error;
    EXPECT_EQ(st.tags[1].EngValue1, 0.1f);
    EXPECT_EQ(st.tags[1].Value, 12.0f);
    EXPECT_EQ(st.logging.StopValue, 0.1f);
    EXPECT_EQ(st.switches.LoggingEnabled, Variant::boolean(true));
}

TEST(CliBuild, RefusesMissingKeysAndWrongTypesNamingTheKey) {
    TempFolder dir;
    const Json good = Dump(dir, Rich());
    struct Case {
        std::function<void(Json&)> change;
        std::string message;
    };
    const std::vector<Case> cases = {
        {[](Json& j) { j.erase("IOUnits"); }, "key IOUnits is missing"},
        {[](Json& j) { j["tags"][3].erase("Units"); }, "key tags[3].Units is missing"},
        {[](Json& j) { j["tags"][3]["Kind"] = "x"; },
         "key tags[3].Kind: expected a 16-bit integer"},
        {[](Json& j) { j["tags"][3]["Kind"] = 40000; },
         "key tags[3].Kind: expected a 16-bit integer"},
        {[](Json& j) { j["tags"][3]["Kind"] = 1.5; },
         "key tags[3].Kind: expected a 16-bit integer"},
        {[](Json& j) { j["tags"][0]["Label"] = 5; }, "key tags[0].Label: expected a string"},
        {[](Json& j) { j["tags"].erase(31); }, "key tags: expected an array of 32"},
        {[](Json& j) { j["screens"][2]["Lines"].erase(0); },
         "key screens[2].Lines: expected an array of 20"},
        {[](Json& j) { j["screens"][2] = 3; }, "key screens[2]: expected an object"},
        {[](Json& j) { j["TrendTable"][9][3] = 1.5; },
         "key TrendTable[9][3]: expected a 16-bit integer"},
        {[](Json& j) { j["StopTimeSecs"] = 3000000000LL; },
         "key StopTimeSecs: expected a 32-bit integer"},
        {[](Json& j) { j["StopValue"] = "fast"; }, "key StopValue: expected a number"},
        {[](Json& j) { j["StopValue"] = 1e39; },
         "key StopValue: expected a number that fits a single float"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 9, "value": 1})"); },
         "key StartHour.type: unknown variant type 9 (known: 0, 1, 2, 3, 4, 5, 7, 8, 11)"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 2})"); },
         "key StartHour.value is missing"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 2, "value": 70000})"); },
         "key StartHour.value: expected a 16-bit integer"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 8, "value": 1})"); },
         "key StartHour.value: expected a string"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 0, "value": 1})"); },
         "key StartHour.value: expected null for this variant type"},
        {[](Json& j) { j["StartHour"] = Json::parse(R"({"type": 2, "value": 1, "note": 1})"); },
         "key StartHour.note is not a setup file item"},
        {[](Json& j) { j["StartHour"] = 7; },
         "key StartHour: expected an object {\"type\": ..., \"value\": ...}"},
        {[](Json& j) { j["Colour"] = "red"; }, "key Colour is not a setup file item"},
        {[](Json& j) { j["tags"][1]["Colour"] = "red"; },
         "key tags[1].Colour is not a setup file item"},
        {[](Json& j) { j = Json::array(); }, "the top level: expected an object"},
    };
    for (const Case& c : cases) {
        Json j = good;
        c.change(j);
        WriteFileBytes(dir / "bad.json", j.dump());
        const CliResult r =
            RunCli({"build", (dir / "bad.json").string(), "-o", (dir / "out.SUF").string()});
        EXPECT_EQ(r.exitCode, 2) << c.message;
        EXPECT_EQ(r.err,
                  "kova-cli: build: " + (dir / "bad.json").string() + ": " + c.message + "\n");
        EXPECT_FALSE(std::filesystem::exists(dir / "out.SUF")) << c.message;
    }
}

TEST(CliBuild, RefusesATagNameNoTopicCanCarry) {
    TempFolder dir;
    Json j = Dump(dir, Rich());
    j["tags"][2]["TagName"] = "LINE/2";
    WriteFileBytes(dir / "slash.json", j.dump());
    const std::string in = (dir / "slash.json").string();
    const CliResult r = RunCli({"build", in, "-o", (dir / "slash.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err,
              "kova-cli: build: " + in +
                  ": key tags[2].TagName: Tag Name cannot contain +, # or /. These characters "
                  "have a meaning of their own in the MQTT topics a station publishes its tags "
                  "under\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "slash.SUF"));
}

TEST(CliBuild, RefusesAKeyGivenTwiceNamingItAndItsLines) {
    TempFolder dir;
    WriteFileBytes(dir / "in.SUF", Rich());
    const CliResult dumped = RunCli({"dump", (dir / "in.SUF").string()});
    ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
    const auto lineOf = [](const std::string& text, std::size_t at) {
        return std::to_string(1 + std::count(text.begin(), text.begin() + at, '\n'));
    };
    {
        // The module type given twice: the last would win without a word.
        std::string text = dumped.out;
        const auto at = text.find("\"DaqType\": ");
        ASSERT_NE(at, std::string::npos);
        const auto end = text.find('\n', at);
        text.insert(end, ",\n  \"DaqType\": 3");
        WriteFileBytes(dir / "twice.json", text);
        const std::string in = (dir / "twice.json").string();
        const CliResult r = RunCli({"build", in, "-o", (dir / "twice.SUF").string()});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_EQ(r.err, "kova-cli: build: " + in +
                             ": key \"DaqType\" appears twice in one object, on lines " +
                             lineOf(text, at) + " and " + lineOf(text, end + 2) +
                             ": each key may be given once\n");
        EXPECT_FALSE(std::filesystem::exists(dir / "twice.SUF"));
    }
    {
        // Inside a tag, on one line; a key of the same name in another object is no
        // duplicate.
        const std::string text =
            "{\"tags\": [{\"Label\": \"A\", \"Units\": \"m\", \"Label\": \"B\"}],\n"
            "\"Label\": 1}";
        WriteFileBytes(dir / "tag.json", text);
        const std::string in = (dir / "tag.json").string();
        const CliResult r = RunCli({"build", in, "-o", (dir / "tag.SUF").string()});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_EQ(r.err, "kova-cli: build: " + in +
                             ": key \"Label\" appears twice in one object, on lines 1 and 1: "
                             "each key may be given once\n");
    }
}

TEST(CliBuild, RefusesTextThatIsNotJson) {
    TempFolder dir;
    WriteFileBytes(dir / "bad.json", "{\"tags\": [");
    const CliResult r =
        RunCli({"build", (dir / "bad.json").string(), "-o", (dir / "o.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(OneLine(r.err)) << r.err;
    EXPECT_EQ(
        r.err.rfind("kova-cli: build: " + (dir / "bad.json").string() + ": not valid JSON: ", 0),
        0u)
        << r.err;
}

TEST(CliBuild, TagThatDoesNotFitItsRecordLeavesTheOldFileIntact) {
    TempFolder dir;
    const std::string old = Rich();
    WriteFileBytes(dir / "Plant.SUF", old);
    Json j = Dump(dir, old);
    j["tags"][4]["Label"] = std::string(100, 'x');
    WriteFileBytes(dir / "big.json", j.dump());
    const CliResult r =
        RunCli({"build", (dir / "big.json").string(), "-o", (dir / "Plant.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    // 46 bytes of numbers and lengths, texts of 100 + 5 + 4 + 5 + 5 + 2 bytes.
    EXPECT_EQ(r.err, "kova-cli: build: " + (dir / "Plant.SUF").string() +
                         ": cannot save: record 5 (tag 5): needs 167 bytes, more than the 128 of "
                         "a record\n");
    EXPECT_TRUE(SameBytes(ReadFileBytes(dir / "Plant.SUF"), old));
}

TEST(CliBuild, TextOutsideWindows1252IsRefused) {
    TempFolder dir;
    Json j = Dump(dir, Rich());
    j["alarms"][0]["HiMsg"] = "过热";
    WriteFileBytes(dir / "x.json", j.dump());
    const CliResult r =
        RunCli({"build", (dir / "x.json").string(), "-o", (dir / "x.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "kova-cli: build: " + (dir / "x.SUF").string() +
                         ": cannot save: record 311 (alarm 1), HiMsg: holds a character that "
                         "Windows-1252 cannot represent\n");
}

TEST(CliBuild, NeedsAnInputAndAnOutput) {
    TempFolder dir;
    for (const auto& args :
         std::vector<std::vector<std::string>>{{"build"},
                                               {"build", "a.json"},
                                               {"build", "a.json", "-o"},
                                               {"build", "-o", "x.SUF"},
                                               {"build", "a.json", "b.json", "-o", "x.SUF"}}) {
        const CliResult r = RunCli(args);
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_TRUE(OneLine(r.err)) << r.err;
        EXPECT_EQ(r.err.rfind("kova-cli: build: ", 0), 0u) << r.err;
        EXPECT_NE(r.err.find("(kova-cli build --help)\n"), std::string::npos) << r.err;
    }
    const CliResult r =
        RunCli({"build", (dir / "none.json").string(), "-o", (dir / "x.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(OneLine(r.err));
    EXPECT_NE(r.err.find((dir / "none.json").string() + ": cannot open"), std::string::npos);
}

TEST(CliCheck, CleanFileExitsZero) {
    TempFolder dir;
    WriteFileBytes(dir / "ok.SUF", Clean());
    const CliResult r = RunCli({"check", (dir / "ok.SUF").string()});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, (dir / "ok.SUF").string() + ": no problems found\n");
}

TEST(CliCheck, ReportsEveryProblemAndExitsOne) {
    TempFolder dir;
    std::string file = Rich();
    file[4 * 128] = '\xF4';  // tag 5's Label claims 500 bytes
    file[4 * 128 + 1] = '\x01';
    file[287 * 128] = 9;  // LogTimeColumn of an unknown variant type
    WriteFileBytes(dir / "bad.SUF", file);
    const std::string p = (dir / "bad.SUF").string();
    const CliResult r = RunCli({"check", p});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out,
              p + ": record 5 (tag 5), Label: the length 500 runs past the end of its record\n" +
                  p + ": record 288 (LogTimeColumn): unknown variant type 9\n");
}

TEST(CliCheck, ReportsAFileCutShortOnce) {
    TempFolder dir;
    WriteFileBytes(dir / "cut.SUF", Rich().substr(0, 300 * 128));
    const std::string p = (dir / "cut.SUF").string();
    const CliResult r = RunCli({"check", p});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out,
              p + ": record 301 (StopTimeSecs): missing, the file ends at byte 38400 (a setup "
                  "file has 363 records)\n");
}

TEST(CliCheck, UnreadableFileIsAnErrorWithExitCode2) {
    TempFolder dir;
    const CliResult r = RunCli({"check", (dir / "none.SUF").string()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(OneLine(r.err));
    EXPECT_EQ(r.out, "");
    const CliResult noArgs = RunCli({"check"});
    EXPECT_EQ(noArgs.exitCode, 2);
    EXPECT_TRUE(OneLine(noArgs.err)) << noArgs.err;
    EXPECT_EQ(noArgs.err.rfind("kova-cli: check: ", 0), 0u) << noArgs.err;
    EXPECT_NE(noArgs.err.find("FILE.SUF"), std::string::npos) << noArgs.err;
}

TEST(CliCheck, ReportsControlLinesThatDoNotCompile) {
    TempFolder dir;
    WriteFileBytes(dir / "c.SUF", Rich());  // its statements name tags the file does not have
    const CliResult r = RunCli({"check", (dir / "c.SUF").string()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.out.find("control line 1: the control statement editor refuses it (\"Unknown "
                         "Token @PUMP in Then Statement\")"),
              std::string::npos);
}

TEST(CliCheck, ReportsAnUnknownModuleType) {
    TempFolder dir;
    auto st = std::make_unique<Station>();
    st->profile.TypeCode = 9;
    WriteFileBytes(dir / "t.SUF", EncodeSetupFile(*st));
    const CliResult r = RunCli({"check", (dir / "t.SUF").string()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.out.find("DaqType 9 is not a module type (0..5)"), std::string::npos);
}

TEST(CliCheck, ReportsTagsTheTagEditorRefuses) {
    TempFolder dir;
    auto st = std::make_unique<Station>();  // the TEST module: 8 AI, 2 AO, 4 DI, 4 DO
    auto tag = [&](int n, const char* name, const char* io, int raw2, float eng2) {
        Tag& t = st->tags[n];
        t.TagName = name;
        BindIOName(t, io);
        t.Address = 1;
        t.RawValue2 = static_cast<std::int16_t>(raw2);
        t.EngValue2 = eng2;
        t.EngText2 = "ON";
    };
    tag(1, "LEVEL", "AI-1", 4095, 100);  // accepted
    tag(2, "FLOW", "AI-9", 4095, 100);
    st->tags[2].IONumber = 9;
    tag(3, "PUMP", "DO-1", 1, 1);
    tag(4, "PUMP", "DO-2", 1, 1);
    tag(5, "FLAT", "Analog Variable", 0, 1);
    tag(6, "FAR", "AI-2", 4095, 100);
    st->tags[6].Address = 2;
    tag(7, "TANK+1", "AI-3", 4095, 100);
    WriteFileBytes(dir / "t.SUF", EncodeSetupFile(*st));
    const std::string p = (dir / "t.SUF").string();
    const CliResult r = RunCli({"check", p});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(
        r.out,
        p + ": tag 2 (FLOW): the tag editor refuses it (\"I/O Name Not Selected From List \")\n" +
            p +
            ": tag 5 (FLAT): the tag editor refuses it (\"Error RawValue1 cannot equal "
            "RawValue2\")\n" +
            p + ": tag 6 (FAR): the tag editor refuses it (\"DAQ Address must be 1 \")\n" + p +
            ": tag 7 (TANK+1): the tag editor refuses it (\"Tag Name cannot contain +, # or /. "
            "These characters have a meaning of their own in the MQTT topics a station "
            "publishes its tags under\")\n" +
            p +
            ": tags 3 and 4: the tag editor refuses it (\"Duplicate Tag Names. See Tag Numbers 3 "
            "and 4.\")\n");
}

}  // namespace kova::test
