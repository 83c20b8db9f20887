#include "core/setup_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <memory>

#include "core/fault.h"
#include "support/setup_fixtures.h"
#include "support/test_support.h"

namespace kova {

namespace {

using test::FillRichConfiguration;
using test::StoredItems;

constexpr std::size_t kLen = kSetupRecordLength;

// Record numbers of the file (from 1).
constexpr int kIOPeriodRecord = 283;
constexpr int kLogTimeColumnRecord = 288;
constexpr int kStopTimeSecsRecord = 301;
constexpr int kStopValueRecord = 305;
constexpr int kDaqTypeRecord = 363;
int ScreenHeaderRecord(int s) {
    return 33 + (s - 1) * 21;
}
int ScreenLineRecord(int s, int l) {
    return ScreenHeaderRecord(s) + l;
}
int TrendRecord(int t, int p) {
    return 243 + (t - 1) * 4 + (p - 1);
}

std::size_t Offset(int record) {
    return static_cast<std::size_t>(record - 1) * kLen;
}

std::string Record(const std::string& file, int record) {
    return file.substr(Offset(record), kLen);
}

// A record's expected bytes: the item, then zero filler.
std::string Padded(const std::string& item) {
    return item + std::string(kLen - item.size(), '\0');
}

std::string Le16(int v) {
    const auto u = static_cast<std::uint16_t>(v);
    return {static_cast<char>(u & 0xFF), static_cast<char>(u >> 8)};
}
std::string Le32(std::uint32_t u) {
    std::string s;
    for (int i = 0; i < 4; ++i) s += static_cast<char>((u >> (8 * i)) & 0xFF);
    return s;
}
std::string LeF(float f) {
    return Le32(std::bit_cast<std::uint32_t>(f));
}
std::string LeD(double d) {
    const auto u = std::bit_cast<std::uint64_t>(d);
    return Le32(static_cast<std::uint32_t>(u)) + Le32(static_cast<std::uint32_t>(u >> 32));
}
std::string Str(const std::string& cp1252) {
    return Le16(static_cast<int>(cp1252.size())) + cp1252;
}

// Compares two files, naming the first byte that differs instead of printing both.
testing::AssertionResult SameBytes(const std::string& a, const std::string& b) {
    if (a == b) return testing::AssertionSuccess();
    std::size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return testing::AssertionFailure()
           << "sizes " << a.size() << " and " << b.size() << ", first difference at byte " << i
           << " (record " << i / kLen + 1 << ")";
}

std::string RichFile() {
    auto st = std::make_unique<Station>();
    FillRichConfiguration(*st);
    return EncodeSetupFile(*st);
}

std::unique_ptr<Station> Decoded(const std::string& bytes) {
    auto st = std::make_unique<Station>();
    std::string error;
    EXPECT_TRUE(DecodeSetupFile(*st, bytes, error)) << error;
    return st;
}

std::string DecodeError(const std::string& bytes) {
    auto st = std::make_unique<Station>();
    const auto before = StoredItems(*st);
    std::string error;
    EXPECT_FALSE(DecodeSetupFile(*st, bytes, error));
    EXPECT_EQ(StoredItems(*st), before) << "a failed load changed the station";
    return error;
}

}  // namespace

TEST(SetupFile, DefaultConfigurationIs363FullRecords) {
    Station st;
    const std::string file = EncodeSetupFile(st);
    ASSERT_EQ(file.size(), 46464u);
    EXPECT_EQ(file.size() / kLen, 363u);
    EXPECT_EQ(Record(file, kIOPeriodRecord), Padded(Le16(1)));
    EXPECT_EQ(Record(file, kIOPeriodRecord + 1), Padded(Le16(1000)));  // IOUnits
    EXPECT_EQ(Record(file, 292), Padded(Le16(1)));                     // PrinterPortNumber
    EXPECT_EQ(Record(file, kLogTimeColumnRecord), Padded(Le16(2) + Le16(0)));
    EXPECT_EQ(Record(file, kDaqTypeRecord), Padded(Le16(0)));
}

TEST(SetupFile, LoadingTheDefaultFileRestoresEveryItem) {
    test::TempFolder dir;
    const auto path = dir / "Default.Suf";
    Station defaults;
    SaveSetupFile(defaults, path);
    EXPECT_EQ(std::filesystem::file_size(path), 46464u);

    Station st;
    FillRichConfiguration(st);
    ASSERT_NE(StoredItems(st), StoredItems(defaults));
    const LoadOutcome loaded = LoadSetupFile(st, path);
    ASSERT_TRUE(loaded.ok) << loaded.error;
    EXPECT_EQ(StoredItems(st), StoredItems(defaults));
}

TEST(SetupFile, RichConfigurationRoundTripsEveryItem) {
    test::TempFolder dir;
    Station rich;
    FillRichConfiguration(rich);
    SaveSetupFile(rich, dir / "rich.suf");
    Station st;
    ASSERT_TRUE(LoadSetupFile(st, dir / "rich.suf").ok);
    EXPECT_EQ(StoredItems(st), StoredItems(rich));
    EXPECT_TRUE(SameBytes(EncodeSetupFile(st), test::ReadFileBytes(dir / "rich.suf")));
}

TEST(SetupFile, SameConfigurationGivesSameBytes) {
    test::TempFolder dir;
    Station st;
    FillRichConfiguration(st);
    SaveSetupFile(st, dir / "a.suf");
    SaveSetupFile(st, dir / "b.suf");
    EXPECT_TRUE(SameBytes(test::ReadFileBytes(dir / "a.suf"), test::ReadFileBytes(dir / "b.suf")));
    EXPECT_TRUE(SameBytes(test::ReadFileBytes(dir / "a.suf"), RichFile()));
}

TEST(SetupFile, TagRecordHoldsItsFieldsInOrder) {
    Station st;
    Tag& t = st.tags[1];
    t.Label = "Tank °C";
    t.TagName = "TANK";
    t.IOName = "AI-3";
    t.Kind = 0;
    t.Direction = 0;
    t.Address = 1;
    t.IONumber = 3;
    t.RawValue1 = -2;
    t.EngValue1 = 0.5f;
    t.RawValue2 = 4095;
    t.EngValue2 = 100;
    t.EngText1 = "LOW";
    t.EngText2 = "HIGH";
    t.Slope = 0.25f;
    t.Offset = -1;
    t.Units = "°C";
    t.Log = -1;
    t.Value = 12.5f;
    const std::string expected = Str("Tank \xB0"
                                     "C") +
                                 Str("TANK") + Str("AI-3") + Le16(0) + Le16(0) + Le16(1) + Le16(3) +
                                 Le16(-2) + LeF(0.5f) + Le16(4095) + LeF(100) + Str("LOW") +
                                 Str("HIGH") + LeF(0.25f) + LeF(-1) +
                                 Str("\xB0"
                                     "C") +
                                 Le16(-1) + LeF(12.5f);
    EXPECT_EQ(Record(EncodeSetupFile(st), 1), Padded(expected));
}

TEST(SetupFile, ScreensAreStoredHeaderThenLinesScreenByScreen) {
    Station st;
    st.screens.Headers[2] = {"Boiler", 7};
    st.screens.Lines(2, 3) = {"TANK", 5, -1};
    st.screens.Lines(10, 20) = {"PUMP", 42, 0};
    const std::string file = EncodeSetupFile(st);
    EXPECT_EQ(ScreenHeaderRecord(2), 54);
    EXPECT_EQ(Record(file, 54), Padded(Str("Boiler") + Le16(7)));
    EXPECT_EQ(Record(file, 57), Padded(Str("TANK") + Le16(5) + Le16(-1)));
    EXPECT_EQ(Record(file, 242), Padded(Str("PUMP") + Le16(42) + Le16(0)));
    EXPECT_EQ(Record(file, ScreenLineRecord(10, 20)), Record(file, 242));
}

TEST(SetupFile, TrendTableIsStoredTrendByTrendPensWithin) {
    Station st;
    st.trends.TrendTable(1, 2) = 7;
    st.trends.TrendTable(3, 1) = 9;
    st.trends.TrendTable(10, 4) = 32;
    const std::string file = EncodeSetupFile(st);
    EXPECT_EQ(Record(file, 244), Padded(Le16(7)));
    EXPECT_EQ(Record(file, 251), Padded(Le16(9)));
    EXPECT_EQ(Record(file, 282), Padded(Le16(32)));
    EXPECT_EQ(TrendRecord(10, 4), 282);
}

TEST(SetupFile, SettingsRecordsInOrder) {
    Station st;
    FillRichConfiguration(st);
    const std::string f = EncodeSetupFile(st);
    EXPECT_EQ(Record(f, 283), Padded(Le16(500)));            // IOPeriod
    EXPECT_EQ(Record(f, 284), Padded(Le16(1)));              // IOUnits
    EXPECT_EQ(Record(f, 285), Padded(Le16(2)));              // LogPeriod
    EXPECT_EQ(Record(f, 286), Padded(Le16(1000)));           // LogUnits
    EXPECT_EQ(Record(f, 287), Padded(Le16(-1)));             // TrendAtLogPeriod
    EXPECT_EQ(Record(f, 288), Padded(Le16(11) + Le16(-1)));  // LogTimeColumn, boolean true
    EXPECT_EQ(Record(f, 289), Padded(Le16(2) + Le16(-1)));   // LogDateColumn, integer
    EXPECT_EQ(Record(f, 290), Padded(Str("C:\\LOGS\\K\xFChlhaus.CSV")));
    EXPECT_EQ(Record(f, 291), Padded(Le16(-1)));                 // OverwriteFile
    EXPECT_EQ(Record(f, 292), Padded(Le16(2)));                  // PrinterPortNumber
    EXPECT_EQ(Record(f, 293), Padded(Le16(0x3BC)));              // PrinterPortBase
    EXPECT_EQ(Record(f, 294), Padded(Le16(2)));                  // LogMode
    EXPECT_EQ(Record(f, 295), Padded(Le16(3) + Le32(32000)));    // StopSampleCount, long
    EXPECT_EQ(Record(f, 296), Padded(Le16(8) + Str("22")));      // StartHour, string
    EXPECT_EQ(Record(f, 297), Padded(Le16(4) + LeF(30.5f)));     // StartMinute, single
    EXPECT_EQ(Record(f, 298), Padded(Le16(5) + LeD(81000.25)));  // StartTimeSecs, double
    EXPECT_EQ(Record(f, 299), Padded(Le16(7) + LeD(46341.75)));  // StopHour, date
    EXPECT_EQ(Record(f, 300), Padded(Le16(1)));                  // StopMinute, null
    EXPECT_EQ(Record(f, 301), Padded(Le32(21600)));              // StopTimeSecs, 4 bytes
    EXPECT_EQ(Record(f, 302), Padded(Le16(3)));                  // ConditionTag
    EXPECT_EQ(Record(f, 303), Padded(Le16(0)));                  // StartValue, empty
    EXPECT_EQ(Record(f, 304), Padded(Le16(-1)));                 // StartAbove
    EXPECT_EQ(Record(f, 305), Padded(LeF(50.1f)));               // StopValue, single
    EXPECT_EQ(Record(f, 306), Padded(Le16(0)));                  // StopAbove
    EXPECT_EQ(Record(f, 307), Padded(Le16(11) + Le16(-1)));      // LoggingEnabled
    EXPECT_EQ(Record(f, 308), Padded(Le16(-1)));                 // DailyFiles
    EXPECT_EQ(Record(f, 309), Padded(Str("C:\\LOGS\\")));        // LogDirectory
    EXPECT_EQ(Record(f, 310), Padded(Le16(-1)));                 // DateFormatUS
    EXPECT_EQ(Record(f, 331), Padded(Le16(1)));                  // AlarmsEnabled
    EXPECT_EQ(Record(f, 362), Padded(Le16(1)));                  // ControlsEnabled
    EXPECT_EQ(Record(f, 363), Padded(Le16(3)));                  // DaqType
}

TEST(SetupFile, AlarmAndControlRecordsHoldTheirFieldsInOrder) {
    Station st;
    st.alarms.Alarms[20] = {"TANK", 1, 80.5f, "Hot", -2.0f, "Cold", "OK", "ACKN  x", 3};
    st.control.Lines[30] = {"@A>1", "c1", "@B=1", "c2", "@B=0", "c3", -1, 1};
    const std::string f = EncodeSetupFile(st);
    EXPECT_EQ(Record(f, 330), Padded(Str("TANK") + Le16(1) + LeF(80.5f) + Str("Hot") + LeF(-2.0f) +
                                     Str("Cold") + Str("OK") + Str("ACKN  x") + Le16(3)));
    EXPECT_EQ(Record(f, 361), Padded(Str("@A>1") + Str("c1") + Str("@B=1") + Str("c2") +
                                     Str("@B=0") + Str("c3") + Le16(-1) + Le16(1)));
}

TEST(SetupFile, StopTimeSecsReadsAsFourByteIntegerAndStopValueAsSingle) {
    std::string file = RichFile();
    file.replace(Offset(kStopTimeSecsRecord), 4, Le32(86399));
    file.replace(Offset(kStopValueRecord), 4, LeF(-7.25f));
    auto st = Decoded(file);
    EXPECT_EQ(st->logging.StopTimeSecs, 86399);
    EXPECT_EQ(st->logging.StopValue, -7.25f);
}

TEST(SetupFile, EveryVariantTypeIsAcceptedForEveryVariantItem) {
    const std::vector<Variant> values = {
        Variant{kVarEmpty, 0, {}},      Variant{kVarNull, 0, {}}, Variant::integer(-7),
        Variant::longInt(100000),       Variant::single(0.1f),    Variant::real(1.0 / 3),
        Variant{kVarDate, 46341.5, {}}, Variant::string("12 °C"), Variant::boolean(true)};
    for (const Variant& v : values) {
        Station st;
        for (Variant* item :
             {&st.logging.LogTimeColumn, &st.logging.LogDateColumn, &st.logging.StopSampleCount,
              &st.logging.StartHour, &st.logging.StartMinute, &st.logging.StartTimeSecs,
              &st.logging.StopHour, &st.logging.StopMinute, &st.logging.StartValue,
              &st.switches.LoggingEnabled})
            *item = v;
        auto back = Decoded(EncodeSetupFile(st));
        EXPECT_EQ(back->logging.StartHour, v) << "type " << v.type;
        EXPECT_EQ(back->logging.StartValue, v) << "type " << v.type;
        EXPECT_EQ(back->switches.LoggingEnabled, v) << "type " << v.type;
        EXPECT_EQ(StoredItems(*back), StoredItems(st)) << "type " << v.type;
    }
}

TEST(SetupFile, WindowsTextIsStoredAsOneBytePerCharacter) {
    Station st;
    st.tags[1].Units = "°C";
    st.tags[1].EngText1 = "€5 µs";
    const std::string file = EncodeSetupFile(st);
    EXPECT_NE(Record(file, 1).find(Str("\xB0"
                                       "C")),
              std::string::npos);
    EXPECT_NE(Record(file, 1).find(Str("\x80"
                                       "5 \xB5"
                                       "s")),
              std::string::npos);
    auto back = Decoded(file);
    EXPECT_EQ(back->tags[1].Units, "°C");
    EXPECT_EQ(back->tags[1].EngText1, "€5 µs");
}

TEST(SetupFile, UndefinedWindowsBytesSurviveALoadAndSave) {
    std::string file = EncodeSetupFile(Station{});
    file.replace(Offset(290), 5, Str("\x81\x8D\x90"));  // LogFileName
    auto st = Decoded(file);
    EXPECT_TRUE(SameBytes(EncodeSetupFile(*st), file));
}

TEST(SetupFile, DecodingFillsOnlyTheStoredItems) {
    Station source;
    source.tags[1].RawValue1 = 0;
    source.tags[1].EngValue1 = 0;
    source.tags[1].RawValue2 = 10;
    source.tags[1].EngValue2 = 20;
    source.tags[1].Slope = 7;  // not what the points give: the loader keeps it as stored
    source.tags[1].TagName = "TANK";
    source.profile.TypeCode = kDaqQrt105;
    const std::string file = EncodeSetupFile(source);

    Station st;
    st.tags[33].Value = 123;
    st.tags[40].Label = "spare";
    st.trends.TrendSamples(5, 5) = 9;
    st.trends.NewestSample = 17;
    st.alarms.History[3] = "ALARM old";
    st.control.ControlCount = 12;
    const auto index = st.nameIndex;
    const auto profile = st.profile;
    std::string error;
    ASSERT_TRUE(DecodeSetupFile(st, file, error)) << error;
    EXPECT_EQ(st.tags[1].Slope, 7);
    EXPECT_EQ(st.tags[33].Value, 123);  // system tags are not stored
    EXPECT_EQ(st.tags[33].TagName, "TS");
    EXPECT_EQ(st.tags[40].Label, "spare");
    EXPECT_EQ(st.trends.TrendSamples(5, 5), 9);
    EXPECT_EQ(st.trends.NewestSample, 17);
    EXPECT_EQ(st.alarms.History[3], "ALARM old");
    EXPECT_EQ(st.control.ControlCount, 12);
    EXPECT_EQ(st.nameIndex, index);  // the caller rebuilds it
    EXPECT_EQ(st.profile.TypeCode, kDaqQrt105);
    EXPECT_EQ(st.profile.IONameList, profile.IONameList);  // the caller rebuilds the I/O list
}

TEST(SetupFile, ShorterLastRecordIsAccepted) {
    const std::string full = RichFile();
    const std::size_t itemEnd = Offset(kDaqTypeRecord) + 2;
    auto st = Decoded(full.substr(0, itemEnd));
    EXPECT_EQ(st->profile.TypeCode, kDaqQrt115);
    EXPECT_EQ(StoredItems(*st), StoredItems(*Decoded(full)));
}

TEST(SetupFile, BytesAfterTheLastRecordAreIgnored) {
    const std::string full = RichFile();
    auto st = Decoded(full + std::string(300, '\x55'));
    EXPECT_EQ(StoredItems(*st), StoredItems(*Decoded(full)));
}

TEST(SetupFile, FillerContentIsNotRead) {
    std::string file = RichFile();
    const std::string clean = file;
    // No item of the rich configuration ends in more than 8 zero bytes, so 8 bytes after
    // the last non-zero one the filler has begun.
    for (int r = 1; r <= kSetupRecordCount; ++r) {
        const std::string rec = Record(file, r);
        const std::size_t last = rec.find_last_not_of('\0');
        const std::size_t used = (last == std::string::npos ? 0 : last + 1) + 8;
        if (used < kLen) file.replace(Offset(r) + used, kLen - used, kLen - used, '\xEE');
    }
    ASSERT_FALSE(file == clean);
    EXPECT_TRUE(SameBytes(EncodeSetupFile(*Decoded(file)), clean));
}

TEST(SetupFile, EmptyFileIsRefusedNamingTheFirstRecord) {
    EXPECT_EQ(DecodeError(""),
              "record 1 (tag 1): missing, the file ends at byte 0 (a setup file has 363 records)");
}

TEST(SetupFile, FileCutAtEveryRecordBoundaryIsRefused) {
    const std::string full = RichFile();
    for (int r = 1; r <= kSetupRecordCount; ++r) {
        const std::string error = DecodeError(full.substr(0, Offset(r)));
        EXPECT_EQ(error.rfind("record " + std::to_string(r) + " (", 0), 0u) << error;
        EXPECT_NE(error.find("missing, the file ends at byte " + std::to_string(Offset(r))),
                  std::string::npos)
            << error;
    }
}

TEST(SetupFile, FileCutInsideAnItemIsRefused) {
    const std::string full = RichFile();
    // Every cut inside the items of a tag, a screen line, a variant, the 4-byte stop time,
    // an alarm, a control line and the last item.
    for (int r : {1, 32, 57, kLogTimeColumnRecord, 296, 298, kStopTimeSecsRecord, 311, 361,
                  kDaqTypeRecord}) {
        const std::string rec = Record(full, r);
        const std::size_t used = rec.find_last_not_of('\0') + 1;
        for (std::size_t cut = 1; cut < used; ++cut) {
            const std::string error = DecodeError(full.substr(0, Offset(r) + cut));
            EXPECT_EQ(error.rfind("record " + std::to_string(r) + " (", 0), 0u)
                << "cut " << cut << ": " << error;
            const bool saysTheFileEnds =
                error.find("runs past the end of the file") != std::string::npos ||
                error.find("the file ends at byte " + std::to_string(Offset(r) + cut) +
                           ", before the end of this item") != std::string::npos;
            EXPECT_TRUE(saysTheFileEnds) << error;
        }
    }
}

TEST(SetupFile, FileCutAnywhereBeforeItsLastItemEndsIsRefused) {
    const std::string full = RichFile();
    const std::size_t lastItemEnd = Offset(kDaqTypeRecord) + 2;
    for (std::size_t cut = 0; cut < lastItemEnd; cut += 37) {
        std::string error;
        auto st = std::make_unique<Station>();
        EXPECT_FALSE(DecodeSetupFile(*st, full.substr(0, cut), error)) << "cut at " << cut;
        EXPECT_FALSE(error.empty());
    }
}

TEST(SetupFile, FileCutGivesOneProblemForTheMissingRest) {
    const auto problems = FindSetupFileProblems(RichFile().substr(0, Offset(100) + 3));
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].rfind("record 100 (screen 4 line 4), TagName: ", 0), 0u) << problems[0];
}

TEST(SetupFile, LengthFieldRunningPastItsRecordIsRefused) {
    std::string file = RichFile();
    file.replace(Offset(3), 2, Le16(0xFFFF));  // tag 3's Label
    EXPECT_EQ(DecodeError(file),
              "record 3 (tag 3), Label: the length 65535 runs past the end of its record");

    file = RichFile();
    file.replace(Offset(57), 2, Le16(126));  // screen 2 line 3: TagName fits, TagNumber does not
    EXPECT_EQ(DecodeError(file),
              "record 57 (screen 2 line 3), TagNumber: the item runs past the end of its record");
}

TEST(SetupFile, EveryHostileLengthInEveryTextFieldIsRefusedOrRead) {
    const std::string full = RichFile();
    for (int r : {1, 17, 33, 40, 290, 296, 309, 311, 332}) {
        const std::string rec = Record(full, r);
        for (std::size_t at = 0; at + 1 < kLen; ++at) {
            for (int length : {0x7F, 0x80, 0x7FFF, 0x8000, 0xFFFF}) {
                std::string file = full;
                file.replace(Offset(r) + at, 2, Le16(length));
                auto st = std::make_unique<Station>();
                std::string error;
                if (!DecodeSetupFile(*st, file, error)) {
                    EXPECT_EQ(error.rfind("record " + std::to_string(r) + " (", 0), 0u) << error;
                }
            }
        }
    }
}

TEST(SetupFile, UnknownVariantTypeIsRefused) {
    for (int type : {6, 9, 10, 12, 17, -1, 0x7FFF}) {
        std::string file = RichFile();
        file.replace(Offset(kLogTimeColumnRecord), 2, Le16(type));
        EXPECT_EQ(DecodeError(file),
                  "record 288 (LogTimeColumn): unknown variant type " + std::to_string(type));
    }
}

TEST(SetupFile, VariantStringRunningPastItsRecordIsRefused) {
    std::string file = RichFile();
    file.replace(Offset(296), 4, Le16(kVarString) + Le16(200));  // StartHour
    EXPECT_EQ(DecodeError(file),
              "record 296 (StartHour): the length 200 runs past the end of its record");
}

TEST(SetupFile, EveryProblemOfAFileIsListed) {
    std::string file = RichFile();
    file.replace(Offset(5), 2, Le16(500));
    file.replace(Offset(kLogTimeColumnRecord), 2, Le16(9));
    const auto problems = FindSetupFileProblems(file);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0],
              "record 5 (tag 5), Label: the length 500 runs past the end of its record");
    EXPECT_EQ(problems[1], "record 288 (LogTimeColumn): unknown variant type 9");
    std::string error;
    Station st;
    EXPECT_FALSE(DecodeSetupFile(st, file, error));
    EXPECT_EQ(error, problems[0] + " (and 1 more problem)");
}

TEST(SetupFile, RecordExactlyFullIsSavedAndOneByteMoreIsRefused) {
    // A tag's numbers take 34 bytes and its six length fields 12, leaving 82 for the texts.
    Station st;
    std::string label;
    for (int i = 0; i < 82; ++i) label += "°";  // one byte each in the file
    st.tags[4].Label = label;
    EXPECT_TRUE(FindUnsavableItems(st).empty());
    auto back = Decoded(EncodeSetupFile(st));
    EXPECT_EQ(back->tags[4].Label, label);

    st.tags[4].Units = "C";
    const auto problems = FindUnsavableItems(st);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0], "record 4 (tag 4): needs 129 bytes, more than the 128 of a record");
}

TEST(SetupFile, TagTooLongIsRefusedBeforeAnythingIsWritten) {
    test::TempFolder dir;
    const auto path = dir / "Plant.SUF";
    Station good;
    FillRichConfiguration(good);
    SaveSetupFile(good, path);
    const std::string before = test::ReadFileBytes(path);

    Station st;
    FillRichConfiguration(st);
    st.tags[5].Label = std::string(60, 'L');
    st.tags[5].Units = std::string(60, 'U');
    try {
        SaveSetupFile(st, path);
        FAIL() << "saved a tag that does not fit its record";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::File);
        // 46 bytes of numbers and lengths, texts of 60 + 5 + 4 + 5 + 5 + 60 bytes.
        EXPECT_EQ(
            std::string(f.what()),
            path.string() +
                ": cannot save: record 5 (tag 5): needs 185 bytes, more than the 128 of a record");
    }
    EXPECT_TRUE(SameBytes(test::ReadFileBytes(path), before));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              1);  // no temporary file left behind
}

TEST(SetupFile, TextOutsideWindows1252IsRefusedNamingTheField) {
    test::TempFolder dir;
    Station st;
    st.alarms.Alarms[2].HiMsg = "过热";
    try {
        SaveSetupFile(st, dir / "x.suf");
        FAIL();
    } catch (const Fault& f) {
        EXPECT_EQ(std::string(f.what()),
                  (dir / "x.suf").string() +
                      ": cannot save: record 312 (alarm 2), HiMsg: holds a character that "
                      "Windows-1252 cannot represent");
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "x.suf"));
}

TEST(SetupFile, VariantValueItsTypeCannotHoldIsRefused) {
    Station st;
    st.logging.StopSampleCount = Variant{kVarInteger, 40000, {}};
    st.logging.StartHour = Variant{kVarLong, 1.5, {}};
    st.logging.StartMinute = Variant{kVarSingle, 1e300, {}};
    st.logging.StopHour = Variant{6, 0, {}};
    const auto problems = FindUnsavableItems(st);
    ASSERT_EQ(problems.size(), 4u);
    EXPECT_EQ(problems[0], "record 295 (StopSampleCount): the value 40000 is not a 16-bit integer");
    EXPECT_EQ(problems[1], "record 296 (StartHour): the value 1.5 is not a 32-bit integer");
    EXPECT_EQ(problems[2],
              "record 297 (StartMinute): the value 1.0000000000000001e+300 is not a single float");
    EXPECT_EQ(problems[3], "record 299 (StopHour): has the unknown variant type 6");
    EXPECT_THROW(EncodeSetupFile(st), Fault);
}

TEST(SetupFile, LoadErrorsNameTheFile) {
    test::TempFolder dir;
    Station st;
    const LoadOutcome missing = LoadSetupFile(st, dir / "None.SUF");
    EXPECT_FALSE(missing.ok);
    EXPECT_EQ(missing.error.rfind((dir / "None.SUF").string() + ": cannot open", 0), 0u)
        << missing.error;

    test::WriteFileBytes(dir / "Short.SUF", RichFile().substr(0, Offset(8) + 4));
    const LoadOutcome cut = LoadSetupFile(st, dir / "Short.SUF");
    EXPECT_FALSE(cut.ok);
    EXPECT_EQ(cut.error,
              (dir / "Short.SUF").string() +
                  ": record 8 (tag 8), Label: the length 9 runs past the end of the file");
}

TEST(SetupFile, HugeFileIsRefusedWithoutReadingItAll) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "Big.SUF", std::string(2u << 20, '\0'));
    Station st;
    const LoadOutcome big = LoadSetupFile(st, dir / "Big.SUF");
    EXPECT_FALSE(big.ok);
    EXPECT_EQ(big.error, (dir / "Big.SUF").string() + ": file is too large");
}

}  // namespace kova
