#pragma once
// The "Calibrate QRT105 Analog To Digital Convertor" window as a model: what the boxes
// show, the "&Offset" and "&Gain" steps with their checks and messages, and the menu rule
// that keeps the window shut for modules without analog inputs.
#include <cstdint>
#include <functional>
#include <string>

#include "core/station.h"

namespace kova {

struct CalibrationForm {
    std::string TxtInput;    // "Input Voltage in mVs"
    std::string TxtOffset;   // "Offset Voltage in mVs"
    std::string TxtMeasure;  // "Gain"
};

// One raw reading of channel 1.
using CalibrationReader = std::function<std::int16_t(Station&)>;

// Reads channel 1 through the driver of the selected module: ReadAnalogInput(st, 1, 1).
std::int16_t ReadCalibrationChannel(Station& st);

// The instruction text shown on the window.
extern const char* const kCalibrationInstructions;

// SetUp > C&alibration: false, after "The <module> Module Has No Analog Inputs" ("ERROR"),
// when the selected module has no analog inputs.
bool MayOpenCalibration(Station& st);

// The window on opening: TxtInput shows CalInput.
CalibrationForm OpenCalibrationForm(const Station& st);

// "&Offset": checks the input box, averages eight readings, and on success sets CalInput
// and CalOffset and shows the offset. Writes no file. Returns true when the step was done.
bool CalibrateOffset(Station& st, CalibrationForm& form,
                     const CalibrationReader& read = ReadCalibrationChannel);

// "&Gain": checks the input box, discards one settling reading, averages eight, and on
// success sets CalInput and CalMeasured, shows the gain and writes "KOVA_P.CAL" anew.
bool CalibrateGain(Station& st, CalibrationForm& form,
                   const CalibrationReader& read = ReadCalibrationChannel);

}  // namespace kova
