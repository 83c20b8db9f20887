#include "daq/calibration_model.h"

#include "core/fault.h"
#include "core/numeric.h"
#include "daq/driver_dispatch.h"

namespace kova {

const char* const kCalibrationInstructions =
    "To calibrate the QRT105 ADC first connect a voltage of approx 30mV to Channel 1. Enter the "
    "value into the Input Voltage box . Press the Offset Button. Next change the voltage to "
    "approx 3950 mV, enter the value into the Input Voltage box and press the Gain button.";

namespace {
// The average of eight readings (sum / 8), rounded half to even.
std::int16_t averageOfEight(Station& st, const CalibrationReader& read) {
    long sum = 0;
    for (int i = 0; i < 8; ++i) sum += read(st);
    return toInt16(static_cast<double>(sum) / 8);
}

// The whole number in an input box (rounded half to even); values beyond 16 bits are
// clamped just outside the range so the range checks refuse them.
long wholeNumber(const std::string& text) {
    const double v = roundHalfEven(leadingNumber(text));
    if (v > 32767) return 32768;
    if (v < -32768) return -32769;
    return static_cast<long>(v);
}

void say(Station& st, const std::string& text, const char* title = kAppTitle) {
    st.platform.prompter->message(text, title);
}
}  // namespace

std::int16_t ReadCalibrationChannel(Station& st) {
    std::int16_t channel = 1;  // the driver may change its argument
    return ReadAnalogInput(st, 1, channel);
}

bool MayOpenCalibration(Station& st) {
    if (st.profile.AnalogInputs >= 1) return true;
    say(st, "The " + st.profile.TypeString + " Module Has No Analog Inputs", "ERROR");
    return false;
}

CalibrationForm OpenCalibrationForm(const Station& st) {
    CalibrationForm f;
    f.TxtInput = std::to_string(st.calibration.CalInput);
    return f;
}

bool CalibrateOffset(Station& st, CalibrationForm& form, const CalibrationReader& read) {
    if (!isNumeric(form.TxtInput)) {
        say(st, "The input voltage value is not valid");
        return false;
    }
    const long input = wholeNumber(form.TxtInput);
    if (input >= 51) {
        say(st, "The input voltage box is greater than 50mV");
        return false;
    }
    const std::int16_t average = averageOfEight(st, read);
    if (average >= 51) {
        say(st, "Channel 1 is greater than 50mV", "Error");
        return false;
    }
    // A 16-bit input: a value below -32768 faults here, as any 16-bit overflow does.
    const std::int16_t in = narrow16(input);
    const std::int16_t offset = sub16(in, average);
    st.calibration.CalInput = in;
    st.calibration.CalOffset = offset;
    form.TxtOffset = std::to_string(offset);
    return true;
}

bool CalibrateGain(Station& st, CalibrationForm& form, const CalibrationReader& read) {
    if (!isNumeric(form.TxtInput)) {
        say(st, "The input voltage box isn't valid");
        return false;
    }
    const long input = wholeNumber(form.TxtInput);
    if (input < 3800 || input > 4000) {
        say(st, "The input voltage box must be between 3800 and 4000mV");
        return false;
    }
    read(st);  // settling reading, discarded
    const std::int16_t average = averageOfEight(st, read);
    if (average < 3700) {
        say(st, "Channel 1 is less than 3700mV", "Error");
        return false;
    }
    form.TxtMeasure = std::to_string(average);
    CalibrationData& cal = st.calibration;
    cal.CalInput = static_cast<std::int16_t>(input);
    cal.CalMeasured = average;
    const std::int16_t divisor = add16(cal.CalOffset, cal.CalMeasured);
    if (divisor == 0) throw Fault(FaultKind::DivisionByZero, "Division by zero: calibration gain");
    form.TxtMeasure = plainNumberText(static_cast<double>(cal.CalInput) / divisor);
    SaveCalibration(st.workingFolder, cal);
    return true;
}

}  // namespace kova
