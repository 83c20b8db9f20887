// KOVA: the desktop program. The splash measures the PC's speed, then the main window
// loads the configuration and runs the scan until File Exit.
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/kova_application.h"
#include "app/main_window.h"
#include "app/program_options.h"
#include "app/splash_window.h"
#include "app/station_port.h"
#include "core/splash_pause.h"
#include "core/station.h"
#include "daq/port_layer.h"
#include "platform/tick_trace.h"

int main(int argc, char** argv) {
    kova::app::KovaApplication app(argc, argv);
    // Qt has taken its own options out of argv by now.
    const kova::app::ProgramOptions options =
        kova::app::ParseProgramOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (!options.error.empty()) {
        std::cerr << "kova: " << options.error << std::endl;
        return 2;
    }
    kova::TickTrace tickTrace;
    if (options.tickTrace) {
        const std::string problem = tickTrace.open(*options.tickTrace);
        if (!problem.empty()) {
            std::cerr << "kova: cannot write the tick trace " << *options.tickTrace << ": "
                      << problem << std::endl;
            return 2;
        }
    }
    kova::Station station;
    station.workingFolder = std::filesystem::current_path();
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
