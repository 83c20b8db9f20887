#include "daq/port_messages.h"

#include "daq/driver_dispatch.h"
#include "platform/port_system.h"

namespace kova {

namespace {
std::string inputsText(int count, const char* kind) {
    return count == 1 ? std::string("on its ") + kind + " input"
                      : std::string("on every ") + kind + " input";
}
}  // namespace

std::string FloatingBusReadingsText(int typeCode) {
    if (typeCode <= kDaqTest || typeCode >= kDaqTypeCount) return {};
    // The module's own driver on a port with nothing on it, polling on.
    Station probe;
    NullPortIo floating;
    SteppingSteadyClock clock(std::chrono::milliseconds(1));
    probe.platform.port = &floating;
    probe.platform.steady = &clock;
    // A clean profile: the station's own keeps counts a previous type set.
    probe.profile = DaqProfile{};
    BuildIOList(probe.profile, typeCode);
    probe.switches.PollEnabled = true;
    std::string parts;
    if (probe.profile.AnalogInputs > 0) {
        std::int16_t channel = 1;
        const int value = ReadAnalogInput(probe, 1, channel);
        parts = std::to_string(value) + " " + inputsText(probe.profile.AnalogInputs, "analog");
    }
    if (probe.profile.DigitalInputs > 0) {
        if (!parts.empty()) parts += " and ";
        parts += std::to_string(ReadDigitalInputs(probe)) + " on its digital inputs";
    }
    return "The " + probe.profile.TypeString + " will read " + parts + ".";
}

std::string ModuleSilenceToTell(Station& st) {
    if (st.daq.Port.NotAnswering == 0 || st.profile.TypeCode == kDaqTest) {
        st.daq.SilenceTold = false;
        return {};
    }
    if (st.daq.SilenceTold || !st.platform.port->problem().empty()) return {};
    st.daq.SilenceTold = true;
    const bool one = st.profile.AnalogInputs == 1;
    return "The " + st.profile.TypeString + " on LPT " + std::to_string(st.daq.PrinterPortNumber) +
           " (" + HexAddress(st.daq.Port.DataPort) + ") is not answering: " +
           (one ? "its analog input reads -1" : "its analog inputs read -1");
}

}  // namespace kova
