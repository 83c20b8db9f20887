#include "daq/calibration.h"

#include <cmath>
#include <vector>

#include "core/atomic_file.h"
#include "core/fault.h"
#include "core/numeric.h"

namespace kova {

std::int16_t CorrectReading(const CalibrationData& cal, std::int16_t raw) {
    const std::int32_t product = narrow32(static_cast<long long>(cal.CalInput) * raw);
    const std::int16_t sum = add16(cal.CalMeasured, cal.CalOffset);
    if (sum == 0)
        throw Fault(FaultKind::DivisionByZero, "Division by zero: calibration gain point");
    const double corrected = static_cast<double>(product) / sum + cal.CalOffset;
    return toInt16(corrected);
}

std::string CalibrationFileText(const CalibrationData& cal) {
    std::string text;
    for (const std::int16_t v : {cal.CalInput, cal.CalMeasured, cal.CalOffset}) {
        if (v >= 0) text += ' ';
        text += std::to_string(v);
        text += ' ';
    }
    return text + "\r\n";
}

bool ParseCalibrationText(const std::string& text, CalibrationData& out, std::string& why) {
    // Free-format input: numbers separated by blanks, tabs, commas or line ends.
    std::vector<std::string> items;
    std::string cur;
    for (char c : text) {
        if (c == ' ' || c == ',' || c == '\t' || c == '\r' || c == '\n') {
            if (!cur.empty()) items.push_back(cur), cur.clear();
        } else {
            cur += c;
        }
    }
    if (!cur.empty()) items.push_back(cur);
    if (items.size() < 3) {
        why = "expected three whole numbers, found " + std::to_string(items.size());
        return false;
    }
    std::int16_t v[3];
    for (int i = 0; i < 3; ++i) {
        if (!isNumeric(items[static_cast<std::size_t>(i)])) {
            why = "\"" + items[static_cast<std::size_t>(i)] + "\" is not a number";
            return false;
        }
        const double d = leadingNumber(items[static_cast<std::size_t>(i)]);
        if (!(d >= -32768.5 && d <= 32767.5)) {
            why = items[static_cast<std::size_t>(i)] + " does not fit a 16-bit whole number";
            return false;
        }
        v[i] = toInt16(d);
    }
    out = {v[0], v[1], v[2]};
    return true;
}

namespace {
// The file must be named exactly "KOVA_P.CAL", character for character.
bool exactNameExists(const std::filesystem::path& folder) {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec))
        if (entry.path().filename() == kCalibrationFileName) return true;
    return false;
}
}  // namespace

void SaveCalibration(const std::filesystem::path& folder, const CalibrationData& cal) {
    WriteFileAtomically(folder / kCalibrationFileName, CalibrationFileText(cal));
}

CalibrationLoad LoadCalibration(const std::filesystem::path& folder) {
    CalibrationLoad r;
    const auto path = folder / kCalibrationFileName;
    if (!exactNameExists(folder)) {
        r.data = CalibrationData{};
        try {
            SaveCalibration(folder, r.data);
            r.created = true;
        } catch (const Fault& f) {
            r.error = f.what();
        }
        return r;
    }
    std::string text, why;
    CalibrationData parsed;
    if (!ReadWholeFile(path, text, r.error, kLargestCalibrationFile)) {
        if (text.size() > kLargestCalibrationFile)
            r.error = path.string() + ": too long for a calibration file";
    } else if (!ParseCalibrationText(text, parsed, why)) {
        r.error = path.string() + ": " + why;
    } else {
        r.data = parsed;
    }
    return r;
}

}  // namespace kova
