#include "app/main_window.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QStyle>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>
#include <iostream>

#include "alarms/forms/alarm_list_form.h"
#include "alarms/forms/alarm_setup_form.h"
#include "app/engine_link.h"
#include "app/file_commands.h"
#include "app/help_window.h"
#include "app/qt_printer.h"
#include "app/qt_prompter.h"
#include "app/qt_seams.h"
#include "control/forms/control_form.h"
#include "core/forms/form_widgets.h"
#include "core/forms/periods_form.h"
#include "core/forms/scan_gap.h"
#include "daq/calibration_model.h"
#include "daq/forms/calibration_form.h"
#include "daq/forms/printer_port_form.h"
#include "daq/port_messages.h"
#include "displays/forms/history_form.h"
#include "displays/forms/min_max_form.h"
#include "displays/forms/readings_setup_form.h"
#include "displays/forms/readings_view_form.h"
#include "displays/forms/trend_setup_form.h"
#include "displays/forms/trend_view_form.h"
#include "logging/forms/set_logging_form.h"
#include "logging/forms/start_log_form.h"
#include "logging/log_status.h"
#include "logging/log_writer.h"
#include "platform/tick_trace.h"
#include "tags/forms/daq_type_form.h"
#include "tags/forms/tag_editor_form.h"

namespace kova::app {

namespace {

using forms::IndicatorBox;

QPushButton* runButton(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setMinimumWidth(140);
    return b;
}

// The box beside a run button shows its switch; it has no caption of its own, so a screen
// reader names it after the button ("Poll I/O switch", checked or not).
QCheckBox* indicator(const char* name, const char* button, QWidget* parent) {
    auto* c = new IndicatorBox(parent);
    c->setObjectName(name);
    c->setAccessibleName(QString(button) + " switch");
    c->setAttribute(Qt::WA_TransparentForMouseEvents);
    c->setFocusPolicy(Qt::NoFocus);
    return c;
}

// A status field in the window's body: its whole text shows, on as many lines as it
// needs, and a screen reader reads that text (the field's role is its description).
QLabel* statusField(const char* name, const char* role, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setWordWrap(true);
    l->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    l->setMargin(2);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    l->setFocusPolicy(Qt::NoFocus);
    l->setAccessibleDescription(role);
    return l;
}

const char* windowName(WindowKind kind) {
    switch (kind) {
        case WindowKind::Tags:
            return "Tags";
        case WindowKind::Periods:
            return "Periods";
        case WindowKind::Screens:
            return "Screens";
        case WindowKind::TrendSetup:
            return "TrendSetup";
        case WindowKind::LogParameters:
            return "LogParameters";
        case WindowKind::LogStartStop:
            return "LogStartStop";
        case WindowKind::AlarmSetup:
            return "AlarmSetup";
        case WindowKind::ControlLanguage:
            return "ControlLanguage";
        case WindowKind::Calibration:
            return "Calibration";
        case WindowKind::Readings:
            return "Readings";
        case WindowKind::MinMax:
            return "MinMax";
        case WindowKind::Trends:
            return "Trends";
        case WindowKind::AlarmList:
            return "AlarmList";
        case WindowKind::History:
            return "History";
        case WindowKind::PrinterAddress:
            return "PrinterAddress";
        case WindowKind::DaqType:
            return "DaqType";
        case WindowKind::Help:
            return "Help";
    }
    return "";
}

// The help viewer seam on the main window's help window.
class WindowHelpViewer final : public HelpViewer {
  public:
    explicit WindowHelpViewer(MainWindow& w) : w_(w) {}
    void showTopic(const std::string& topic) override {
        w_.showHelp(QString::fromStdString(topic));
    }

  private:
    MainWindow& w_;
};

}  // namespace

MainWindow::MainWindow(Station& st, Prompter* prompter, std::ostream* errors)
    : st_(st),
      errors_(errors ? *errors : std::cerr),
      savedPlatform_(st.platform),
      report_(st.platform, errors_) {
    setObjectName("MainFrm");
    setWindowTitle(QString::fromStdString(MainWindowTitle(st_)));

    // The buttons and their check boxes.
    auto* central = new QWidget(this);
    cmdPoll_ = runButton("CmdPoll", "Poll I/O", central);
    cmdLog_ = runButton("CmdLog", "Log Data", central);
    cmdAlarms_ = runButton("CmdAlarms", "Alarms", central);
    cmdControl_ = runButton("CmdControl", "Control", central);
    optPoll_ = indicator("OptPoll", "Poll I/O", central);
    optLog_ = indicator("OptLog", "Log Data", central);
    optAlarm_ = indicator("OptAlarm", "Alarms", central);
    optControl_ = indicator("OptControl", "Control", central);
    moduleLabel_ = new QLabel(central);
    moduleLabel_->setObjectName("LblModule");

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(8);
    QPushButton* buttons[] = {cmdPoll_, cmdLog_, cmdAlarms_, cmdControl_};
    QCheckBox* boxes[] = {optPoll_, optLog_, optAlarm_, optControl_};
    for (int i = 0; i < 4; ++i) {
        grid->addWidget(buttons[i], i, 0);
        grid->addWidget(boxes[i], i, 1);
    }
    grid->setColumnStretch(2, 1);
    auto* title = new QLabel("KOVA For Parallel Port DAQs", central);
    QFont big = title->font();
    big.setPointSize(big.pointSize() + 4);
    big.setBold(true);
    title->setFont(big);
    // The status line that alarms and errors write to, and logging's own field apart from
    // it: the file being written and the records written, so a user sees at a glance that
    // logging is alive. Both in the body, wrapped, so that their whole text is read.
    statusPanel_ = statusField("StatusBar1", "Status line: alarms and errors", central);
    logPanel_ = statusField("LogStatus", "Logging status", central);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(title);
    layout->addWidget(moduleLabel_);
    layout->addSpacing(8);
    layout->addLayout(grid);
    layout->addStretch();
    layout->addWidget(statusPanel_);
    layout->addWidget(logPanel_);
    setCentralWidget(central);

    connect(cmdPoll_, &QPushButton::clicked, this, &MainWindow::cmdPoll);
    connect(cmdLog_, &QPushButton::clicked, this, &MainWindow::cmdLog);
    connect(cmdAlarms_, &QPushButton::clicked, this, &MainWindow::cmdAlarms);
    connect(cmdControl_, &QPushButton::clicked, this, &MainWindow::cmdControl);

    buildMenus();

    // The seams on Qt.
    if (!prompter) {
        ownPrompter_ = std::make_unique<QtPrompter>(this);
        prompter = ownPrompter_.get();
    }
    status_ = std::make_unique<LabelStatusSink>(statusPanel_);
    timerSeam_ = std::make_unique<QtScanTimer>(&hiTime2_);
    beeper_ = std::make_unique<QtBeeper>();
    printer_ = std::make_unique<QtPrinter>(this);
    // A print dialog opens over the window whose button asked.
    printer_->setDialogOwner([this] { return OwnerWindow(st_.platform.prompter->owner(), this); });
    help_ = std::make_unique<WindowHelpViewer>(*this);
    st_.platform.prompter = prompter;
    st_.platform.status = status_.get();
    st_.platform.timer = timerSeam_.get();
    st_.platform.beeper = beeper_.get();

    // A scan fault's message box opens from the event loop, after its tick has returned,
    // so the scan timer keeps firing while the box is up.
    report_.setPost([this](std::function<void()> show) {
        QTimer::singleShot(0, this, [this, show] {
            PromptOwner owner(*st_.platform.prompter, this);
            show();
        });
    });

    hiTime2_.setObjectName("HiTime2");
    hiTime2_.setTimerType(Qt::PreciseTimer);
    hiTime2_.setInterval(100);  // the first tick sets the I/O period's interval
    connect(&hiTime2_, &QTimer::timeout, this, &MainWindow::tick);
    // The windows' refreshes keep clear of this timer's ticks.
    forms::ScanGap::instance().setScanTimer(&hiTime2_);

    resize(440, 300);
    mirror();
}

MainWindow::~MainWindow() {
    hiTime2_.stop();
    if (forms::ScanGap::instance().scanTimer() == &hiTime2_)
        forms::ScanGap::instance().setScanTimer(nullptr);
    windows_.closeAll();
    st_.platform = savedPlatform_;
}

QAction* MainWindow::addItem(QMenu* menu, const char* name, const char* caption) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    return a;
}

QAction* MainWindow::addWindowItem(QMenu* menu, const char* name, const char* caption,
                                   WindowKind kind) {
    QAction* a = addItem(menu, name, caption);
    connect(a, &QAction::triggered, this, [this, kind] { openWindow(kind); });
    return a;
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("MenuFile");
    connect(addItem(file, "FileNew", "&New"), &QAction::triggered, this, &MainWindow::fileNew);
    connect(addItem(file, "FileLoad", "&Load"), &QAction::triggered, this, &MainWindow::fileLoad);
    connect(addItem(file, "FileSave", "&Save"), &QAction::triggered, this, &MainWindow::fileSave);
    connect(addItem(file, "FileSaveAs", "Save&As"), &QAction::triggered, this,
            &MainWindow::fileSaveAs);
    connect(addItem(file, "FileExit", "E&xit"), &QAction::triggered, this, &QWidget::close);

    QMenu* setup = menuBar()->addMenu("&SetUp");
    setup->setObjectName("MenuSetUp");
    addWindowItem(setup, "SetUpTags", "&Tags", WindowKind::Tags);
    addWindowItem(setup, "SetPeriods", "&Periods", WindowKind::Periods);
    addWindowItem(setup, "SetUpScreens", "&Screens", WindowKind::Screens);
    addWindowItem(setup, "SetUpTrends", "T&rends", WindowKind::TrendSetup);
    QMenu* logging = setup->addMenu("&Logging");
    logging->setObjectName("Logging");
    addWindowItem(logging, "Parameters", "&Parameters", WindowKind::LogParameters);
    addWindowItem(logging, "StartStop", "&StartStop", WindowKind::LogStartStop);
    addWindowItem(setup, "Alarms", "&Alarms", WindowKind::AlarmSetup);
    addWindowItem(setup, "Control", "&Control Language", WindowKind::ControlLanguage);
    addWindowItem(setup, "Calibration", "C&alibration", WindowKind::Calibration);

    QMenu* view = menuBar()->addMenu("&View");
    view->setObjectName("MenuView");
    addWindowItem(view, "ViewReadings", "&Readings", WindowKind::Readings);
    addWindowItem(view, "MinMax", "&Min Max Readings", WindowKind::MinMax);
    addWindowItem(view, "ViewTrends", "&Trends", WindowKind::Trends);
    addWindowItem(view, "AlarmView", "&Alarms", WindowKind::AlarmList);
    addWindowItem(view, "History", "&History", WindowKind::History);

    QMenu* port = menuBar()->addMenu("&PrinterPort");
    port->setObjectName("MenuPrinterPort");
    addWindowItem(port, "PrinterAddress", "&Address", WindowKind::PrinterAddress);
    addWindowItem(port, "SetupDAQ", "&DAQ Type", WindowKind::DaqType);

    // "&Help" is a command of the menu bar itself.
    QAction* help = menuBar()->addAction("&Help");
    help->setObjectName("Help");
    connect(help, &QAction::triggered, this, [this] { help_->showTopic(kHelpIntroduction); });
}

void MainWindow::startUp() {
    CenterOnScreen(this);
    guard_([&] {
        const LoadOutcome outcome = StartUp(st_);
        // A missing or unreadable "Default.Suf" is not an error: the defaults are in use.
        // A bad one is noted on the error stream for whoever looks.
        if (!outcome.ok && std::filesystem::exists(st_.setupFileName))
            errors_ << "kova: " << outcome.error << std::endl;
        // An unreadable calibration file is named; its defaults are in use.
        if (!outcome.calibrationError.empty())
            st_.platform.prompter->message(outcome.calibrationError, kAppTitle);
    });
    refreshTitle();
    mirror();
}

void MainWindow::startScan() {
    hiTime2_.start();
}

void MainWindow::tick() {
    if (tickTrace_) tickTrace_->tickStarted();
    tickBody();
    if (tickTrace_) tickTrace_->tickEnded();
    forms::ScanGap::instance().tickDone();
}

void MainWindow::tickBody() {
    report_.guardTick([&] { RunTick(st_); });
    mirror();
    const std::string problem = PortProblemToTell(st_, portProblemTold_);
    if (!problem.empty()) {
        statusPanel_->setText(QString::fromStdString(problem));
        PromptOwner owner(*st_.platform.prompter, this);
        st_.platform.prompter->message(problem, kAppTitle);
    }
    // A module that stopped answering is told once in the status line; the scan goes on.
    const std::string silence = ModuleSilenceToTell(st_);
    if (!silence.empty()) statusPanel_->setText(QString::fromStdString(silence));
    // A log file renamed or deleted under the logger was started again: said once.
    const std::string restarted = LogRestartToTell(st_);
    if (!restarted.empty()) {
        statusPanel_->setText(QString::fromStdString(restarted));
        statusPanel_->setToolTip(QString::fromStdString(restarted));  // read in full
        errors_ << "kova: " << restarted << std::endl;
    }
    fitStatusFields();
}

void MainWindow::mirror() {
    MirrorSwitches(st_.switches, boxes_);
    optPoll_->setChecked(boxes_.OptPoll);
    optLog_->setChecked(boxes_.OptLog);
    optAlarm_->setChecked(boxes_.OptAlarm);
    optControl_->setChecked(boxes_.OptControl);
    const QString module = "DAQ Type: " + QString::fromStdString(st_.profile.TypeString);
    if (moduleLabel_->text() != module) moduleLabel_->setText(module);
    showLoggingStatus();
}

void MainWindow::showLoggingStatus() {
    const QString logging = QString::fromStdString(LoggingStatusText(st_));
    const QString shown = logPanel_->text();
    if (shown == logging) return;
    // A count of records moving on every 50 ms scan is shown four times a second: each new
    // text lays the window's status fields out and paints them again, on the scan's thread.
    // Anything else that changes (logging on or off, another file, a stop) is shown at once.
    const double now = st_.platform.clock->now().secondsOfDay();
    static const QRegularExpression digits("[0-9]+");
    const auto words = [](QString t) { return t.remove(digits); };
    const bool onlyTheCount = words(shown) == words(logging);
    if (onlyTheCount && now >= logShownAt_ && now - logShownAt_ < kLogCountEverySeconds) return;
    logShownAt_ = now;
    logPanel_->setText(logging);
    logPanel_->setToolTip(QString::fromStdString(LoggingStatusText(st_, true)));
    fitStatusFields();
}

// A status text longer than the window has room for (a printer port that cannot be
// reached says why at length) makes the window taller, up to the screen's height, so that
// every word stays readable; the window never shrinks by itself.
void MainWindow::fitStatusFields() {
    const QString shown = statusPanel_->text() + '\n' + logPanel_->text();
    if (shown == fittedStatus_) return;
    fittedStatus_ = shown;
    QWidget* body = centralWidget();
    if (!body || !body->layout() || !isVisible()) return;
    const int needed = body->layout()->totalHeightForWidth(body->width());
    if (needed <= body->height()) return;
    int height = this->height() + needed - body->height();
    if (const QScreen* s = screen()) height = std::min(height, s->availableGeometry().height());
    if (height > this->height()) resize(width(), height);
}

void MainWindow::refreshTitle() {
    setWindowTitle(QString::fromStdString(MainWindowTitle(st_)));
}

QString MainWindow::statusText() const {
    return statusPanel_->text();
}

void MainWindow::cmdPoll() {
    guard_([&] { TogglePoll(st_); });
    mirror();
}

void MainWindow::cmdLog() {
    guard_([&] { ToggleLog(st_); });
    mirror();
}

void MainWindow::cmdAlarms() {
    guard_([&] { ToggleAlarms(st_); });
    mirror();
}

void MainWindow::cmdControl() {
    guard_([&] { ToggleControls(st_); });
    mirror();
}

// "Save changes to NAME?" before the configuration is replaced or dropped; Save goes the
// ordinary File Save way, and a save that is cancelled or fails stops the command.
bool MainWindow::mayReplaceConfiguration() {
    bool goOn = false;
    guard_([&] {
        goOn = MayReplaceConfiguration(st_, [&] {
            bool saved = false;
            guard_([&] { saved = FileSave(st_); });
            refreshTitle();
            return saved;
        });
    });
    return goOn;
}

void MainWindow::fileNew() {
    if (!mayReplaceConfiguration()) return;
    guard_([&] { FileNew(st_); });
    refreshTitle();
    mirror();
}

void MainWindow::fileLoad() {
    if (!mayReplaceConfiguration()) return;
    guard_([&] { FileLoad(st_); });
    refreshTitle();
    mirror();
}

void MainWindow::fileSave() {
    guard_([&] { FileSave(st_); });
    refreshTitle();
}

void MainWindow::fileSaveAs() {
    guard_([&] { FileSaveAs(st_); });
    refreshTitle();
}

void MainWindow::openWindow(WindowKind kind) {
    if (kind == WindowKind::Help) {
        help_->showTopic(kHelpIntroduction);
        return;
    }
    guard_([&] {
        if (kind == WindowKind::Calibration && !MayOpenCalibration(st_)) return;
        windows_.open(windowName(kind), [&] { return createWindow(kind); });
    });
}

void MainWindow::showHelp(const QString& topic) {
    guard_([&] {
        QWidget* w = windows_.open(windowName(WindowKind::Help),
                                   [&] { return createWindow(WindowKind::Help); });
        if (auto* help = qobject_cast<HelpWindow*>(w)) help->showTopic(topic);
    });
}

// The one place where each menu item's window is made.
QWidget* MainWindow::createWindow(WindowKind kind) {
    switch (kind) {
        case WindowKind::Periods:
            return new PeriodsWindow(st_, report_, this);
        case WindowKind::DaqType: {
            auto* w = new DaqTypeWindow(st_, report_, this);
            connect(w, &DaqTypeWindow::daqTypeApplied, this, &MainWindow::mirror);
            return w;
        }
        case WindowKind::Help:
            return new HelpWindow(this);
        case WindowKind::Tags:
            return new TagEditorWindow(st_, report_, *printer_, this);
        case WindowKind::Screens:
            return new ReadingsSetupWindow(st_, report_, this);
        case WindowKind::TrendSetup:
            return new SetTrendWindow(st_, report_, this);
        case WindowKind::LogParameters:
            return new SetLoggingWindow(st_, report_, this);
        case WindowKind::LogStartStop: {
            auto* w = new StartLogWindow(st_, report_, this);
            connect(w, &StartLogWindow::loggingSwitched, this, &MainWindow::mirror);
            return w;
        }
        case WindowKind::AlarmSetup: {
            auto* w = new AlarmSetupWindow(st_, report_, this);
            connect(w, &AlarmSetupWindow::alarmsStored, this, &MainWindow::mirror);
            return w;
        }
        case WindowKind::ControlLanguage: {
            auto* w = new ControlWindow(st_, report_, this);
            connect(w, &ControlWindow::controlsStored, this, &MainWindow::mirror);
            return w;
        }
        case WindowKind::Calibration:
            return new CalibrationWindow(st_, report_, this);
        case WindowKind::Readings:
            return new ReadingsViewWindow(st_, report_, this);
        case WindowKind::MinMax:
            return new MinMaxWindow(st_, report_, this);
        case WindowKind::Trends:
            return new ViewTrendWindow(st_, report_, this);
        case WindowKind::AlarmList:
            return new AlarmListWindow(st_, report_, *printer_, this);
        case WindowKind::History:
            return new HistoryWindow(
                st_, report_,
                [this](QWidget* w) { return printer_->printWidget(w, kHistoryCaption); }, this);
        case WindowKind::PrinterAddress:
            return new PrinterPortWindow(st_, report_, this);
    }
    return nullptr;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // File Exit and the window's close box both end the program, after "Save changes to
    // NAME?" when there is something to save; Cancel keeps it running as it was.
    if (!mayReplaceConfiguration()) {
        event->ignore();
        return;
    }
    // The log file is closed.
    guard_([&] { CloseLog(st_); });
    hiTime2_.stop();
    windows_.closeAll();
    event->accept();
}

}  // namespace kova::app
