#include "run_support.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <thread>

#include "core/main_window_model.h"
#include "core/pc_speed.h"
#include "daq/port_messages.h"
#include "logging/log_writer.h"

namespace kova::cli {

namespace {

std::atomic<bool>* gStopFlag = nullptr;

extern "C" void setStopFlag(int) {
    if (gStopFlag) gStopFlag->store(true);
}

void say(const std::string& text) {
    std::fprintf(stderr, "kova-cli: run: %s\n", text.c_str());
    std::fflush(stderr);
}

}  // namespace

void InstallStopSignals(std::atomic<bool>& stop) {
    gStopFlag = &stop;
    std::signal(SIGINT, setStopFlag);
    std::signal(SIGTERM, setStopFlag);
}

bool SleepUntilOrStop(std::chrono::steady_clock::time_point until, const std::atomic<bool>& stop,
                      const std::function<void()>& eachLook) {
    constexpr std::chrono::milliseconds kLook{50};
    while (!stop) {
        if (eachLook) eachLook();
        const auto now = std::chrono::steady_clock::now();
        if (now >= until) return true;
        std::this_thread::sleep_for(
            std::min<std::chrono::steady_clock::duration>(until - now, kLook));
    }
    return false;
}

void MeasureSpeedForRun(Station& st, const std::atomic<bool>& stop) {
    if (st.profile.TypeCode == kDaqTest || stop) return;
    // About four million rounds a slice: a few milliseconds on any PC, so a stop is seen at
    // once, and the slicing costs nothing measurable.
    const auto slicedLoop = [&stop](long long rounds) {
        constexpr long long kSlice = 1LL << 22;
        for (long long done = 0; done < rounds && !stop; done += kSlice)
            RunEmptyLoop(std::min(kSlice, rounds - done));
    };
    SystemClock clock;  // always the real one: a simulated clock stands still
    const PcSpeedResult speed = MeasurePcSpeed(clock, slicedLoop);
    if (stop) return;
    st.daq.Port.DelayCount = speed.Delay;
    std::printf("%s\n", SpeedText(speed).c_str());
    std::fflush(stdout);
    if (speed.Capped) say(CapNote(speed));
}

void RunTeller::tell(Station& st) {
    const std::string port = PortProblemToTell(st, portTold_);
    if (!port.empty()) say(port);
    const std::string silence = ModuleSilenceToTell(st);
    if (!silence.empty()) say(silence);
    const std::string restarted = LogRestartToTell(st);
    if (!restarted.empty()) say(restarted);
}

}  // namespace kova::cli
