// TEMPORARY: stands for the readings screen's operator write until it lands.
#include "mqtt/operator_write_rules.h"

#include "core/numeric.h"
#include "daq/driver_dispatch.h"

namespace kova::mqtt {

void OperatorSetAnalog(Station& st, int n, double value) {
    Tag& tag = st.tags[n];
    tag.Value = toSingle(value);
    if (tag.Direction != 1) return;
    double raw = (tag.Value - tag.Offset) / tag.Slope;
    if (st.profile.RawMin > raw) raw = st.profile.RawMin;
    if (st.profile.RawMax < raw) raw = st.profile.RawMax;
    const int slot = (tag.Address - 1) * 20 + tag.IONumber;
    if (slot < 1 || slot > 32) return;
    st.daq.AnalogOutputValues[slot] = toInt16(raw);
    st.daq.Summary.AnalogOutputsPending = -1;
}

void OperatorSetDigital(Station& st, int n, bool on) {
    Tag& tag = st.tags[n];
    tag.Value = on ? 1.0f : 0.0f;
    if (tag.Direction != 1) return;
    const unsigned mask = 1u << (tag.IONumber - 1);
    if (on)
        st.daq.DigitalOutputImage = static_cast<std::uint16_t>(st.daq.DigitalOutputImage | mask);
    else
        st.daq.DigitalOutputImage = static_cast<std::uint16_t>(st.daq.DigitalOutputImage & (mask ^ 255u));
    st.daq.Summary.DigitalOutputsPending = -1;
}

void SendPendingOutputs(Station& st) {
    if (st.daq.Summary.DigitalOutputsPending) {
        WriteDigitalOutputs(st, st.daq.DigitalOutputImage);
        st.daq.Summary.DigitalOutputsPending = 0;
    }
    if (st.daq.Summary.AnalogOutputsPending) {
        WriteAnalogOutputs(st);
        st.daq.Summary.AnalogOutputsPending = 0;
    }
}

}  // namespace kova::mqtt
