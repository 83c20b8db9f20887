// KOVA: the desktop program. It settles its working folder, the splash measures the PC's
// speed, then the main window loads the configuration and runs the scan until File Exit.
#include <QStandardPaths>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/kova_application.h"
#include "app/main_window.h"
#include "app/program_data.h"
#include "app/splash_window.h"
#include "app/station_port.h"
#include "app/working_folder_entry.h"
#include "core/splash_pause.h"
#include "core/station.h"
#include "daq/port_layer.h"
#include "platform/tick_trace.h"

namespace {

std::vector<std::string> arguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

}  // namespace

int main(int argc, char** argv) {
    using Action = kova::app::CommandLine::Action;
    // Help and version need no display: answered before the application object exists.
    switch (kova::app::HelpOrVersionAsked(arguments(argc, argv))) {
        case Action::Help:
            std::printf("%s", kova::app::CommandLineHelp().c_str());
            return 0;
        case Action::Version:
            std::printf("%s\n", kova::app::VersionLine().c_str());
            return 0;
        default:
            break;
    }
    kova::app::KovaApplication app(argc, argv);
    const kova::app::CommandLine line = kova::app::ReadCommandLine(arguments(argc, argv));
    if (line.action == Action::Error) {
        std::fprintf(stderr, "kova: %s (kova --help)\n", line.error.c_str());
        return 2;
    }
    // Opened before the working folder is entered: a relative name is where KOVA was started.
    kova::TickTrace tickTrace;
    if (line.tickTrace) {
        const std::string why = tickTrace.open(*line.tickTrace);
        if (!why.empty()) {
            std::fprintf(stderr, "kova: cannot write the tick trace %s: %s\n",
                         line.tickTrace->c_str(), why.c_str());
            return 2;
        }
    }
    std::string problem;
    const auto folder = kova::app::EnterWorkingFolder(
        line, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString(),
        kova::app::DemoSetupPath(), problem, std::cerr);
    if (!folder) {
        std::fprintf(stderr, "kova: %s\n", problem.c_str());
        return 2;
    }
    kova::Station station;
    station.workingFolder = *folder;
    // The printer port of the LPT number in use, opened when the drivers first need it.
    kova::app::StationPort port([&] { return static_cast<int>(station.daq.PrinterPortNumber); });
    station.platform.port = &port;

    std::unique_ptr<kova::app::MainWindow> mainWindow;
    kova::app::SplashWindow splash(
        [&] { return kova::MeasurePcSpeed(*station.platform.clock); },
        [](std::int32_t delay) { kova::SplashPause(delay, kova::DelayLoop); });
    QObject::connect(&splash, &kova::app::SplashWindow::finished, [&](kova::PcSpeedResult speed) {
        station.daq.Port.DelayCount = speed.Delay;
        mainWindow = std::make_unique<kova::app::MainWindow>(station);
        if (tickTrace.isOpen()) mainWindow->setTickTrace(&tickTrace);
        app.setErrorReport(&mainWindow->errorReport());
        mainWindow->startUp();
        mainWindow->show();
        splash.close();
        mainWindow->startScan();
        // A measurement that failed is reported once the main window is up.
        if (!splash.fault().empty())
            mainWindow->errorReport().report(std::runtime_error(splash.fault()));
    });
    splash.start();
    const int rc = app.exec();
    app.setErrorReport(nullptr);
    mainWindow.reset();
    return rc;
}
