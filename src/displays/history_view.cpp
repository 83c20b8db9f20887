#include "displays/history_view.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <system_error>

#include "core/fault.h"
#include "core/numeric.h"
#include "logging/log_file.h"

namespace kova {

namespace {

std::filesystem::path fsPath(const std::string& utf8) {
    const std::string native = NativeLogPath(utf8);
    return std::filesystem::path(
        std::u8string(reinterpret_cast<const char8_t*>(native.data()), native.size()));
}

// The file being logged, under this name or another spelling of its path.
bool IsSameFile(const std::string& name, const std::string& logging) {
    if (name == logging) return true;
    std::error_code ec;
    return std::filesystem::equivalent(fsPath(name), fsPath(logging), ec) && !ec;
}

std::string curveName(int pen) {
    return "Curve" + std::to_string(pen + 1);
}

}  // namespace

// What one read of up to 200 rows found; it belongs to the read until it is shown.
struct HistoryView::BlockRead {
    std::shared_ptr<HistoryFile> file;
    BlockLayout layout;
    HistoryBlock block;
    std::string problem;  // the file could not be opened
    bool there = true;    // "&Back": the block start was reached
    int rows = 0;
    std::int64_t overlongRow = -1;
};

HistoryView::HistoryView(Station& st, ChartPlot& chart, BackgroundWork* work)
    : st_(st), chart_(chart), work_(work ? *work : inline_) {}

void HistoryView::whenIdle(std::function<void()> step) {
    if (!busy_) {
        step();
        return;
    }
    // Keys held down on a file that reads slowly cannot pile up without end.
    constexpr std::size_t kMostWaiting = 64;
    if (waiting_.size() < kMostWaiting) waiting_.push_back(std::move(step));
}

void HistoryView::readThen(std::function<void()> read, std::function<void()> show) {
    busy_ = true;
    const int generation = generation_;
    auto done = [this, generation, show = std::move(show)] {
        if (generation != generation_) return;  // the window was left meanwhile
        busy_ = false;
        std::exception_ptr fault;
        try {
            show();
        } catch (...) {
            fault = std::current_exception();
        }
        if (changed_) changed_();
        if (fault) {
            // Steps asked for behind a read that failed no longer mean what they meant.
            waiting_.clear();
            std::rethrow_exception(fault);
        }
        runWaiting();
    };
    try {
        work_.run(std::move(read), std::move(done));
    } catch (...) {
        busy_ = false;  // no thread could be had for it: nothing is under way
        throw;
    }
}

void HistoryView::runWaiting() {
    while (!busy_ && !waiting_.empty()) {
        std::function<void()> step = std::move(waiting_.front());
        waiting_.pop_front();
        step();
    }
}

void HistoryView::selectFile() {
    const std::string proposed =
        !fileName_.empty() ? fileName_ : NativeLogPath(st_.logging.LogDirectory);
    const auto chosen = st_.platform.prompter->chooseFile(kHistoryDialogTitle, kHistoryDialogFilter,
                                                          proposed, false);
    if (!chosen || chosen->empty()) return;
    openFile(*chosen);
}

void HistoryView::openFile(const std::string& name) {
    whenIdle([this, name] { openNow(name); });
}

void HistoryView::openNow(const std::string& name) {
    // Even telling two spellings of a path apart asks the file system: done with the read.
    const std::string logging =
        st_.switches.LoggingEnabled.isOn() ? st_.logging.LogFileName : std::string();
    struct HeaderRead {
        bool beingLogged = false;
        std::string problem;
        HistoryColumns columns;
    };
    auto read = std::make_shared<HeaderRead>();
    readThen(
        [read, name, logging] {
            read->beingLogged = !logging.empty() && IsSameFile(name, logging);
            if (read->beingLogged) return;
            HistoryFile file;
            read->problem = file.open(name);
            std::string header;
            if (read->problem.empty()) read->problem = file.readHeader(header);
            if (read->problem.empty()) read->columns = ScanHeader(header);
        },
        [this, read, name] {
            if (read->beingLogged) {
                st_.platform.prompter->message(kCannotViewLoggingFile + name, kAppTitle);
                return;
            }
            if (!read->problem.empty())
                throw Fault(FaultKind::File,
                            "The log file " + name + " cannot be read: " + read->problem);
            columns_ = std::move(read->columns);
            ++columnsRead_;
            fileName_ = name;
            // The file of an earlier selection is done with; a step needs a new selection.
            file_.reset();
        });
}

bool HistoryView::selectItems(const std::vector<int>& selected) {
    std::vector<int> rows;
    for (int r : selected)
        if (r >= 0 && r < static_cast<int>(columns_.listItems.size())) rows.push_back(r);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    // There are four pens; a fifth item has none.
    if (rows.size() > static_cast<std::size_t>(kHistoryPens)) return false;
    if (fileName_.empty()) return true;

    PenColumns pens{};
    std::array<std::string, kHistoryPens> labels;
    int pen = 0;
    for (int r : rows) {
        const std::string& item = columns_.listItems[static_cast<std::size_t>(r)];
        labels[pen] = item;
        const auto at = std::find(columns_.names.begin(), columns_.names.end(), item);
        pens[pen] = static_cast<std::int16_t>(at - columns_.names.begin() + 1);
        ++pen;
    }
    whenIdle([this, pens, labels] { selectNow(pens, labels); });
    return true;
}

void HistoryView::selectNow(const PenColumns& pens,
                            const std::array<std::string, kHistoryPens>& labels) {
    auto read = std::make_shared<BlockRead>();
    read->layout.pens = pens;
    read->layout.timeColumn = columns_.timeColumn;
    read->layout.periodColumn = columns_.periodColumn;
    const std::string name = fileName_;
    readThen(
        [read, name] {
            auto file = std::make_shared<HistoryFile>();
            read->problem = file->open(name);
            if (!read->problem.empty()) return;
            file->skipLine();  // the header
            read->rows = ReadBlock(*file, read->layout, read->block);
            read->overlongRow = file->overlongRow();
            read->file = std::move(file);
        },
        [this, read, name, labels] {
            if (!read->problem.empty())
                throw Fault(FaultKind::File,
                            "The log file " + name + " cannot be read: " + read->problem);
            file_ = read->file;
            layout_ = read->layout;
            penLabels_ = labels;
            blockStart_ = 1;
            previousBlockStart_ = 1;
            overlongTold_ = false;
            // An empty file keeps the chart as it was, like the end of any file.
            showBlock(*read);
        });
}

void HistoryView::forward() {
    whenIdle([this] { forwardNow(); });
}

void HistoryView::forwardNow() {
    if (!fileOpen()) return;  // nothing selected yet
    auto read = std::make_shared<BlockRead>();
    read->file = file_;
    read->layout = layout_;
    readThen(
        [read] {
            read->rows = ReadBlock(*read->file, read->layout, read->block);
            read->overlongRow = read->file->overlongRow();
        },
        [this, read] { showBlock(*read); });
}

void HistoryView::back() {
    whenIdle([this] { backNow(); });
}

void HistoryView::backNow() {
    if (blockStart_ <= 1) return;
    if (!fileOpen()) return;
    previousBlockStart_ = blockStart_;
    blockStart_ = sub16(blockStart_, static_cast<std::int16_t>(kHistoryBlockRows));
    auto read = std::make_shared<BlockRead>();
    read->file = file_;
    read->layout = layout_;
    const std::int64_t row = std::max<std::int64_t>(blockStart_, 1);
    readThen(
        [read, row] {
            // The offsets of the blocks already passed take the reader straight there.
            read->there = read->file->seekRow(row);
            if (read->there) read->rows = ReadBlock(*read->file, read->layout, read->block);
            read->overlongRow = read->file->overlongRow();
        },
        [this, read] { showBlock(*read); });
}

void HistoryView::showBlock(BlockRead& read) {
    // A line too long to be a log line ends what can be charted of the file; the user hears
    // why once, instead of being told there are no more points.
    if (read.overlongRow >= 0 && !overlongTold_) {
        overlongTold_ = true;
        if (read.rows > 0) {
            block_ = std::move(read.block);
            rowsRead_ = read.rows;
            plot();
        }
        tell("Line " + std::to_string(read.overlongRow + 1) + " of " + fileName_ +
             " is longer than " + std::to_string(HistoryFile::kMaxLineBytes) +
             " bytes: it is not a log line, and the chart ends before it");
        return;
    }
    if (!read.there || read.rows == 0) {
        tell(kNoMorePointsToPlot);
        return;
    }
    block_ = std::move(read.block);
    rowsRead_ = read.rows;
    plot();
}

void HistoryView::tell(const std::string& text) {
    // The window shows what was read (pens, chart) before the box holds it up.
    if (changed_) changed_();
    st_.platform.prompter->message(text, kAppTitle);
}

void HistoryView::chooseTimeAxis(bool time) {
    timeAxis_ = time;
    if (plotted_) labelXAxis();
}

void HistoryView::exit() {
    ++generation_;
    waiting_.clear();
    busy_ = false;
    file_.reset();
}

std::span<const float> HistoryView::drawnRows(int pen) const {
    // A pen with no column has nothing to draw; the padding after the file's last row is not
    // data either.
    if (layout_.pens[pen] <= 0) return {};
    return std::span<const float>(block_.values[pen]).first(static_cast<std::size_t>(rowsRead_));
}

void HistoryView::plot() {
    chart_.setXSpan((kHistoryBlockRows - 1) * kHistoryXIncrement);
    if (chart_.curveCount() == 0) {
        for (int p = 0; p < kHistoryPens; ++p)
            chart_.addCurve(curveName(p), drawnRows(p), kHistoryXIncrement);
    } else {
        for (int p = 0; p < kHistoryPens; ++p)
            chart_.replaceCurve(p, drawnRows(p), kHistoryXIncrement);
    }
    for (int p = 0; p < kHistoryPens; ++p)
        chart_.setCurveLegend(p, penLabels_[p].empty() ? curveName(p) : penLabels_[p]);
    chart_.autoScaleY();
    labelXAxis();
    plotted_ = true;
}

void HistoryView::labelXAxis() {
    for (int i = kHistoryLabelCount - 1; i >= 0; --i) chart_.removeXLabel(i);
    for (int i = 0; i < kHistoryLabelCount; ++i) {
        const int row = i * kHistoryLabelEvery;
        const std::string& text = timeAxis_ ? block_.timeTexts[row] : block_.periodTexts[row];
        chart_.addXLabel(row * kHistoryXIncrement, text);
    }
}

}  // namespace kova
