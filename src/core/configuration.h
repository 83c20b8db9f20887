#pragma once
// Whole-configuration operations: defaults, start-up, File New / Load / Save.
#include <filesystem>
#include <string>

#include "core/station.h"

namespace kova {

inline constexpr const char* kDefaultSetupFile = "Default.Suf";

// File New: clears tags 1..32, screens, alarms and control lines, resets the periods to
// one second each, trends to the I/O period and the trend sample ring. The trend table
// stays as it is. (The message "Configuration Set to Default" is the caller's.) The open
// windows are told (TableChange::Configuration).
void ApplyFileNewDefaults(Station& st);
// Start-up without a loadable setup file: File New's defaults plus logging, daily files,
// alarms and control off, LPT 1 with base 0, the TEST module, and no trend pens.
void ApplyStartupDefaults(Station& st);
// After a setup file was read: slopes and offsets, the I/O list of the saved type, the
// name index, the module summary and the control count are derived again.
void DeriveAfterLoad(Station& st);

struct LoadOutcome {
    bool ok = false;
    std::string error;             // names the file and what was wrong
    std::string calibrationError;  // start-up: an unreadable "KOVA_P.CAL" (defaults used)
};
// The main window's start-up: calibration file, "Default.Suf" (defaults when it cannot be
// loaded), system tags, trend ring reset, port selection and one write of the analog outputs.
LoadOutcome StartStation(Station& st);
// The same start-up with another setup file (the command line's run).
LoadOutcome StartStation(Station& st, const std::filesystem::path& setupFile);
// Loads a setup file into the station; on failure the defaults are applied and the
// error names the file. Either way what is now in the station counts as loaded (nothing
// to save), and the open windows are told (TableChange::Configuration).
LoadOutcome LoadConfiguration(Station& st, const std::filesystem::path& file);
// Saves the station's configuration atomically; faults (File) on failure.
void SaveConfiguration(const Station& st, const std::filesystem::path& file);

// The configuration in the station now counts as the one last loaded or saved.
void RememberConfigurationAsSaved(Station& st);
// True when File Save would now write something else than what was last loaded or saved,
// leaving aside the values that move by themselves while the station runs (tag values,
// alarm states and lines, control results, the readings screens' editing flags) and the
// control lines' codes, which are compiled from their texts.
bool ConfigurationChanged(const Station& st);

}  // namespace kova
