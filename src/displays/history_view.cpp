#include "displays/history_view.h"

#include <algorithm>
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

std::string curveName(int pen) {
    return "Curve" + std::to_string(pen + 1);
}

}  // namespace

HistoryView::HistoryView(Station& st, ChartPlot& chart) : st_(st), chart_(chart) {}

bool HistoryView::isFileBeingLogged(const std::string& name) const {
    const std::string& logging = st_.logging.LogFileName;
    if (name == logging) return true;
    if (name.empty() || logging.empty()) return false;
    // The same file under another spelling of its path is still the file being written.
    std::error_code ec;
    return std::filesystem::equivalent(fsPath(name), fsPath(logging), ec) && !ec;
}

bool HistoryView::selectFile() {
    const std::string proposed =
        !fileName_.empty() ? fileName_ : NativeLogPath(st_.logging.LogDirectory);
    const auto chosen = st_.platform.prompter->chooseFile(kHistoryDialogTitle, kHistoryDialogFilter,
                                                          proposed, false);
    if (!chosen || chosen->empty()) return false;
    return openFile(*chosen);
}

bool HistoryView::openFile(const std::string& name) {
    if (st_.switches.LoggingEnabled.isOn() && isFileBeingLogged(name)) {
        st_.platform.prompter->message(kCannotViewLoggingFile + name, kAppTitle);
        return false;
    }
    HistoryFile header;
    const std::string problem = header.open(name);
    if (!problem.empty())
        throw Fault(FaultKind::File, "The log file " + name + " cannot be read: " + problem);
    std::string line;
    header.readLine(line);  // an empty file names no columns
    columns_ = ScanHeader(line);
    fileName_ = name;
    // The file of an earlier selection is done with; a step needs a new selection.
    file_.close();
    return true;
}

void HistoryView::openForReading(const std::string& name) {
    const std::string problem = file_.open(name);
    if (!problem.empty())
        throw Fault(FaultKind::File, "The log file " + name + " cannot be read: " + problem);
    file_.skipLine();  // the header
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

    openForReading(fileName_);
    layout_.pens.fill(0);
    for (std::string& label : penLabels_) label.clear();
    int pen = 0;
    for (int r : rows) {
        const std::string& item = columns_.listItems[static_cast<std::size_t>(r)];
        penLabels_[pen] = item;
        const auto at = std::find(columns_.names.begin(), columns_.names.end(), item);
        layout_.pens[pen] = static_cast<std::int16_t>(at - columns_.names.begin() + 1);
        ++pen;
    }
    layout_.timeColumn = columns_.timeColumn;
    layout_.periodColumn = columns_.periodColumn;
    blockStart_ = 1;
    previousBlockStart_ = 1;
    // An empty file keeps the chart as it was, like the end of any file.
    readAndPlot();
    return true;
}

void HistoryView::forward() {
    if (!file_.isOpen()) return;  // nothing selected yet
    readAndPlot();
}

void HistoryView::readAndPlot() {
    const int rows = ReadBlock(file_, layout_, block_);
    if (rows == 0) {
        st_.platform.prompter->message(kNoMorePointsToPlot, kAppTitle);
        return;
    }
    rowsRead_ = rows;
    plot();
}

void HistoryView::back() {
    if (blockStart_ <= 1) return;
    if (!file_.isOpen()) return;
    previousBlockStart_ = blockStart_;
    blockStart_ = sub16(blockStart_, static_cast<std::int16_t>(kHistoryBlockRows));
    // The offsets of the blocks already passed take the reader straight there.
    if (!file_.seekRow(std::max<std::int64_t>(blockStart_, 1))) {
        st_.platform.prompter->message(kNoMorePointsToPlot, kAppTitle);
        return;
    }
    readAndPlot();
}

void HistoryView::chooseTimeAxis(bool time) {
    timeAxis_ = time;
    if (plotted_) labelXAxis();
}

void HistoryView::exit() {
    file_.close();
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
