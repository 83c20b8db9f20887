// Feeds arbitrary bytes to the history reader as a log file. It must never crash or hang;
// every block it reads holds 200 rows with finite values and padding after the rows read;
// a step back through the block offsets lands on the same line a plain read gives; and the
// window's model steps through the file to its end.
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/fault.h"
#include "core/station.h"
#include "displays/history_file.h"
#include "displays/history_view.h"
#include "platform/chart_plot.h"

namespace {

class NullChart final : public kova::ChartPlot {
  public:
    int curveCount() const override { return curves; }
    // A curve holds the rows read from the file: never more than a block.
    void addCurve(const std::string&, std::span<const float> y, double) override {
        if (y.size() > kova::kHistoryBlockRows) std::abort();
        for (float v : y)
            if (!std::isfinite(v)) std::abort();
        ++curves;
    }
    void replaceCurve(int, std::span<const float> y, double) override {
        if (y.size() > kova::kHistoryBlockRows) std::abort();
    }
    void setCurveLegend(int, const std::string&) override {}
    void setXSpan(double) override {}
    void autoScaleY() override {}
    void setYLimits(double, double) override {}
    int xLabelCount() const override { return labels; }
    void removeXLabel(int i) override {
        if (i >= 0 && i < labels) --labels;
    }
    void addXLabel(double, const std::string&) override {
        if (++labels > kova::kHistoryLabelCount) std::abort();
    }
    int curves = 0;
    int labels = 0;
};

class CountingPrompter final : public kova::Prompter {
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

const std::string& ScratchFile() {
    static const std::string path = (std::filesystem::temp_directory_path() /
                                     ("kova-fuzz-history-" + std::to_string(::getpid()) + ".CSV"))
                                        .string();
    return path;
}

void CheckField(const std::string& line, int n) {
    const std::string f = kova::GetField(line, n);
    if (!f.empty() && (f.front() == ' ' || f.back() == ' ')) std::abort();
    if (f.find(',') != std::string::npos) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kova;
    const std::string& path = ScratchFile();
    {
        std::FILE* f = std::fopen(path.c_str(), "wb");
        if (!f) return 0;
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    }

    // The reader: every line read in order, remembered to check the steps back against.
    // Half the inputs get a short longest line, so that small inputs meet overlong lines, and
    // half are read a few bytes at a time, so that lines span reads.
    const std::size_t longest =
        size > 0 && (data[0] & 1) ? 4 + data[0] / 2 : HistoryFile::kMaxLineBytes;
    const std::size_t readBytes = size > 1 && (data[1] & 1) ? 1 + data[1] % 23 : 0;
    HistoryFile file(longest, readBytes);
    if (!file.open(path).empty()) std::abort();
    std::string header;
    const std::string problem = file.readHeader(header);
    if (header.size() > longest) std::abort();
    const HistoryColumns columns = ScanHeader(header);
    if (columns.names.size() > static_cast<std::size_t>(kHistoryMaxColumns)) std::abort();
    if (columns.listItems.size() > columns.names.size()) std::abort();
    for (int n = 0; n <= 22; ++n) CheckField(header, n);

    std::vector<std::string> lines;
    std::string line;
    while (file.readLine(line)) {
        if (line.size() > longest) std::abort();
        CheckField(line, 1 + static_cast<int>(lines.size() % 21));
        FieldNumber(line);
        lines.push_back(line);
    }
    for (std::size_t r = 1; r <= lines.size(); r += 37) {
        if (!file.seekRow(static_cast<std::int64_t>(r))) std::abort();
        if (!file.readLine(line) || line != lines[r - 1]) std::abort();
    }
    // Reading ends at the end of the file or before the first overlong line, never after it.
    if (file.overlongRow() >= 0 &&
        file.overlongRow() !=
            (file.overlongRow() == 0 ? 0 : static_cast<std::int64_t>(lines.size()) + 1))
        std::abort();
    if (file.overlongRow() == 0 && (problem.empty() || !lines.empty())) std::abort();
    if (file.seekRow(static_cast<std::int64_t>(lines.size()) + 2)) std::abort();

    // Blocks with the pens on the first columns the header lists.
    if (!file.seekRow(1) && !lines.empty()) std::abort();
    BlockLayout layout;
    for (int p = 0; p < kHistoryPens; ++p)
        layout.pens[p] = static_cast<std::int16_t>(
            1 + (static_cast<std::size_t>(p) * 3 + (size > 0 ? data[0] : 0)) % 21);
    layout.timeColumn = columns.timeColumn;
    layout.periodColumn = columns.periodColumn;
    HistoryBlock block;
    std::size_t total = 0;
    for (int n; (n = ReadBlock(file, layout, block)) > 0;) {
        if (n > kHistoryBlockRows) std::abort();
        for (int p = 0; p < kHistoryPens; ++p) {
            for (int r = 0; r < kHistoryBlockRows; ++r) {
                if (!std::isfinite(block.values[p][r])) std::abort();
                if (r >= n && block.values[p][r] != 0.0f) std::abort();
            }
        }
        for (int r = n; r < kHistoryBlockRows; ++r)
            if (!block.timeTexts[r].empty() || !block.periodTexts[r].empty()) std::abort();
        total += static_cast<std::size_t>(n);
    }
    if (total != lines.size()) std::abort();

    // The window's model over the same file.
    Station st;
    CountingPrompter prompt;
    NullChart chart;
    st.platform.prompter = &prompt;
    HistoryView view(st, chart);
    // The window reads with the longest line there is: it agrees with the reader above when
    // that did too.
    const bool sameLongest = longest == HistoryFile::kMaxLineBytes;
    try {
        view.openFile(path);
    } catch (const Fault&) {
        // Only a file whose first line is no header is refused, and then nothing changed.
        if ((sameLongest && problem.empty()) || !view.fileName().empty()) std::abort();
        std::remove(path.c_str());
        return 0;
    }
    if ((sameLongest && !problem.empty()) || view.fileName() != path) std::abort();
    std::vector<int> selected;
    for (int i = 0; i < static_cast<int>(view.listItems().size()) && i < kHistoryPens; ++i)
        selected.push_back(i);
    if (!view.selectItems(selected)) std::abort();
    view.chooseTimeAxis(true);
    int steps = 0;
    while (prompt.messages == 0) {
        view.forward();
        // A file of `size` bytes holds at most size + 1 lines.
        if (++steps > 2 + static_cast<int>(size + 1) / kHistoryBlockRows) std::abort();
    }
    view.setBlockStartForTesting(401);
    view.back();
    view.exit();
    std::remove(path.c_str());
    return 0;
}
