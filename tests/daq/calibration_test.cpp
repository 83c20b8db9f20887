#include "daq/calibration.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "core/fault.h"
#include "support/test_support.h"

namespace kova {

TEST(Calibration, DefaultsAreTheIdentity) {
    const CalibrationData cal;
    for (std::int16_t raw : {0, 1, 2000, 4095, -7}) EXPECT_EQ(CorrectReading(cal, raw), raw);
}

TEST(Calibration, DocumentedExampleCorrects2000To2012) {
    const CalibrationData cal{3950, 3930, 4};
    EXPECT_EQ(CorrectReading(cal, 2000), 2012);  // round(3950*2000/3934 + 4)
}

TEST(Calibration, ProductIs32BitAndSumIs16Bit) {
    const CalibrationData big{30000, 30000, 0};
    EXPECT_EQ(CorrectReading(big, 30000), 30000);  // 9e8 fits 32 bits
    const CalibrationData overflow{4000, 30000, 5000};
    EXPECT_THROW(CorrectReading(overflow, 1), Fault);
    const CalibrationData tooLarge{4000, 100, 0};
    EXPECT_THROW(CorrectReading(tooLarge, 4000), Fault);  // 160000 does not fit 16 bits
}

TEST(Calibration, ResultRoundsHalfToEven) {
    const CalibrationData cal{1, 2, 0};  // raw / 2
    EXPECT_EQ(CorrectReading(cal, 5), 2);
    EXPECT_EQ(CorrectReading(cal, 7), 4);
}

TEST(Calibration, MissingFileIsCreatedWithTheDefaults) {
    test::TempFolder dir;
    const CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_TRUE(r.created);
    EXPECT_TRUE(r.error.empty());
    EXPECT_EQ(r.data, (CalibrationData{4000, 4000, 0}));
    EXPECT_EQ(test::ReadFileBytes(dir / "KOVA_P.CAL"), " 4000  4000  0 \r\n");
    EXPECT_EQ(CorrectReading(r.data, 1234), 1234);
}

TEST(Calibration, ReadsNumbersSeparatedByBlanksOrCommas) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "KOVA_P.CAL", "3950,3930 ,  4\r\n");
    const CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_FALSE(r.created);
    EXPECT_EQ(r.data, (CalibrationData{3950, 3930, 4}));
    test::WriteFileBytes(dir / "KOVA_P.CAL", " 3900  3890 -2 \r\n");
    EXPECT_EQ(LoadCalibration(dir.path()).data, (CalibrationData{3900, 3890, -2}));
}

TEST(Calibration, OnlyTheExactFileNameCounts) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "kova_p.cal", "1 2 3\r\n");
    const CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_TRUE(r.created);
    EXPECT_EQ(r.data, CalibrationData{});
}

TEST(Calibration, BadFileGivesDefaultsAndNamesTheFile) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "KOVA_P.CAL", "4000 abc 0\r\n");
    CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_EQ(r.data, CalibrationData{});
    EXPECT_NE(r.error.find("KOVA_P.CAL"), std::string::npos);
    EXPECT_NE(r.error.find("abc"), std::string::npos);
    EXPECT_EQ(test::ReadFileBytes(dir / "KOVA_P.CAL"),
              "4000 abc 0\r\n");  // left for the user to see
    test::WriteFileBytes(dir / "KOVA_P.CAL", "4000 4000\r\n");
    r = LoadCalibration(dir.path());
    EXPECT_NE(r.error.find("three"), std::string::npos);
    test::WriteFileBytes(dir / "KOVA_P.CAL", "99999 4000 0\r\n");
    r = LoadCalibration(dir.path());
    EXPECT_NE(r.error.find("16-bit"), std::string::npos);
}

}  // namespace kova

namespace kova {

// A calibration file is read only as far as one can be long, and only when it is a plain
// file: a link to /dev/zero neither grows memory nor hangs, a FIFO does not block.
TEST(Calibration, DeviceOrFifoInPlaceOfTheFileGivesDefaultsAndNamesIt) {
    for (const bool zero : {true, false}) {
        test::TempFolder dir;
        const auto file = dir / kCalibrationFileName;
        if (zero)
            std::filesystem::create_symlink("/dev/zero", file);
        else
            ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
        const CalibrationLoad r = LoadCalibration(dir.path());
        EXPECT_EQ(r.data, CalibrationData{});
        EXPECT_FALSE(r.created);
        EXPECT_EQ(r.error, file.string() + ": not a plain file");
    }
}

TEST(Calibration, OversizedFileIsRefusedNamingIt) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / kCalibrationFileName,
                         " 4000  4000  0 " + std::string(kLargestCalibrationFile, ' '));
    const CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_EQ(r.data, CalibrationData{});
    EXPECT_EQ(r.error, (dir / kCalibrationFileName).string() + ": too long for a calibration file");
}

TEST(Calibration, FileOfExactlyTheLargestSizeIsRead) {
    test::TempFolder dir;
    std::string text = " 3950  3934  4 \r\n";
    text.resize(kLargestCalibrationFile, ' ');
    test::WriteFileBytes(dir / kCalibrationFileName, text);
    const CalibrationLoad r = LoadCalibration(dir.path());
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.data, (CalibrationData{3950, 3934, 4}));
}

}  // namespace kova
