// The station's records and JSON values from outside: a real broker, the demonstration
// configuration logging every 100 ms on the TEST module, a persistent QoS 1 subscriber as a
// historian would have. The broker stops and comes back, the station is killed while it is
// away: every record arrives, in order, the held ones marked replayed.
#include <gtest/gtest.h>
#include <signal.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <map>
#include <sstream>
#include <thread>

#include "mqtt/test_broker.h"

namespace kova::test {
namespace {

// The demo as PLANT.SUF, scanned and logged every 100 ms.
struct FastStation {
    TempFolder dir;
    FastStation() {
        const char* src = std::getenv("KOVA_SOURCE_DIR");
        std::ifstream in(std::filesystem::path(src ? src : ".") / "examples" / "demo.json");
        nlohmann::json demo = nlohmann::json::parse(in);
        demo["IOPeriod"] = 100;
        demo["IOUnits"] = 1;
        demo["LogPeriod"] = 100;
        demo["LogUnits"] = 1;
        std::ofstream(dir / "fast.json") << demo.dump();
        const pid_t p = StartCli(dir.path(), {"build", "fast.json", "-o", "PLANT.SUF"});
        EXPECT_EQ(WaitCli(p), 0) << ReadFileBytes(dir / "stderr");
    }
    pid_t start(int port, std::vector<std::string> more = {}) {
        std::vector<std::string> args = {
            "run",     "PLANT.SUF", "--poll", "--mqtt", "127.0.0.1:" + std::to_string(port),
            "--state", "state.json"};
        args.insert(args.end(), more.begin(), more.end());
        return StartCli(dir.path(), args);
    }
    std::string err() { return ReadFileBytes(dir / "stderr"); }
};

// Keeps sessions across its restarts and queues plenty for a subscriber that is away.
TestBroker::Config Persistent() {
    return [](int port, int, const std::filesystem::path& folder) {
        // The broker drops root's rights to its own user, which must be able to save there.
        std::filesystem::permissions(folder, std::filesystem::perms::all);
        return "listener " + std::to_string(port) +
               " 127.0.0.1\nallow_anonymous true\npersistence true\npersistence_location " +
               folder.string() + "/\nmax_queued_messages 100000\n";
    };
}

struct Seen {
    std::map<std::uint64_t, std::int64_t> timeOf;  // sequence -> ts
    std::vector<std::uint64_t> order;              // sequences as they arrived
    int replayed = 0;
    int duplicatesWithAnotherTime = 0;

    // One record as a subscriber received it; a duplicate must carry the same time stamp.
    void add(const nlohmann::json& j) {
        const auto seq = j["seq"].get<std::uint64_t>();
        const auto ts = j["ts"].get<std::int64_t>();
        if (auto it = timeOf.find(seq); it != timeOf.end() && it->second != ts)
            ++duplicatesWithAnotherTime;
        timeOf[seq] = ts;
        order.push_back(seq);
        replayed += j["replayed"].get<bool>();
    }
};

Seen Records(Subscriber& sub) {
    Seen s;
    for (const auto& m : sub.messages()) {
        if (m.topic != "kova/PLANT/records") continue;
        const auto j = nlohmann::json::parse(m.payload);
        s.add(j);
    }
    return s;
}

// Nothing missing from 1 to the newest, first arrivals in order, times rising with the
// sequence, and a duplicate keeps its time.
void ExpectComplete(const Seen& s) {
    ASSERT_FALSE(s.timeOf.empty());
    EXPECT_EQ(s.timeOf.begin()->first, 1u);
    EXPECT_EQ(s.timeOf.rbegin()->first, s.timeOf.size()) << "records missing";
    std::uint64_t highest = 0;
    int outOfOrder = 0;
    for (std::uint64_t seq : s.order) {
        if (seq > highest + 1) ++outOfOrder;  // one skipped ahead of a record still to come
        highest = std::max(highest, seq);
    }
    EXPECT_EQ(outOfOrder, 0);
    std::int64_t last = 0;
    for (const auto& [seq, ts] : s.timeOf) {
        EXPECT_GT(ts, last) << "record " << seq;
        last = ts;
    }
    EXPECT_EQ(s.duplicatesWithAnotherTime, 0);
}

std::uint64_t DeliveredFile(const FastStation& st) {
    return std::stoull("0" + ReadFileBytes(st.dir / "KOVA_OUTBOX" / "PLANT" / "delivered-mqtt"));
}

}  // namespace

TEST(RunRecords, JsonValuesAndRecordsCarryTheirTimeAndQuality) {
    TestBroker broker;
    FastStation station;
    Subscriber sub(broker.port(), "kova/PLANT/#");
    const pid_t p = station.start(broker.port(), {"--mqtt-format", "json"});
    ASSERT_TRUE(sub.waitFor([&](auto&) {
        return sub.count("kova/PLANT/records") >= 5 && sub.count("kova/PLANT/tags/LEVEL") > 0;
    }));
    kill(p, SIGTERM);
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    const auto level = nlohmann::json::parse(sub.last("kova/PLANT/tags/LEVEL"));
    EXPECT_TRUE(level["v"].is_number());
    EXPECT_EQ(level["q"], "good");
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
    EXPECT_NEAR(static_cast<double>(level["ts"].get<std::int64_t>()), static_cast<double>(now),
                60000.0);
    const auto rec = nlohmann::json::parse(sub.last("kova/PLANT/records"));
    EXPECT_EQ(rec["q"], "good");
    EXPECT_FALSE(rec["replayed"].get<bool>());
    EXPECT_TRUE(rec["values"].contains("LEVEL"));
    EXPECT_FALSE(rec["values"].contains("PRESS")) << "not logged";
    ExpectComplete(Records(sub));
}

// A historian's persistent QoS 1 subscriber on <prefix>/records, as a process of its own.
struct Historian {
    TempFolder dir;
    pid_t pid;
    Historian(int port) : pid(StartHistorian(dir.path(), port, "kova/PLANT/records", "historian")) {
        // Subscribed once its session is there: give it a moment.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    ~Historian() {
        kill(pid, SIGTERM);
        WaitCli(pid);
    }
    Seen records() {
        Seen s;
        std::istringstream lines(ReadFileBytes(dir / "historian.out"));
        for (std::string line; std::getline(lines, line);) {
            const auto j = nlohmann::json::parse(line, nullptr, false);
            if (j.is_discarded()) continue;  // a line being written
            s.add(j);
        }
        return s;
    }
};

TEST(RunRecords, ABrokerAwayForSecondsLosesNoRecordAndTheHeldOnesComeFirstMarked) {
    TestBroker broker(Persistent());
    FastStation station;
    Historian historian(broker.port());
    const pid_t p = station.start(broker.port());
    ASSERT_TRUE(WaitUntil([&] { return historian.records().order.size() >= 5; }));
    broker.stop();
    std::this_thread::sleep_for(std::chrono::seconds(3));
    broker.start();
    // The records held meanwhile arrive, marked, then live ones again.
    ASSERT_TRUE(WaitUntil(
        [&] {
            const Seen s = historian.records();
            return s.replayed >= 20 && !s.order.empty() && s.order.size() > s.replayed + 10u;
        },
        std::chrono::seconds(20)))
        << station.err() << historian.records().order.size() << " records, "
        << historian.records().replayed << " replayed";
    kill(p, SIGTERM);
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    const std::uint64_t delivered = DeliveredFile(station);
    ASSERT_TRUE(WaitUntil([&] { return historian.records().timeOf.size() >= delivered; }));
    ExpectComplete(historian.records());
    EXPECT_EQ(historian.records().timeOf.size(), delivered);
    EXPECT_NE(ReadFileBytes(station.dir / "state.json").find("\"LateTicks\": 0"), std::string::npos)
        << "a broker away delays no tick";
}

TEST(RunRecords, AStationKilledWhileTheBrokerIsAwayLosesNothingAfterItsRestart) {
    TestBroker broker(Persistent());
    FastStation station;
    Historian historian(broker.port());
    pid_t p = station.start(broker.port());
    ASSERT_TRUE(WaitUntil([&] { return historian.records().order.size() >= 5; }));
    broker.stop();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    kill(p, SIGKILL);
    EXPECT_EQ(WaitCli(p), 128 + SIGKILL);
    broker.start();
    p = station.start(broker.port());
    ASSERT_TRUE(
        WaitUntil([&] { return historian.records().replayed >= 15; }, std::chrono::seconds(20)))
        << station.err();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    kill(p, SIGTERM);
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    const std::uint64_t delivered = DeliveredFile(station);
    ASSERT_TRUE(WaitUntil([&] { return historian.records().timeOf.size() >= delivered; }));
    ExpectComplete(historian.records());
}

}  // namespace kova::test
