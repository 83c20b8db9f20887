#pragma once
// The program's printer port: the back-end (ppdev, direct I/O or the Windows port DLL) is
// opened on first use for the LPT number the station has selected, and opened again when
// that number changes. A port that cannot be reached reads as a floating bus (0xFF) and
// says why in problem().
#include <functional>
#include <memory>
#include <string>

#include "platform/port_io.h"

namespace kova::app {

class StationPort final : public PortIo {
  public:
    using Opener = std::function<std::unique_ptr<PortIo>(int lpt, std::string& problem)>;
    // lpt: the LPT number in use now; open: how a back-end is opened (the real chooser
    // unless a test gives another).
    explicit StationPort(std::function<int()> lpt, Opener open = {});

    std::uint8_t read(std::uint16_t port) override { return backend().read(port); }
    void write(std::uint16_t port, std::uint8_t value) override { backend().write(port, value); }
    std::uint16_t lptBase(int lpt) override { return backend().lptBase(lpt); }
    // Why the port cannot be reached ("" when it can, or before its first use).
    std::string problem() const override { return problem_; }
    bool opened() const { return backend_ != nullptr; }

  private:
    PortIo& backend();

    std::function<int()> lpt_;
    Opener open_;
    std::unique_ptr<PortIo> backend_;
    int openedLpt_ = 0;
    std::string problem_;
};

}  // namespace kova::app
