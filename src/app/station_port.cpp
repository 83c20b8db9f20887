#include "app/station_port.h"

#include "platform/port_backends.h"

namespace kova::app {

StationPort::StationPort(std::function<int()> lpt, Opener open)
    : lpt_(std::move(lpt)), open_(std::move(open)) {
    if (!open_) open_ = [](int n, std::string& problem) { return OpenPortBackend(n, problem); };
}

PortIo& StationPort::backend() {
    const int lpt = lpt_();
    if (!backend_ || lpt != openedLpt_) {
        backend_.reset();  // the old device is given back before the new one is claimed
        problem_.clear();
        backend_ = open_(lpt, problem_);
        if (!backend_) backend_ = std::make_unique<NullPortIo>();
        openedLpt_ = lpt;
    }
    return *backend_;
}

}  // namespace kova::app
