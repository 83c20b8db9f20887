#include "app/engine_link.h"

#include "core/scan_cycle.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"

namespace kova::app {

void RunTick(Station& st) {
    Tick(st);
}

LoadOutcome StartUp(Station& st) {
    return StartStation(st);
}

void NewConfiguration(Station& st) {
    ApplyFileNewDefaults(st);
}

LoadOutcome LoadSetup(Station& st, const std::filesystem::path& file) {
    return LoadConfiguration(st, file);
}

void SaveSetup(const Station& st, const std::filesystem::path& file) {
    SaveConfiguration(st, file);
}

void ToggleLog(Station& st) {
    ToggleLogging(st);
}

void CloseLog(Station& st) {
    CloseLogFile(st);
}

}  // namespace kova::app
