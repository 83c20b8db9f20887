#include "displays/operator_writes.h"

#include <cmath>

#include "core/fault.h"
#include "core/numeric.h"
#include "daq/driver_dispatch.h"
#include "tags/tag_table.h"

namespace kova {

namespace {
bool writable(const Tag& t) {
    return t.Direction == kOutput || t.Direction == kVariable;
}
}  // namespace

std::int16_t OperatorRawValue(const Tag& tag, float value, std::int16_t rawMin,
                              std::int16_t rawMax) {
    if (tag.Slope == 0.0f)
        throw Fault(FaultKind::DivisionByZero,
                    "Division by zero: tag " + tag.TagName + " has slope 0");
    double raw = (static_cast<double>(value) - tag.Offset) / tag.Slope;
    if (std::isnan(raw)) throwOverflow("analog output");
    if (rawMin > raw) raw = rawMin;
    if (rawMax < raw) raw = rawMax;
    return toInt16(raw);
}

bool OperatorWriteAnalog(Station& st, int tagNumber, float value) {
    if (tagNumber < 1) return false;
    Tag& t = st.tags[tagNumber];
    if (!writable(t)) return false;
    t.Value = value;
    if (t.Direction == kOutput) {
        const std::int16_t raw = OperatorRawValue(t, value, st.profile.RawMin, st.profile.RawMax);
        st.daq.AnalogOutputValues[OutputSlot(t)] = raw;
        st.daq.Summary.AnalogOutputsPending = -1;
    }
    return true;
}

bool OperatorWriteDigital(Station& st, int tagNumber, bool ticked) {
    if (tagNumber < 1) return false;
    Tag& t = st.tags[tagNumber];
    if (!writable(t)) return false;
    t.Value = ticked ? 1.0f : 0.0f;
    if (t.Direction == kOutput) {
        if (t.IONumber < 1 || t.IONumber > 16) throwBounds("digital output bit", t.IONumber, 1, 16);
        const unsigned mask = 1u << (t.IONumber - 1);
        std::uint16_t& image = st.daq.DigitalOutputImage;
        if (ticked)
            image = static_cast<std::uint16_t>(image | mask);
        else
            image = static_cast<std::uint16_t>(image & (mask ^ 255u));
        st.daq.Summary.DigitalOutputsPending = -1;
    }
    return true;
}

}  // namespace kova
