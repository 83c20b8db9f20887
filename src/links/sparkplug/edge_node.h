#pragma once
// The station as a Sparkplug B edge node, in payloads: the birth certificate (NBIRTH) lists
// every named tag as a metric (analog as Float, digital as Boolean, the engineering units
// as the property "engUnit"), the system variables, "Node Control/Rebirth" and the bdSeq of
// the connection; data messages (NDATA) carry the tags that changed since the last message,
// each stamped with the scan's time. Every message after a birth counts its seq up by one,
// 0..255 and round again. Metrics are always named (no aliases), so a host that joins late
// reads any message by itself once it has seen a birth.
#include <cstdint>
#include <string>
#include <vector>

#include "links/station_snapshot.h"

namespace kova::sparkplug {

inline constexpr const char* kRebirthMetric = "Node Control/Rebirth";
inline constexpr const char* kBdSeqMetric = "bdSeq";
inline constexpr const char* kUnitsProperty = "engUnit";

// Milliseconds since 1970-01-01 UTC of a reading of the station's clock (local time).
std::uint64_t UtcMillis(const LocalDateTime& t);

// The death certificate (NDEATH) of the connection made with this bdSeq: the broker sends
// it as the connection's last will, the station itself before it leaves cleanly.
std::string DeathPayload(std::uint8_t bdSeq, std::uint64_t timestamp);

// A value of a record held while the broker was away, sent after the next birth marked
// historical.
struct HeldValue {
    std::string tagName;
    float value = 0;
};

class EdgeNode {
  public:
    // NBIRTH for the connection made with `bdSeq`: seq 0, every metric with its value.
    std::string birth(const links::StationSnapshot& s, std::uint8_t bdSeq);
    // NDATA with the metrics whose value changed since the last birth or data, "" when none
    // did (nothing is sent then).
    std::string data(const links::StationSnapshot& s);
    // NDATA of values from the past (a record kept while the broker was away), marked
    // historical, with their own time; tags the birth did not list are left out ("" when
    // none is left). The live values the next data() compares with are not touched.
    std::string history(const std::vector<HeldValue>& values, std::uint64_t timestamp);
    // The metrics a birth would list differ from the last birth's (a tag was named, renamed
    // or retyped): hosts learn of new metrics only from a birth.
    bool needsRebirth(const links::StationSnapshot& s);
    // The seq of the message made last (the birth's is 0).
    std::uint8_t seq() const { return seq_; }
    // What the user should hear (a tag that cannot be a metric), once each.
    std::vector<std::string> takeNotices();

    struct MetricTag {
        int number = 0;
        std::string name;
        bool digital = false;
        std::string units;
        bool operator==(const MetricTag&) const = default;
    };

  private:
    std::vector<MetricTag> metricsOf(const links::StationSnapshot& s);
    std::uint8_t nextSeq();

    std::vector<MetricTag> metrics_;       // as the last birth listed them
    std::vector<std::uint32_t> sentBits_;  // the value last sent of each, as bits
    std::uint64_t layoutVersion_ = 0;      // of the snapshot metrics_ was made from
    const void* layout_ = nullptr;         // and its layout
    std::uint8_t seq_ = 0;
    std::vector<std::string> notices_;
    std::vector<std::string> told_;  // names told as unusable
};

}  // namespace kova::sparkplug
