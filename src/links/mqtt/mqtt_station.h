#pragma once
// A station seen from the broker: after every tick the tags whose values changed are
// published (all of them again after every connect), each alarm line as it reaches the
// status bar, and, when the user allowed it, writes from <prefix>/set/<TAGNAME> are applied
// with the rules of an operator write from a readings screen. Everything the user must hear
// (a refused write, a retained write ignored, writes dropped, why the broker cannot be
// reached) is one line each on the error stream, with anything that came from the network
// escaped and cut.
#include <array>
#include <atomic>
#include <iosfwd>
#include <string>
#include <vector>

#include "core/station.h"
#include "links/mqtt/mqtt_link.h"
#include "links/mqtt/mqtt_record_sender.h"

namespace kova::mqtt {

// How a tag's value is published: the number alone, or a JSON object with the scan's time
// and the reading's quality: {"v":12.5,"ts":1763892000500,"q":"good"}.
enum class ValueFormat { Plain, Json };

class MqttStation {
  public:
    // errors: where a refused write is told, one line each. records: the sender of the
    // outbox's records, when there is one (tag values wait while it catches up).
    MqttStation(MqttLink& link, std::string prefix, std::ostream& errors,
                ValueFormat format = ValueFormat::Plain, MqttRecordSender* records = nullptr);
    // Takes its callback off the link, which may live on and reconnect.
    ~MqttStation();
    MqttStation(const MqttStation&) = delete;
    MqttStation& operator=(const MqttStation&) = delete;

    // After a tick: tells what the link has to say, applies the writes that arrived, then
    // publishes what changed.
    void afterTick(Station& st);
    // An alarm line, as it reaches the status bar.
    void publishAlarm(const std::string& line);

    // The parts of afterTick, for tests and the benchmark.
    void tellLinkNotices();
    void applyWrites(Station& st);
    void publishTags(const Station& st);
    // The topic of a tag's value.
    std::string tagTopic(const std::string& tagName) const;
    // How many tag values were handed to the link so far.
    long long published() const { return published_; }
    // How many writes arrived (applied, refused or ignored) so far.
    long long writesSeen() const { return writesSeen_; }

  private:
    // "" when the write was applied, else the line's text after the topic.
    std::string applyWrite(Station& st, const MqttLink::Incoming& in);
    void say(const std::string& text);

    MqttLink& link_;
    std::string prefix_;
    std::ostream& errors_;
    ValueFormat format_;
    MqttRecordSender* records_;
    std::array<std::string, kTableTags + 1> lastText_{};  // by tag number, "" = never sent
    std::array<std::string, kTableTags + 1> lastName_{};
    // The name told as not publishable (or failing to publish), so it is told once.
    std::array<std::string, kTableTags + 1> unpublishedTold_{};
    std::atomic<bool> republish_{true};
    void sendAlarmsKept();
    static constexpr std::size_t kAlarmsKeptWhileAway = 1000;
    std::vector<std::string> alarmsWhileAway_;  // the scan's thread's own
    bool retainedTold_ = false;
    long long published_ = 0;
    long long writesSeen_ = 0;
};

// "" when the tag name can be a level of a topic, else why not: "+" and "#" are wildcards,
// "/" separates levels, and control characters (a NUL ends the text early) are no name.
std::string TopicLevelProblem(const std::string& name);

}  // namespace kova::mqtt
