#include "daq/driver_dispatch.h"

#include "daq/field_recorder.h"
#include "daq/qrt105.h"
#include "daq/qrt110.h"
#include "daq/qrt115.h"
#include "daq/qrtu.h"
#include "daq/test_module.h"

namespace kova {

PortBus StationBus(Station& st) {
    return PortBus(st.daq.Port, *st.platform.port, *st.platform.steady);
}

std::int16_t ReadAnalogInput(Station& st, std::int16_t singleEnded, std::int16_t& channel) {
    if (!st.switches.PollEnabled) return 0;
    switch (st.profile.TypeCode) {
        case kDaqTest:
            return TestReadAnalogInput(st.daq.Test, channel);
        case kDaqQrt105: {
            PortBus bus = StationBus(st);
            return Qrt105ReadAnalogInput(bus, singleEnded, channel);
        }
        case kDaqQrt110: {
            PortBus bus = StationBus(st);
            return Qrt110ReadAnalogInput(bus, singleEnded, channel);
        }
        case kDaqFieldRecorder: {
            PortBus bus = StationBus(st);
            return FieldRecorderReadAnalogInput(bus);
        }
        case kDaqQrtu: {
            PortBus bus = StationBus(st);
            return QrtuReadAnalogInput(bus, channel);
        }
        default:
            return 0;  // the QRT115 has no analog inputs
    }
}

std::uint16_t ReadDigitalInputs(Station& st) {
    if (!st.switches.PollEnabled) return 0;
    switch (st.profile.TypeCode) {
        case kDaqTest:
            return TestReadDigitalInputs(st.daq.Test);
        case kDaqQrt105: {
            PortBus bus = StationBus(st);
            return Qrt105ReadDigitalInputs(bus, st.daq.DigitalOutputImage);
        }
        case kDaqQrt115: {
            PortBus bus = StationBus(st);
            return Qrt115ReadDigitalInputs(bus);
        }
        case kDaqQrtu: {
            PortBus bus = StationBus(st);
            return QrtuReadDigitalInputs(bus);
        }
        case kDaqQrt110:
        case kDaqFieldRecorder:
            return 1;  // no digital inputs; no tag can name one
        default:
            return 0;
    }
}

void WriteAnalogOutputs(Station& st) {
    if (!st.switches.PollEnabled) return;
    const auto& table = st.daq.AnalogOutputValues;
    switch (st.profile.TypeCode) {
        case kDaqQrt110: {
            PortBus bus = StationBus(st);
            Qrt110WriteAnalogOutputs(bus, table[1], table[2]);
            break;
        }
        case kDaqQrtu: {
            PortBus bus = StationBus(st);
            QrtuWriteAnalogOutputs(bus, table[1]);
            break;
        }
        default:
            break;  // TEST keeps its outputs in the table; the others have none
    }
}

void WriteDigitalOutputs(Station& st, std::uint16_t word) {
    if (!st.switches.PollEnabled) return;
    switch (st.profile.TypeCode) {
        case kDaqQrt105: {
            PortBus bus = StationBus(st);
            Qrt105WriteDigitalOutputs(bus, word);
            break;
        }
        case kDaqQrt115: {
            PortBus bus = StationBus(st);
            Qrt115WriteDigitalOutputs(bus, word);
            break;
        }
        case kDaqQrtu: {
            PortBus bus = StationBus(st);
            QrtuWriteDigitalOutputs(bus, word);
            break;
        }
        default:
            break;  // TEST keeps the word; the QRT110 and FIELD RECORDER have no outputs
    }
}

void SelectPort(Station& st, int lpt, std::uint16_t base) {
    PortState& p = st.daq.Port;
    p.PortError = 0;
    if (base == 0) {
        if (lpt == 1)
            base = 0x378;
        else if (lpt == 2)
            base = 0x278;
        else {
            p.PortError = 1;
            return;
        }
    }
    p.DataPort = base;
    p.StatusPort = static_cast<std::uint16_t>(base + 1);
    p.ControlPort = static_cast<std::uint16_t>(base + 2);
    p.DataShadow = 0;
    p.NotAnswering = 0;  // a new port: whatever hangs on it has not been asked yet
    p.ControlShadow = 0x0A;
    st.platform.port->write(p.ControlPort, p.ControlShadow);
}

void RebuildModuleSummary(Station& st) {
    ModuleSummary& m = st.daq.Summary;
    m.InUse = 0;
    m.LowestAnalogInput = 30000;
    m.HighestAnalogInput = -1;
    m.LowestDigitalInput = 30000;
    m.HighestDigitalInput = -1;
    for (int i = 1; i <= kUserTags; ++i) {
        const Tag& t = st.tags[i];
        if (t.Address <= 0 || t.Direction != kInput) continue;
        m.InUse = -1;
        if (t.IONumber <= 0) continue;
        if (t.Kind == kAnalog) {
            if (t.IONumber < m.LowestAnalogInput) m.LowestAnalogInput = t.IONumber;
            if (t.IONumber > m.HighestAnalogInput) m.HighestAnalogInput = t.IONumber;
        } else {
            // Compared with the analog bounds, deliberately: the digital bounds only mean
            // something on modules without analog input tags, and no driver relies on them.
            if (t.IONumber < m.LowestAnalogInput) m.LowestDigitalInput = t.IONumber;
            if (t.IONumber > m.HighestAnalogInput) m.HighestDigitalInput = t.IONumber;
        }
    }
}

void SendPendingOutputs(Station& st) {
    ModuleSummary& m = st.daq.Summary;
    if (m.DigitalOutputsPending != 0) {
        WriteDigitalOutputs(st, st.daq.DigitalOutputImage);
        m.DigitalOutputsPending = 0;
    }
    if (m.AnalogOutputsPending != 0) {
        WriteAnalogOutputs(st);
        m.AnalogOutputsPending = 0;
    }
}

}  // namespace kova
