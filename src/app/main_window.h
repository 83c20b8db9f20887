#pragma once
// The main window (MainFrm): the menus every other window opens from, the four run
// buttons with their check boxes, the status lines (the status bar's fields, kept in the
// window's body so that they wrap) and the scan timer (HiTime2).
#include <QMainWindow>
#include <QTimer>
#include <iosfwd>
#include <memory>

#include "app/window_registry.h"
#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/main_window_model.h"
#include "core/station.h"
#include "platform/help_viewer.h"

class QAction;
class QCheckBox;
class QLabel;
class QPushButton;

namespace kova {
class Printer;
class TickTrace;
}  // namespace kova

namespace kova::app {

class QtPrinter;

// The windows the menus open, one of each at a time.
enum class WindowKind {
    Tags,
    Periods,
    Screens,
    TrendSetup,
    LogParameters,
    LogStartStop,
    AlarmSetup,
    ControlLanguage,
    Calibration,
    Readings,
    MinMax,
    Trends,
    AlarmList,
    History,
    PrinterAddress,
    DaqType,
    Help,
};

class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    // prompter: the dialogs to use; nullptr uses Qt's message boxes and file dialogs.
    explicit MainWindow(Station& st, Prompter* prompter = nullptr, std::ostream* errors = nullptr);
    ~MainWindow() override;

    // The main window's load: centred, then the calibration file, "Default.Suf" (or the
    // defaults, silently), the system tags, the trend ring and the analog outputs.
    void startUp();
    // The scan timer starts firing.
    void startScan();
    // One timeout of the scan timer: the tick, then the switches onto the check boxes.
    void tick();
    // Each tick's start and duration go to the trace from now on (nullptr: no trace).
    void setTickTrace(TickTrace* trace) { tickTrace_ = trace; }

    // Opens (or brings to the front) the window of a menu item.
    void openWindow(WindowKind kind);
    // The help window at a topic.
    void showHelp(const QString& topic);

    Station& station() { return st_; }
    ErrorReport& errorReport() { return report_; }
    WindowRegistry& windows() { return windows_; }
    QTimer* scanTimer() { return &hiTime2_; }
    QtPrinter& printer() { return *printer_; }
    HelpViewer& helpViewer() { return *help_; }
    const SwitchIndicators& indicators() const { return boxes_; }
    QString statusText() const;
    // Makes the window taller when a status field needs more lines than it has room for
    // (every tick does it).
    void fitStatusFields();

    void cmdPoll();
    void cmdLog();
    void cmdAlarms();
    void cmdControl();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildMenus();
    QAction* addItem(QMenu* menu, const char* name, const char* caption);
    QAction* addWindowItem(QMenu* menu, const char* name, const char* caption, WindowKind kind);
    QWidget* createWindow(WindowKind kind);
    void mirror();
    void showLoggingStatus();
    void tickBody();
    void refreshTitle();
    bool mayReplaceConfiguration();
    void fileNew();
    void fileLoad();
    void fileSave();
    void fileSaveAs();

    Station& st_;
    std::ostream& errors_;
    Platform savedPlatform_;
    std::unique_ptr<Prompter> ownPrompter_;
    std::unique_ptr<StatusSink> status_;
    std::unique_ptr<ScanTimer> timerSeam_;
    std::unique_ptr<Beeper> beeper_;
    std::unique_ptr<QtPrinter> printer_;
    std::unique_ptr<HelpViewer> help_;
    ErrorReport report_;
    forms::WindowCalls guard_{st_, report_, this};
    WindowRegistry windows_;
    QTimer hiTime2_;
    SwitchIndicators boxes_;
    std::string portProblemTold_;
    QString fittedStatus_;  // the status texts the window was last fitted to

    QPushButton* cmdPoll_;
    QPushButton* cmdLog_;
    QPushButton* cmdAlarms_;
    QPushButton* cmdControl_;
    QCheckBox* optPoll_;
    QCheckBox* optLog_;
    QCheckBox* optAlarm_;
    QCheckBox* optControl_;
    QLabel* statusPanel_;
    QLabel* logPanel_;
    TickTrace* tickTrace_ = nullptr;
    static constexpr double kLogCountEverySeconds = 0.25;
    double logShownAt_ = -1;  // seconds of the day the logging field last changed
    QLabel* moduleLabel_;
};

}  // namespace kova::app
