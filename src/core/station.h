#pragma once
// The station: every table of the system in one object, owned by the main window (or the
// command line) for the life of the program and handed by reference to the scan and the
// models. No globals.
#include <filesystem>
#include <string>

#include "alarms/alarm_table.h"
#include "control/control_table.h"
#include "core/change_notice.h"
#include "core/periods.h"
#include "core/run_switches.h"
#include "core/scan_state.h"
#include "daq/calibration.h"
#include "daq/daq_state.h"
#include "displays/min_max.h"
#include "displays/screen_table.h"
#include "displays/trend_table.h"
#include "logging/log_settings.h"
#include "platform/beeper.h"
#include "platform/clock.h"
#include "platform/port_io.h"
#include "platform/prompter.h"
#include "platform/scan_timer.h"
#include "platform/status_sink.h"
#include "platform/steady_clock.h"
#include "tags/daq_profile.h"
#include "tags/tag.h"
#include "tags/tag_name_index.h"

namespace kova {

// The seams the engine talks through. Never null: the station starts with do-nothing
// implementations (and the system clock) until the program or a test plugs in its own.
struct Platform {
    PortIo* port;
    Clock* clock;
    Prompter* prompter;
    Beeper* beeper;
    StatusSink* status;
    ScanTimer* timer;
    SteadyClock* steady;  // bounds the drivers' waits for a module's answer
    Platform();
};

struct Station {
    TagTable tags;
    TagNameIndex nameIndex;
    DaqProfile profile;  // profile.TypeCode is the selected DAQ type
    DaqState daq;
    CalibrationData calibration;
    ControlState control;
    AlarmState alarms;
    ScreenTable screens;
    TrendState trends;
    MinMaxState minMax;
    Periods periods;
    RunSwitches switches;
    LogSettings logging;
    LogRunState logRun;
    ScanState scan;
    std::int16_t tagPlaceHolders = 0;  // numbers the AVAR place-holders deleting a tag leaves

    std::string setupFileName;            // the setup file in use
    std::filesystem::path workingFolder;  // where "Default.Suf" and "KOVA_P.CAL" live
    // The configuration as it was last loaded or saved (its fingerprint, without the values
    // that move while the station runs): a user is asked before work that differs is lost.
    // Empty until the first load or save, standing for a new station's configuration.
    std::string savedConfiguration;
    Platform platform;
    ChangeNotice changes;  // the tag table, the DAQ type or the configuration changed

    Station();
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    // The tag table with the system-variable tags written, as at program start.
    Tag& tag(int number) { return tags[number]; }
    const Tag& tag(int number) const { return tags[number]; }
};

}  // namespace kova
