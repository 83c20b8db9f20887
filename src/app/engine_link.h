#pragma once
// The one place where the program calls the engine's whole-station operations: the scan
// tick, start-up, the configuration commands and the logging switch.
#include <filesystem>

#include "core/configuration.h"
#include "core/station.h"

namespace kova::app {

void RunTick(Station& st);
LoadOutcome StartUp(Station& st);
void NewConfiguration(Station& st);
LoadOutcome LoadSetup(Station& st, const std::filesystem::path& file);
void SaveSetup(const Station& st, const std::filesystem::path& file);
// The Log Data button: starts logging (or says why not) or stops it.
void ToggleLog(Station& st);
// File Exit: the log file is closed if it is open.
void CloseLog(Station& st);

}  // namespace kova::app
