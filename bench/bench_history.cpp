// The history chart on a long log: eighteen million rows (a gigabyte) written once per run
// into a temporary folder in the logger's own format, then opening the file (header, column
// list, first block), one "&Forward" step, and a step back to a block far into the file,
// with the page cache warm and cold. Memory is counted as the reader walks the whole file:
// the resident size and the heap allocations per step must stay flat. And files that are
// no logs: 5 GB of NUL bytes (a sparse file), and a header followed by 5 GB of NUL bytes
// (what a crash can leave), each refused or charted within a second.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <span>
#include <string>

#include "core/fault.h"
#include "core/station.h"
#include "displays/history_view.h"
#include "platform/chart_plot.h"
#include "support/allocation_counter.h"

namespace {

constexpr long long kRows = 18'000'000;

// A chart that keeps nothing: the benchmark measures the model and the reader.
class NullChart final : public kova::ChartPlot {
  public:
    int curveCount() const override { return curves_; }
    void addCurve(const std::string&, std::span<const float>, double) override { ++curves_; }
    void replaceCurve(int, std::span<const float>, double) override {}
    void setCurveLegend(int, const std::string&) override {}
    void setXSpan(double) override {}
    void autoScaleY() override {}
    void setYLimits(double, double) override {}
    int xLabelCount() const override { return labels_; }
    void removeXLabel(int i) override {
        if (i >= 0 && i < labels_) --labels_;
    }
    void addXLabel(double, const std::string&) override { ++labels_; }

  private:
    int curves_ = 0;
    int labels_ = 0;
};

class QuietPrompter final : public kova::Prompter {
  public:
    void message(const std::string&, const std::string&) override { ++messages; }
    bool askYesNo(const std::string&, const std::string&, kova::DefaultAnswer) override {
        return false;
    }
    kova::SaveChoice askSaveDiscardCancel(const std::string&, const std::string&) override {
        return kova::SaveChoice::Cancel;
    }
    std::optional<std::string> input(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> chooseFile(const std::string&, const std::string&,
                                          const std::string&, bool) override {
        return std::nullopt;
    }
    int messages = 0;
};

char* put(char* p, long long v, int width) {
    char digits[24];
    auto [end, ec] = std::to_chars(digits, digits + sizeof digits, v);
    (void)ec;
    for (int pad = width - static_cast<int>(end - digits); pad > 0; --pad) *p++ = '0';
    for (char* d = digits; d < end; ++d) *p++ = *d;
    return p;
}

// The generated log, removed with its folder when the program ends.
class LongLog {
  public:
    LongLog() {
        folder_ = std::filesystem::temp_directory_path() /
                  ("kova-bench-history-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder_);
        path_ = (folder_ / "LONG.CSV").string();
        write();
    }
    ~LongLog() {
        std::error_code ec;
        std::filesystem::remove_all(folder_, ec);
    }
    const std::string& path() const { return path_; }
    std::uintmax_t bytes() const { return std::filesystem::file_size(path_); }
    // Drops the file's pages from the page cache, so the next read comes from the disk.
    void evict() const {
        const int fd = ::open(path_.c_str(), O_RDONLY);
        if (fd < 0) return;
        ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
        ::close(fd);
    }

  private:
    // As the logger writes it: 0.5 s period, time, date, four tags.
    void write() {
        std::FILE* f = std::fopen(path_.c_str(), "wb");
        if (!f) std::abort();
        std::fputs("LOG PERIOD,TIME,DATE,Tank Level,Pump,Flow,Pressure\r\n", f);
        std::string buf;
        buf.reserve(1 << 22);
        char line[160];
        for (long long r = 1; r <= kRows; ++r) {
            char* p = line;
            p = put(p, r / 2, 1);
            *p++ = '.';
            p = put(p, (r % 2) * 500, 3);
            *p++ = ',';
            const long long ms = 36'900'000 + r * 500;  // from 10:15:00.000
            p = put(p, (ms / 3'600'000) % 24, 2);
            *p++ = ':';
            p = put(p, (ms / 60'000) % 60, 2);
            *p++ = ':';
            p = put(p, (ms / 1000) % 60, 2);
            *p++ = '.';
            p = put(p, ms % 1000, 3);
            const char date[] = ",15/11/26, ";
            for (const char* d = date; *d; ++d) *p++ = *d;
            p = put(p, r % 1000, 1);
            const char rest1[] = ".25 , 1 , ";
            for (const char* d = rest1; *d; ++d) *p++ = *d;
            p = put(p, (r * 7) % 500, 1);
            const char rest2[] = ".5 ,-";
            for (const char* d = rest2; *d; ++d) *p++ = *d;
            p = put(p, r % 97, 1);
            const char end[] = ".125 \r\n";
            for (const char* d = end; *d; ++d) *p++ = *d;
            buf.append(line, static_cast<std::size_t>(p - line));
            if (buf.size() > (1 << 22) - 200) {
                std::fwrite(buf.data(), 1, buf.size(), f);
                buf.clear();
            }
        }
        std::fwrite(buf.data(), 1, buf.size(), f);
        std::fflush(f);
        ::fsync(::fileno(f));
        std::fclose(f);
    }

    std::filesystem::path folder_;
    std::string path_;
};

const LongLog& Log() {
    static const LongLog log;
    return log;
}

long ResidentKb() {
    std::ifstream status("/proc/self/status");
    std::string key;
    long value = 0;
    while (status >> key) {
        if (key == "VmRSS:") {
            status >> value;
            return value;
        }
        status.ignore(1 << 10, '\n');
    }
    return 0;
}

struct Viewer {
    kova::Station st;
    QuietPrompter prompt;
    NullChart chart;
    kova::HistoryView view{st, chart};
    Viewer() { st.platform.prompter = &prompt; }
    // "&Select File" and a selection of all four tags: the header, the list, the first block.
    void open() {
        view.openFile(Log().path());
        view.selectItems({1, 2, 3, 4});
    }
};

// Choosing the file and its four tags until the first block is on the chart.
void BM_HistoryOpen(benchmark::State& state) {
    const bool cold = state.range(0) != 0;
    Log();  // written before the clock runs
    Viewer v;
    for (auto _ : state) {
        if (cold) {
            state.PauseTiming();
            Log().evict();
            state.ResumeTiming();
        }
        v.open();
    }
    state.counters["file_MB"] = static_cast<double>(Log().bytes()) / 1e6;
    state.counters["rows"] = static_cast<double>(kRows);
}
BENCHMARK(BM_HistoryOpen)->Arg(0)->Arg(1)->ArgNames({"cold"})->Unit(benchmark::kMillisecond);

// "&Forward" from the start of the file to its end and round again: the average step, and
// how the memory grows over a complete pass of ten million rows.
void BM_HistoryForward(benchmark::State& state) {
    Viewer v;
    v.open();
    long long steps = 0;
    long long passes = 0;
    const long rssBefore = ResidentKb();
    const long long allocsBefore = kova::bench::AllocationCount();
    for (auto _ : state) {
        v.view.forward();
        ++steps;
        if (v.prompt.messages > 0) {  // the end of the file: choose it again
            state.PauseTiming();
            v.prompt.messages = 0;
            v.open();
            ++passes;
            state.ResumeTiming();
        }
    }
    state.counters["rss_growth_kB"] = static_cast<double>(ResidentKb() - rssBefore);
    state.counters["allocs_per_step"] =
        static_cast<double>(kova::bench::AllocationCount() - allocsBefore) /
        static_cast<double>(steps ? steps : 1);
    state.counters["passes"] = static_cast<double>(passes);
}
BENCHMARK(BM_HistoryForward)->Unit(benchmark::kMicrosecond);

// A whole pass of "&Forward" through the file as one measurement: time for all 90,000 steps,
// the longest single step, and the resident memory before and after.
void BM_HistoryForwardWholeFile(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Viewer v;
        v.open();
        const long rssBefore = ResidentKb();
        state.ResumeTiming();
        long long steps = 0;
        double longest = 0;
        while (v.prompt.messages == 0) {
            const auto t0 = std::chrono::steady_clock::now();
            v.view.forward();
            const double ms =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0)
                    .count();
            if (ms > longest) longest = ms;
            ++steps;
        }
        state.PauseTiming();
        state.counters["steps"] = static_cast<double>(steps);
        state.counters["longest_step_ms"] = longest;
        state.counters["rss_growth_kB"] = static_cast<double>(ResidentKb() - rssBefore);
        state.counters["block_starts_known"] =
            static_cast<double>(v.view.file()->knownBlockStarts());
        state.ResumeTiming();
    }
}
BENCHMARK(BM_HistoryForwardWholeFile)->Iterations(1)->Unit(benchmark::kMillisecond);

// A step back to a block anywhere in the file, once the reader has passed it: the reader
// seeks to the block's known offset and reads 200 rows (what "&Back" does when the block
// start allows it). Warm and cold page cache.
void BM_HistoryBackToAnyBlock(benchmark::State& state) {
    const bool cold = state.range(0) != 0;
    kova::HistoryFile file;
    if (!file.open(Log().path()).empty()) {
        state.SkipWithError("cannot open the log");
        return;
    }
    while (file.skipLine()) {
    }
    kova::BlockLayout layout;
    layout.pens = {4, 5, 6, 7};
    layout.timeColumn = 2;
    layout.periodColumn = 1;
    kova::HistoryBlock block;
    std::mt19937_64 random(18);
    std::uniform_int_distribution<long long> blockOf(0, kRows / kova::kHistoryBlockRows - 1);
    long long rows = 0;
    for (auto _ : state) {
        const long long start = 1 + blockOf(random) * kova::kHistoryBlockRows;
        if (cold) {
            state.PauseTiming();
            Log().evict();
            state.ResumeTiming();
        }
        file.seekRow(start);
        rows += kova::ReadBlock(file, layout, block);
    }
    state.counters["rows_per_step"] =
        static_cast<double>(rows) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_HistoryBackToAnyBlock)
    ->Arg(0)
    ->Arg(1)
    ->ArgNames({"cold"})
    ->Unit(benchmark::kMicrosecond);

// "&Back" through the window's model from the deepest block start it can hold.
void BM_HistoryBackStep(benchmark::State& state) {
    Viewer v;
    v.open();
    for (int i = 0; i < 170; ++i) v.view.forward();  // past row 32,600
    for (auto _ : state) {
        v.view.setBlockStartForTesting(32601);
        v.view.back();
    }
    if (v.view.block().values[0][0] == 0.0f && v.prompt.messages > 0)
        state.SkipWithError("the step back found no rows");
}
BENCHMARK(BM_HistoryBackStep)->Unit(benchmark::kMicrosecond);

// A 5 GB file of NUL bytes that takes no room on the disk; with `header`, a log header comes
// first (the rest is what a crash can leave behind a log).
class SparseFile {
  public:
    explicit SparseFile(const char* name, const char* header = nullptr) {
        path_ = (std::filesystem::temp_directory_path() /
                 (std::string("kova-bench-") + name + "-" + std::to_string(::getpid()) + ".CSV"))
                    .string();
        std::FILE* f = std::fopen(path_.c_str(), "wb");
        if (!f) std::abort();
        if (header) std::fputs(header, f);
        std::fclose(f);
        std::filesystem::resize_file(path_, 5ull << 30);
    }
    ~SparseFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Choosing a 5 GB file of NUL bytes: refused as no log file.
void BM_HistoryOpenHugeSparseFile(benchmark::State& state) {
    const SparseFile file("sparse");
    Viewer v;
    long long refused = 0;
    for (auto _ : state) {
        try {
            v.view.openFile(file.path());
        } catch (const kova::Fault&) {
            ++refused;
        }
    }
    if (refused != state.iterations()) state.SkipWithError("the sparse file was not refused");
    state.counters["file_GB"] = 5;
}
BENCHMARK(BM_HistoryOpenHugeSparseFile)->Unit(benchmark::kMillisecond);

// A header and then 5 GB of NUL bytes: the file opens, a column is selected (the first block
// ends at the line that is no log line, and the user is told), then "&Forward".
void BM_HistoryChartHeaderBeforeHugeNuls(benchmark::State& state) {
    const SparseFile file("tail",
                          "LOG PERIOD,TIME,DATE,Tank Level\r\n1,10:15:00.500,15/11/26, 3 \r\n");
    double longest = 0;
    std::uint64_t fetched = 0;
    for (auto _ : state) {
        Viewer v;
        const auto t0 = std::chrono::steady_clock::now();
        v.view.openFile(file.path());
        v.view.selectItems({1});
        v.view.forward();
        const double ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0)
                .count();
        if (ms > longest) longest = ms;
        fetched = v.view.file()->bytesFetched();
        if (v.prompt.messages != 2) state.SkipWithError("expected the line's message and the end");
    }
    state.counters["longest_ms"] = longest;
    state.counters["bytes_read"] = static_cast<double>(fetched);
}
BENCHMARK(BM_HistoryChartHeaderBeforeHugeNuls)->Unit(benchmark::kMillisecond);

}  // namespace
