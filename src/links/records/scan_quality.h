#pragma once
// Whether the readings of the last scan can be trusted: not when the port cannot be
// reached, when the module did not answer, or when the driver's last request left the port
// error set (a digital read with a bad request among them). Outputs, variables and the
// system variables are the station's own values and always good.
#include <string>

#include "core/station.h"

namespace kova::links {

struct ScanQuality {
    bool good = true;
    std::string why;  // "" when good: "the port cannot be reached: ...", ...
};

ScanQuality QualityOfScan(const Station& st);
// True when tag n is read from the module (an input with an I/O point), so the scan's
// quality is its own.
bool TagIsReading(const Station& st, int n);

}  // namespace kova::links
