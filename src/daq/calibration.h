#pragma once
// Calibration of the analog input chain: three whole numbers in millivolts, kept in the
// text file "KOVA_P.CAL" and applied to every raw analog input.
#include <cstdint>
#include <filesystem>
#include <string>

namespace kova {

inline constexpr const char* kCalibrationFileName = "KOVA_P.CAL";
// A calibration file holds one short line; anything longer is not one, and is never read
// further than this.
inline constexpr std::size_t kLargestCalibrationFile = 4096;

struct CalibrationData {
    std::int16_t CalInput = 4000;
    std::int16_t CalMeasured = 4000;
    std::int16_t CalOffset = 0;
    bool operator==(const CalibrationData&) const = default;
};

// (CalInput x raw) / (CalMeasured + CalOffset) + CalOffset: a 32-bit product, a 16-bit sum
// (overflow faults), the rest in double, rounded half to even to 16 bits (faults outside).
std::int16_t CorrectReading(const CalibrationData& cal, std::int16_t raw);

struct CalibrationLoad {
    CalibrationData data;
    bool created = false;  // the file was missing and was written with the defaults
    std::string error;     // non-empty: the file was unreadable; data holds the defaults
};

// Reads "KOVA_P.CAL" from folder; when it is missing, writes one with 4000 4000 0.
// A file that cannot be read (not a plain file, too long, not three numbers) gives the
// defaults and an error naming the file.
CalibrationLoad LoadCalibration(const std::filesystem::path& folder);

// The file's text: each number in print form (a blank before non-negative numbers),
// separated by blanks, CR LF at the end.
std::string CalibrationFileText(const CalibrationData& cal);
// Writes the file anew (atomically). Faults (File) when it cannot.
void SaveCalibration(const std::filesystem::path& folder, const CalibrationData& cal);
// Parses the numbers of a calibration file; false with a reason when they are not three
// whole numbers that fit 16 bits.
bool ParseCalibrationText(const std::string& text, CalibrationData& out, std::string& why);

}  // namespace kova
