#pragma once
// A primary host's STATE message: {"online": true|false, "timestamp": ms since 1970 UTC},
// retained on spBv1.0/STATE/HOST. The edge node births only while its host is online, and
// drops its connection (death first) when the host goes offline. A message older than the
// newest one seen (a stale retained copy arriving late) changes nothing.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kova::sparkplug {

// The largest STATE payload read; a host's is a few dozen bytes.
inline constexpr std::size_t kMaxHostStatePayload = 1024;

struct HostState {
    bool online = false;
    std::uint64_t timestamp = 0;
};

// The state in a payload, or nothing and why not.
std::optional<HostState> ParseHostState(const std::string& payload, std::string& error);

// What the node knows of its primary host.
class HostWatch {
  public:
    // A STATE message arrived: true when it changed whether the host is online.
    bool seen(const HostState& s);
    bool online() const { return online_; }
    // A new connection: the host counts as offline until its (retained) state arrives.
    void reconnected() { online_ = false; }

  private:
    bool online_ = false;
    std::uint64_t newest_ = 0;
};

}  // namespace kova::sparkplug
