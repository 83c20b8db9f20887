#include "platform/steady_clock.h"

namespace kova {

MachineSteadyClock& TheSteadyClock() {
    static MachineSteadyClock clock;
    return clock;
}

}  // namespace kova
