#include "daq/printer_port_detect.h"

#include <cstdio>

#include "daq/driver_dispatch.h"

namespace kova {

namespace {
constexpr std::uint16_t kEcrOffset = 0x402;
constexpr std::uint16_t kEppAddressOffset = 3;

std::uint16_t at(std::uint16_t base, std::uint16_t offset) {
    return static_cast<std::uint16_t>(base + offset);
}
std::uint8_t readEcr(PortIo& io, std::uint16_t base) {
    return io.read(at(base, kEcrOffset));
}
}  // namespace

std::string GetEcpModeDescription(int mode) {
    switch (mode) {
        case 0:
            return "SPP";
        case 1:
            return "PS/2";
        case 2:
            return "Fast Centronics";
        case 3:
            return "ECP";
        case 4:
            return "EPP";
        case 6:
            return "Test";
        case 7:
            return "Configuration";
        default:
            return "";
    }
}

int BitRead(int value, int n) {
    return (value & (1 << n)) >> n;
}

std::uint8_t StatusPortRead(PortIo& io, std::uint16_t base) {
    return static_cast<std::uint8_t>(io.read(at(base, 1)) ^ 0x80);
}

std::uint8_t ControlPortRead(PortIo& io, std::uint16_t base) {
    return static_cast<std::uint8_t>(io.read(at(base, 2)) ^ 0x0B);
}

void ControlPortWrite(PortIo& io, std::uint16_t base, std::uint8_t v) {
    io.write(at(base, 2), static_cast<std::uint8_t>(v ^ 0x0B));
}

std::uint8_t DataPortRead(PortIo& io, std::uint16_t base) {
    return io.read(base);
}

void DataPortWrite(PortIo& io, std::uint16_t base, std::uint8_t v) {
    io.write(base, v);
}

int ReadEcpMode(PortIo& io, std::uint16_t base) {
    return (readEcr(io, base) >> 5) & 7;
}

void SetEcpMode(PortIo& io, std::uint16_t base, int mode) {
    const int ecr = readEcr(io, base) & 0x1F;
    io.write(at(base, kEcrOffset), static_cast<std::uint8_t>(mode * 32 + ecr));
}

int ReadEppTimeoutBit(PortIo& io, std::uint16_t base) {
    const int before = BitRead(StatusPortRead(io, base), 0);
    (void)before;  // read first, as the chips that clear on a status read need
    // Some chips clear the time-out by writing 1, others by writing 0: do both.
    io.write(at(base, 1), 1);
    io.write(at(base, 1), 0);
    return BitRead(StatusPortRead(io, base), 0);
}

bool TestForEcp(PortIo& io, std::uint16_t base) {
    const std::uint8_t ecr = readEcr(io, base);
    const int fifoEmpty = BitRead(ecr, 0);
    const int fifoFull = BitRead(ecr, 1);
    const int control1 = BitRead(ControlPortRead(io, base), 1);
    if (!(fifoEmpty == 1 && fifoFull == 0)) return false;
    if (control1 == 0) {
        // With control bit 1 at 0 the "ECR" might be the control register seen again
        // through incomplete address decoding: set the control register to 0x0F and see
        // whether the ECR's bit 1 follows it.
        ControlPortWrite(io, base, 0x0F);
        if (BitRead(readEcr(io, base), 1) == 1) return false;
    }
    const std::uint8_t saved = readEcr(io, base);
    io.write(at(base, kEcrOffset), 0x34);
    const bool ecp = readEcr(io, base) == 0x35;
    io.write(at(base, kEcrOffset), saved);
    return ecp;
}

bool TestForEpp(PortIo& io, std::uint16_t base) {
    const std::uint16_t address = at(base, kEppAddressOffset);
    io.write(address, 0x55);
    ReadEppTimeoutBit(io, base);
    const std::uint8_t first = io.read(address);
    ReadEppTimeoutBit(io, base);
    if (first != 0x55) return false;
    io.write(address, 0xAA);
    ReadEppTimeoutBit(io, base);
    const std::uint8_t second = io.read(address);
    ReadEppTimeoutBit(io, base);
    return second == 0xAA;
}

bool TestForPS2(PortIo& io, std::uint16_t base) {
    ControlPortWrite(io, base, 0x2F);  // direction bit set: the data lines are inputs
    bool bidirectional = false;
    DataPortWrite(io, base, 0x55);
    if (DataPortRead(io, base) != 0x55) {
        bidirectional = true;
    } else {
        DataPortWrite(io, base, 0xAA);
        bidirectional = DataPortRead(io, base) != 0xAA;
    }
    ControlPortWrite(io, base, 0x0F);  // back to output
    return bidirectional;
}

bool TestForSpp(PortIo& io, std::uint16_t base) {
    ControlPortWrite(io, base, 0x0F);
    DataPortWrite(io, base, 0x55);
    if (DataPortRead(io, base) != 0x55) return false;
    DataPortWrite(io, base, 0xAA);
    return DataPortRead(io, base) == 0xAA;
}

std::string PortTestResult::TypeText() const {
    std::string text;
    auto add = [&text](bool found, const char* name) {
        if (!found) return;
        if (!text.empty()) text += ' ';
        text += name;
    };
    add(Ecp, "ECP");
    add(Epp, "EPP");
    add(Spp, "SPP");
    add(PS2, "PS/2");
    return text;
}

PortTestResult TestPort(PortIo& io, std::uint16_t base) {
    PortTestResult r;
    r.Ecp = TestForEcp(io, base);
    if (r.Ecp) r.Mode = GetEcpModeDescription(ReadEcpMode(io, base));
    if (base != 0x3BC) r.Epp = TestForEpp(io, base);  // a port at 0x3BC cannot do EPP
    r.Spp = TestForSpp(io, base);
    r.PS2 = TestForPS2(io, base);
    return r;
}

std::string PortAddressText(std::uint16_t base) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%X", static_cast<unsigned>(base));
    return buf;
}

PrinterPortForm OpenPrinterPortForm(const Station& st) {
    PrinterPortForm f;
    const int lpt = st.daq.PrinterPortNumber;
    f.SelectedLpt = lpt >= 1 && lpt <= 3 ? lpt : 1;
    return f;
}

bool FindPort(Station& st, PrinterPortForm& form) {
    const int lpt = form.SelectedLpt;
    st.daq.PrinterPortNumber = static_cast<std::int16_t>(lpt);
    PortIo& io = *st.platform.port;
    const std::uint16_t base = io.lptBase(lpt);
    PortTestResult result;
    if (base != 0) result = TestPort(io, base);
    if (!result.Found()) {
        form.FoundBase = 0;
        form.TxtTypePort = "Not Found";
        form.TxtMode.clear();
        form.TxtAddress.clear();
        st.platform.prompter->message("Port LPT " + std::to_string(lpt) + " Not Found", kAppTitle);
        return false;
    }
    form.FoundBase = base;
    form.TxtTypePort = result.TypeText();
    form.TxtMode = result.Mode;
    form.TxtAddress = PortAddressText(base);
    InitialisePrinterPort(st, form);
    return true;
}

void InitialisePrinterPort(Station& st, PrinterPortForm& form) {
    const std::uint16_t base = form.FoundBase;
    if (form.TxtMode == "ECP") {
        // The drivers use the port as a standard port.
        SetEcpMode(*st.platform.port, base, 0);
        form.TxtMode = "SPP";
    }
    SelectPort(st, form.SelectedLpt, base);
    st.daq.PrinterPortNumber = static_cast<std::int16_t>(form.SelectedLpt);
    st.daq.PrinterPortBase = static_cast<std::int16_t>(base);
    st.platform.prompter->message("Printer Port Initialised", kAppTitle);
}

}  // namespace kova
