// kova-cli against a hostile world: devices and FIFOs where files should be, full disks,
// cut and oversized files, impossible option values. Every case ends with one line naming
// the file (or the option) and exit code 2; none hangs or crashes.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli_runner.h"
#include "core/configuration.h"
#include "core/setup_file.h"
#include "support/test_support.h"
#include "tags/daq_profile.h"

namespace kova::test {
namespace {

namespace fs = std::filesystem;

bool OneLine(const std::string& s) {
    return !s.empty() && s.back() == '\n' && s.find('\n') == s.size() - 1;
}

bool Names(const std::string& text, const std::string& what) {
    return text.find(what) != std::string::npos;
}

struct Folder {
    TempFolder dir;
    std::string save(const Station& st, const std::string& name = "run.SUF") {
        SaveConfiguration(st, dir / name);
        return (dir / name).string();
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string zeroLink(const std::string& name) {
        fs::create_symlink("/dev/zero", dir / name);
        return path(name);
    }
    // A link to /dev/full: writing through it fails as on a full disk, and a writer that
    // wrongly replaced it would replace the link, never the device.
    std::string fullLink(const std::string& name) {
        fs::create_symlink("/dev/full", dir / name);
        return path(name);
    }
    std::string fifo(const std::string& name) {
        EXPECT_EQ(::mkfifo(path(name).c_str(), 0600), 0);
        return path(name);
    }
};

std::string Defaults(Folder& f) {
    auto st = std::make_unique<Station>();
    return f.save(*st);
}

void ExpectRefusal(const CliResult& r, const std::string& named) {
    EXPECT_EQ(r.exitCode, 2) << r.err;
    EXPECT_TRUE(OneLine(r.err)) << r.err;
    EXPECT_TRUE(Names(r.err, named)) << r.err;
}

TEST(CliHostile, SetupFileThatIsALinkToDevZeroOrAFifoIsRefusedNamingIt) {
    Folder f;
    const std::string zero = f.zeroLink("zero.SUF");
    const std::string fifo = f.fifo("fifo.SUF");
    for (const std::string& file : {zero, fifo}) {
        ExpectRefusal(RunCli({"dump", file}), file);
        ExpectRefusal(RunCli({"check", file}), file);
        ExpectRefusal(RunCliIn(f.dir.path(), {"run", file, "--ticks", "1"}), file);
    }
}

TEST(CliHostile, JsonThatIsALinkToDevZeroOrAFifoIsRefusedNamingIt) {
    Folder f;
    for (const std::string& file : {f.zeroLink("zero.json"), f.fifo("fifo.json")})
        ExpectRefusal(RunCli({"build", file, "-o", f.path("x.SUF")}), file);
    EXPECT_FALSE(fs::exists(f.dir / "x.SUF"));
}

TEST(CliHostile, OversizedAndCutSetupFilesAreRefusedNamingThem) {
    Folder f;
    const std::string good = Defaults(f);
    const std::string bytes = ReadFileBytes(good);
    WriteFileBytes(f.dir / "big.SUF", bytes + std::string(2u << 20, '\0'));
    WriteFileBytes(f.dir / "cut.SUF", bytes.substr(0, 1000));
    for (const char* name : {"big.SUF", "cut.SUF"}) {
        ExpectRefusal(RunCli({"dump", f.path(name)}), f.path(name));
        ExpectRefusal(RunCliIn(f.dir.path(), {"run", f.path(name), "--ticks", "1"}), f.path(name));
    }
}

TEST(CliHostile, DumpToAFullDiskSaysSoAndExitsTwo) {
    Folder f;
    const CliResult r = RunCliTo({}, {"dump", Defaults(f)}, "/dev/full");
    ExpectRefusal(r, "/dev/full");
    EXPECT_TRUE(Names(r.err, "kova-cli: dump: standard output")) << r.err;
    EXPECT_TRUE(Names(r.err, "No space left on device")) << r.err;
}

TEST(CliHostile, CheckToAFullDiskSaysSoAndExitsTwo) {
    Folder f;
    ExpectRefusal(RunCliTo({}, {"check", Defaults(f)}, "/dev/full"), "/dev/full");
}

TEST(CliHostile, RunWritingToAFullDiskNamesTheFileAndExitsTwo) {
    Folder f;
    const std::string file = Defaults(f);
    const std::string start = "2026-11-15 10:00:00";
    const std::string full = f.fullLink("full");
    ExpectRefusal(
        RunCliIn(f.dir.path(), {"run", file, "--ticks", "2", "--start", start, "--state", full}),
        full + ": cannot write: No space left on device");
    ExpectRefusal(
        RunCliIn(f.dir.path(), {"run", file, "--ticks", "2", "--start", start, "--save", full}),
        full + ": cannot replace: not a plain file");
    EXPECT_TRUE(fs::is_symlink(f.dir / "full"));
    ExpectRefusal(RunCliIn(f.dir.path(), {"run", file, "--ticks", "2", "--start", start, "--save",
                                          f.path("no/such/folder/x.SUF")}),
                  f.path("no/such/folder/x.SUF"));
    const std::string fifo = f.fifo("state.fifo");  // nobody reads it: an error, not a hang
    ExpectRefusal(
        RunCliIn(f.dir.path(), {"run", file, "--ticks", "2", "--start", start, "--state", fifo}),
        fifo);
    auto qrt110 = std::make_unique<Station>();
    BuildIOList(qrt110->profile, kDaqQrt110);  // its simulator prints the latched outputs
    ExpectRefusal(RunCliTo(f.dir.path(),
                           {"run", f.save(*qrt110, "qrt110.SUF"), "--ticks", "2", "--start", start,
                            "--port", "sim"},
                           "/dev/full"),
                  "kova-cli: run: standard output (/dev/full): cannot write: No space left");
}

TEST(CliHostile, RunWhoseLogFileCannotBeWrittenSaysSoAndExitsTwo) {
    Folder f;
    auto st = std::make_unique<Station>();
    st->logging.LogFileName = "/dev/full";
    st->logging.OverwriteFile = 1;
    st->tags[1].TagName = "A";
    st->tags[1].Log = 1;
    const CliResult r = RunCliIn(f.dir.path(), {"run", f.save(*st), "--ticks", "3", "--start",
                                                "2026-11-15 10:00:00", "--log"});
    EXPECT_EQ(r.exitCode, 2) << r.err;
    EXPECT_TRUE(Names(r.err, "/dev/full")) << r.err;
}

TEST(CliHostile, BuildToAFullDiskOrAMissingFolderNamesTheFile) {
    Folder f;
    const CliResult dumped = RunCli({"dump", Defaults(f)});
    ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
    WriteFileBytes(f.dir / "in.json", dumped.out);
    const std::string full = f.fullLink("full.SUF");
    ExpectRefusal(RunCli({"build", f.path("in.json"), "-o", full}), full);
    EXPECT_TRUE(fs::is_symlink(f.dir / "full.SUF"));
    ExpectRefusal(RunCli({"build", f.path("in.json"), "-o", f.fifo("out.fifo")}),
                  f.path("out.fifo"));
    ExpectRefusal(RunCli({"build", f.path("in.json"), "-o", f.path("none/x.SUF")}),
                  f.path("none/x.SUF"));
}

TEST(CliHostile, BuildNamesTheJsonFileForANumberNoDoubleHolds) {
    Folder f;
    WriteFileBytes(f.dir / "huge.json", "{\"Tags\": [1e400]}");
    const CliResult r = RunCli({"build", f.path("huge.json"), "-o", f.path("x.SUF")});
    ExpectRefusal(r, f.path("huge.json") + ": not valid JSON: ");
    EXPECT_FALSE(fs::exists(f.dir / "x.SUF"));
}

TEST(CliHostile, RunReportsABadCalibrationFileAsTheProgramDoesAndGoesOn) {
    const std::vector<std::pair<std::string, std::string>> bad = {
        {"cut", "4000 4000"}, {"long", std::string(5000, ' ') + "1 2 3"}, {"text", "a b c"}};
    for (const auto& [what, bytes] : bad) {
        Folder f;
        const std::string file = Defaults(f);
        WriteFileBytes(f.dir / "KOVA_P.CAL", bytes);
        const CliResult r =
            RunCliIn(f.dir.path(), {"run", file, "--ticks", "1", "--start", "2026-11-15 10:00:00"});
        EXPECT_EQ(r.exitCode, 0) << what << ": " << r.err;
        EXPECT_TRUE(OneLine(r.err)) << what << ": " << r.err;
        EXPECT_TRUE(Names(r.err, "kova-cli: run: " + (f.dir / "KOVA_P.CAL").string() + ": "))
            << what << ": " << r.err;
    }
}

TEST(CliHostile, CalibrationFileThatIsALinkToDevZeroOrAFifoNeitherHangsNorGrows) {
    for (const bool zero : {true, false}) {
        Folder f;
        const std::string file = Defaults(f);
        if (zero)
            f.zeroLink("KOVA_P.CAL");
        else
            f.fifo("KOVA_P.CAL");
        const CliResult r =
            RunCliIn(f.dir.path(), {"run", file, "--ticks", "1", "--start", "2026-11-15 10:00:00"});
        EXPECT_EQ(r.exitCode, 0) << r.err;
        EXPECT_TRUE(Names(r.err, (f.dir / "KOVA_P.CAL").string() + ": not a plain file")) << r.err;
    }
}

TEST(CliHostile, StartRefusesDatesThatDoNotExist) {
    Folder f;
    const std::string file = Defaults(f);
    for (const char* start : {"2026-02-31 00:00:00", "2026-02-29 00:00:00", "2026-04-31 12:00:00",
                              "2026-11-15 24:00:00", "2026-11-15 10:60:00", "2026-11-15 10:00:60",
                              "2026-11-15 10:00:00.5", "2026-11-15", "1899-12-31 00:00:00",
                              "2026-1-5 10:00:00", " 2026-11-15 10:00:00"}) {
        const CliResult r = RunCliIn(f.dir.path(), {"run", file, "--ticks", "1", "--start", start});
        ExpectRefusal(r, "--start");
        EXPECT_TRUE(Names(r.err, start)) << r.err;
    }
    for (const char* start : {"2028-02-29 00:00:00", "2026-12-31 23:59:59.999"}) {
        const CliResult r = RunCliIn(f.dir.path(), {"run", file, "--ticks", "1", "--start", start});
        EXPECT_EQ(r.exitCode, 0) << start << ": " << r.err;
    }
}

TEST(CliHostile, TicksRefusesNumbersItCannotHold) {
    Folder f;
    const std::string file = Defaults(f);
    for (const char* ticks :
         {"99999999999999999999", "9223372036854775808", "-1", "0x10", "1e3", "", "12 "}) {
        const CliResult r = RunCliIn(
            f.dir.path(), {"run", file, "--ticks", ticks, "--start", "2026-11-15 10:00:00"});
        ExpectRefusal(r, "--ticks");
    }
    const CliResult zero =
        RunCliIn(f.dir.path(), {"run", file, "--ticks", "0", "--start", "2026-11-15 10:00:00"});
    EXPECT_EQ(zero.exitCode, 0) << zero.err;
}

TEST(CliHostile, EachCommandHasItsOwnHelp) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> commands = {
        {"dump", {"FILE.SUF"}},
        {"build", {"FILE.json", "-o"}},
        {"check", {"FILE.SUF"}},
        {"run",
         {"FILE.SUF", "--ticks", "--start", "--poll", "--log", "--save", "--state", "--port"}}};
    for (const auto& [command, words] : commands) {
        const CliResult r = RunCli({command, "--help"});
        EXPECT_EQ(r.exitCode, 0) << command;
        EXPECT_EQ(r.err, "") << command;
        EXPECT_TRUE(Names(r.out, "kova-cli " + command)) << r.out;
        for (const auto& w : words) EXPECT_TRUE(Names(r.out, w)) << command << ": " << w;
    }
}

TEST(CliHostile, RunWithAPeriodTheWindowRefusesNeitherSpinsNorTurnsTheClockBack) {
    Folder f;
    auto st = std::make_unique<Station>();
    st->periods = {0, kUnitMs, 100, kUnitMs, 0};
    const std::string file = f.save(*st);
    const CliResult r =
        RunCliIn(f.dir.path(), {"run", file, "--ticks", "201", "--start", "2026-11-15 10:00:00",
                                "--state", f.path("state.json")});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto state = nlohmann::json::parse(ReadFileBytes(f.dir / "state.json"));
    EXPECT_EQ(state["tags"][32]["Value"], 36010.0);  // TS: 200 ticks of 50 ms after 10:00:00
}

TEST(CliHostile, CheckReportsValuesTheSetUpWindowsRefuse) {
    Folder f;
    auto st = std::make_unique<Station>();
    st->periods = {-5, kUnitMs, 10, kUnitMs, 0};
    st->logging.StopSampleCount = Variant::longInt(40000);
    st->logging.StartHour = Variant::integer(25);
    st->logging.StopMinute = Variant::integer(60);
    st->trends.TrendTable(2, 3) = 99;
    const std::string file = f.save(*st);
    const CliResult r = RunCli({"check", file});
    EXPECT_EQ(r.exitCode, 1) << r.err;
    for (const char* problem :
         {": IOPeriod -5 mSeconds (the scan runs it as 50 mSeconds): the periods window refuses "
          "it (\"Time Between I/O Readings Cannot Be Less than 50mSecs\")\n",
          ": LogPeriod 10 mSeconds: the periods window refuses it (\"Time Between Logging "
          "Readings Cannot Be Less than 50mSecs\")\n",
          ": StopSampleCount 40000: the logging start/stop window refuses it (\"Sample Number "
          "must be between 0 and 32000 Enter 0 for continuous sampling\")\n",
          ": start time 25:0: the logging start/stop window refuses it (\"Start Time must be in "
          "24 Hour Time in the format HH:MM\")\n",
          ": stop time 0:60: the logging start/stop window refuses it (\"Stop Time must be in 24 "
          "Hour Time in the format HH:MM\")\n",
          ": trend 2 pen 3: tag number 99 is outside 0..42\n"})
        EXPECT_TRUE(Names(r.out, file + problem)) << problem << "\n" << r.out;
    st = std::make_unique<Station>();
    st->periods = {2, kUnitSeconds, 1000, kUnitMs, 0};
    const CliResult order = RunCli({"check", f.save(*st, "order.SUF")});
    EXPECT_EQ(order.exitCode, 1);
    EXPECT_TRUE(Names(order.out,
                      "IOPeriod 2 Seconds with LogPeriod 1000 mSeconds: the periods "
                      "window refuses it (\"Period for I/O Readings must be less than "
                      "or equal to Logging Period\")"))
        << order.out;
}

}  // namespace
}  // namespace kova::test
