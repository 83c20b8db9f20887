#include "platform/port_backends.h"

#include "platform/direct_port_io.h"
#include "platform/ppdev_port_io.h"
#include "platform/windows_port_io.h"

namespace kova {

namespace {
std::string lptName(int lpt) {
    return "LPT " + std::to_string(lpt);
}

std::unique_ptr<PortIo> unavailable(std::string why, std::string& problem) {
    problem = std::move(why);
    return std::make_unique<UnavailablePortIo>(problem);
}
}  // namespace

std::unique_ptr<PortIo> OpenPortBackend(int lpt, std::string& problem,
                                        std::shared_ptr<PortSystem> sys, const PortPaths& paths) {
    if (lpt < 1 || lpt > 3)
        return unavailable("Printer port " + lptName(lpt) + " does not exist: choose LPT 1, 2 or 3",
                           problem);
    auto ppdev = std::make_unique<PpdevPortIo>(sys, paths, lpt);
    if (ppdev->ok()) {
        problem.clear();
        return ppdev;
    }
    auto direct = std::make_unique<DirectPortIo>(sys, paths, lpt);
    if (direct->ok()) {
        problem.clear();
        return direct;
    }
    return unavailable("Printer port " + lptName(lpt) + " cannot be reached, " +
                           kFloatingBusReadsText + ". " + ppdev->problem() + ". " +
                           direct->problem() + ".",
                       problem);
}

std::unique_ptr<PortIo> OpenPortBackend(int lpt, std::string& problem) {
#ifdef _WIN32
    (void)lpt;
    std::string why;
    if (auto port = OpenWindowsPortDll(why)) {
        problem.clear();
        return port;
    }
    return unavailable(std::string("The printer ports cannot be reached, ") +
                           kFloatingBusReadsText + ". " + why + ".",
                       problem);
#else
    return OpenPortBackend(lpt, problem, MakeRealPortSystem(), PortPaths{});
#endif
}

}  // namespace kova
