#include "daq/test_module.h"

#include "core/numeric.h"

namespace kova {

std::int16_t TestReadAnalogInput(TestModuleState& s, std::int16_t channel) {
    if (s.Ramp < 0 || s.Ramp >= 200) s.Ramp = 0;
    const std::int16_t result = add16(mul16(channel, 200), s.Ramp);
    s.Ramp = add16(s.Ramp, 2);
    return result;
}

std::uint16_t TestReadDigitalInputs(TestModuleState& s) {
    if (s.Walk >= 1 && s.Walk <= 8) {
        const auto result = static_cast<std::uint16_t>(~s.Walk & 15);
        s.Walk = mul16(s.Walk, 2);
        return result;
    }
    s.Walk = 2;
    return static_cast<std::uint16_t>(~1 & 15);
}

}  // namespace kova
