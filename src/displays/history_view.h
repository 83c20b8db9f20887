#pragma once
// The "Chart History" window (ViewHist) as a model: the chosen log file, its columns, the
// four pens, the block of 200 rows on the chart and the steps through the file.
#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/station.h"
#include "displays/history_file.h"
#include "platform/background_work.h"
#include "platform/chart_plot.h"

namespace kova {

inline constexpr const char* kHistoryCaption = "Chart History";
inline constexpr const char* kHistorySelectFileCaption = "&Select File";
inline constexpr const char* kHistoryForwardCaption = "&Forward";
inline constexpr const char* kHistoryBackCaption = "&Back";
inline constexpr const char* kHistoryPrintCaption = "&Print";
inline constexpr const char* kHistoryExitCaption = "E&xit";
inline constexpr const char* kHistoryAxisFrame = "X-Axis";
inline constexpr const char* kHistoryTimeOption = "Time";
inline constexpr const char* kHistoryPeriodOption = "Period";
// The file dialog keeps the title it has always had, although it opens log files.
inline constexpr const char* kHistoryDialogTitle = "Open SetUp File";
inline constexpr const char* kHistoryDialogFilter = "All Files (*.CSV)|*.CSV|";
inline constexpr const char* kCannotViewLoggingFile = "Cannot View Current Logging File ";
inline constexpr const char* kNoMorePointsToPlot = "No More Points To Plot";

// One unit of X per row: labels every 25 rows sit at X = 0, 25, ... 175.
inline constexpr double kHistoryXIncrement = 1.0;
inline constexpr int kHistoryLabelEvery = 25;
inline constexpr int kHistoryLabelCount = 8;

// The window's model. Everything that reads the file (the header of a chosen file, a block
// for a selection, "&Forward", "&Back") is handed to a BackgroundWork, so a file on a slow
// disk or a network share never holds up the scan; what the reading found is then shown on
// the window's thread. Steps asked for while a read is under way wait their turn.
class HistoryView {
  public:
    // The window's load: "Period" is the X-axis choice. Without `work` the file is read at
    // once on the caller's thread.
    HistoryView(Station& st, ChartPlot& chart, BackgroundWork* work = nullptr);

    // "&Select File": the file dialog, then openFile with the chosen name (nothing happens
    // when the dialog is cancelled).
    void selectFile();
    // A chosen file: refused with a message when it is the file being logged; otherwise
    // its header gives the column list. Faults (File) naming the file when it cannot be
    // read or is no log file (a folder, a FIFO, a device, a first line that is no header);
    // nothing changes then.
    void openFile(const std::string& name);

    // The items selected in the column list (indexes from 0, any order). Each becomes the
    // next pen, from the top; then the file's first block is charted. More than four
    // items are refused: false, and nothing changes.
    bool selectItems(const std::vector<int>& selected);

    // "&Forward": the next 200 rows of the file.
    void forward();
    // "&Back": the 200 rows before the block start, when the block start is above 1. Only
    // "&Back" moves the block start, so after a selection it stays idle.
    void back();
    // The X-axis choice: true for "Time", false for "Period". The block on the chart is
    // labelled again at once.
    void chooseTimeAxis(bool time);
    // "E&xit": the file is closed; a read under way is forgotten.
    void exit();

    // Called after each read has been shown (the column list or the pens may have changed).
    void onChanged(std::function<void()> changed) { changed_ = std::move(changed); }
    // True while a read is under way.
    bool busy() const { return busy_; }
    // Counts the column lists read, so a window knows when to fill its list again.
    int columnsRead() const { return columnsRead_; }

    // What the window shows.
    const std::string& fileName() const { return fileName_; }  // LblFile
    const std::vector<std::string>& listItems() const { return columns_.listItems; }
    const std::array<std::string, kHistoryPens>& penLabels() const { return penLabels_; }
    bool timeAxis() const { return timeAxis_; }

    // The state behind it.
    const HistoryColumns& columns() const { return columns_; }
    const PenColumns& penColumns() const { return layout_.pens; }
    const HistoryBlock& block() const { return block_; }
    // The rows of the block that came from the file (the rest are padding): the chart draws
    // only these.
    int rowsRead() const { return rowsRead_; }
    std::int16_t blockStart() const { return blockStart_; }
    std::int16_t previousBlockStart() const { return previousBlockStart_; }
    bool fileOpen() const { return file_ && file_->isOpen(); }
    // The open file; only while no read is under way.
    const HistoryFile* file() const { return file_.get(); }

    // The block start as the window would hold it after earlier steps back; the window
    // itself never sets it (tests and benchmarks use this to exercise "&Back").
    void setBlockStartForTesting(std::int16_t start) { blockStart_ = start; }

  private:
    struct BlockRead;
    // Runs the step now, or after the reads under way.
    void whenIdle(std::function<void()> step);
    // Hands `read` to the background, then `show` (on this thread) unless exit() came first.
    void readThen(std::function<void()> read, std::function<void()> show);
    void runWaiting();
    void openNow(const std::string& name);
    void selectNow(const PenColumns& pens, const std::array<std::string, kHistoryPens>& labels);
    void forwardNow();
    void backNow();
    // A read of up to 200 rows ended: charted, or "No More Points To Plot".
    void showBlock(BlockRead& read);
    // A message box after a read, over the window as the read left it.
    void tell(const std::string& text);
    std::span<const float> drawnRows(int pen) const;
    void plot();
    void labelXAxis();

    Station& st_;
    ChartPlot& chart_;
    InlineWork inline_;
    BackgroundWork& work_;
    // Shared with a read under way, which may outlive the window.
    std::shared_ptr<HistoryFile> file_;
    std::string fileName_;
    HistoryColumns columns_;
    BlockLayout layout_;
    std::array<std::string, kHistoryPens> penLabels_;
    HistoryBlock block_;
    int rowsRead_ = 0;
    bool plotted_ = false;
    bool timeAxis_ = false;
    std::int16_t blockStart_ = 0;
    std::int16_t previousBlockStart_ = 0;
    bool overlongTold_ = false;  // the user heard of the file's overlong line

    bool busy_ = false;
    int generation_ = 0;  // moved on by exit(): a read started before it is not shown
    int columnsRead_ = 0;
    std::deque<std::function<void()>> waiting_;
    std::function<void()> changed_;
};

}  // namespace kova
