#include "platform/windows_port_io.h"

#ifdef _WIN32
#include <windows.h>

#include <cstdint>

#include "platform/port_probe.h"
#include "platform/port_system.h"
#endif

namespace kova {

#ifdef _WIN32

namespace {

using Inp32Fn = short(__stdcall*)(short);
using Out32Fn = void(__stdcall*)(short, short);
using ReadUcharFn = UCHAR(__stdcall*)(USHORT);
using WriteUcharFn = void(__stdcall*)(USHORT, UCHAR);
using IsOpenFn = BOOL(__stdcall*)();
using GetPhysLongFn = BOOL(__stdcall*)(PBYTE, PDWORD);

constexpr const wchar_t* kDllName = sizeof(void*) == 8 ? L"inpoutx64.dll" : L"inpout32.dll";
constexpr const char* kDllText = sizeof(void*) == 8 ? "inpoutx64.dll" : "inpout32.dll";

template <class F>
F lookUp(HMODULE dll, const char* name) {
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
}

class WindowsDllPortIo final : public PortIo {
  public:
    explicit WindowsDllPortIo(HMODULE dll) : dll_(dll) {
        inp_ = lookUp<Inp32Fn>(dll, "Inp32");
        out_ = lookUp<Out32Fn>(dll, "Out32");
        readUchar_ = lookUp<ReadUcharFn>(dll, "DlPortReadPortUchar");
        writeUchar_ = lookUp<WriteUcharFn>(dll, "DlPortWritePortUchar");
        isOpen_ = lookUp<IsOpenFn>(dll, "IsInpOutDriverOpen");
        physLong_ = lookUp<GetPhysLongFn>(dll, "GetPhysLong");
    }
    ~WindowsDllPortIo() override { FreeLibrary(dll_); }
    WindowsDllPortIo(const WindowsDllPortIo&) = delete;
    WindowsDllPortIo& operator=(const WindowsDllPortIo&) = delete;

    // Empty when the DLL can do port I/O.
    std::string check() const {
        if (!(readUchar_ && writeUchar_) && !(inp_ && out_))
            return std::string(kDllText) +
                   ": neither Inp32/Out32 nor DlPortReadPortUchar/DlPortWritePortUchar found";
        if (!isOpen_) return std::string(kDllText) + ": IsInpOutDriverOpen not found";
        if (!isOpen_())
            return std::string(kDllText) +
                   ": its port driver is not open (run KOVA once as administrator to install "
                   "it; Memory Integrity or the vulnerable-driver blocklist can also block it)";
        return {};
    }

    std::uint8_t read(std::uint16_t port) override {
        // The byte-wide DlPort calls take the whole 16-bit address; Inp32's short argument
        // cannot name ports above 0x7FFF.
        if (readUchar_) return readUchar_(port);
        if (port > 0x7FFF) return kFloatingBus;
        return static_cast<std::uint8_t>(inp_(static_cast<short>(port)));
    }

    void write(std::uint16_t port, std::uint8_t value) override {
        if (writeUchar_) {
            writeUchar_(port, value);
        } else if (port <= 0x7FFF) {
            out_(static_cast<short>(port), static_cast<short>(value));
        }
    }

    // The BIOS data area lists the bases of LPT 1..3 as words at 0x408, 0x40A, 0x40C (0 when
    // absent). Without GetPhysLong the conventional base is offered when a port answers
    // there (a floating bus would otherwise pass for one).
    std::uint16_t lptBase(int lpt) override {
        if (lpt < 1 || lpt > 3) return 0;
        const std::uintptr_t at = lpt == 3 ? 0x40C : 0x408;
        DWORD value = 0;
        if (!physLong_ || !physLong_(reinterpret_cast<PBYTE>(at), &value)) {
            const std::uint16_t base = ConventionalLptBase(lpt);
            return DataRegisterReadsBack(*this, base) ? base : 0;
        }
        return static_cast<std::uint16_t>(lpt == 2 ? (value >> 16) : (value & 0xFFFF));
    }

  private:
    HMODULE dll_;
    Inp32Fn inp_ = nullptr;
    Out32Fn out_ = nullptr;
    ReadUcharFn readUchar_ = nullptr;
    WriteUcharFn writeUchar_ = nullptr;
    IsOpenFn isOpen_ = nullptr;
    GetPhysLongFn physLong_ = nullptr;
};

}  // namespace

std::unique_ptr<PortIo> OpenWindowsPortDll(std::string& problem) {
    HMODULE dll = LoadLibraryW(kDllName);
    if (!dll) {
        problem = std::string(kDllText) + " could not be loaded (Windows error " +
                  std::to_string(GetLastError()) + "): put it beside KOVA or on the PATH";
        return nullptr;
    }
    auto port = std::make_unique<WindowsDllPortIo>(dll);
    problem = port->check();
    if (!problem.empty()) return nullptr;
    return port;
}

#else

std::unique_ptr<PortIo> OpenWindowsPortDll(std::string& problem) {
    problem = "The Windows port DLL exists only in Windows builds";
    return nullptr;
}

#endif

}  // namespace kova
