#include "links/records/scan_quality.h"

namespace kova::links {

ScanQuality QualityOfScan(const Station& st) {
    // The TEST module lives in the program: it needs no port.
    if (st.profile.TypeCode != kDaqTest) {
        if (!st.platform.port) return {false, "the port cannot be reached"};
        if (const std::string p = st.platform.port->problem(); !p.empty())
            return {false, "the port cannot be reached: " + p};
    }
    if (st.daq.Port.NotAnswering != 0) return {false, "the module is not answering"};
    if (st.daq.Port.PortError != 0) return {false, "the port error is set"};
    return {};
}

bool TagIsReading(const Station& st, int n) {
    if (n < 1 || n > kUserTags) return false;
    const Tag& t = st.tags[n];
    return t.Direction == kInput && t.IONumber != 0;
}

}  // namespace kova::links
