#include "app/engine_link.h"

// Interim: the scan, the configuration operations and the logging switch are not in the
// engine yet. Until they are, these bodies do the least the window needs; each is replaced
// by the one engine call named beside it.
#include "daq/calibration.h"
#include "platform/prompter.h"

namespace kova::app {

void RunTick(Station& st) {  // -> Tick(st)
    ScanState& s = st.scan;
    const Periods& p = st.periods;
    if (s.LastUnits != p.IOUnits || (p.IOUnits == kUnitMs && s.LastPeriod != p.IOPeriod)) {
        st.platform.timer->setInterval(p.IOUnits == kUnitSeconds ? 1000 : p.IOPeriod);
        s.LastUnits = p.IOUnits;
        s.LastPeriod = p.IOPeriod;
    }
}

LoadOutcome StartUp(Station& st) {  // -> StartStation(st)
    st.setupFileName = (st.workingFolder / kDefaultSetupFile).string();
    st.calibration = LoadCalibration(st.workingFolder).data;
    return {};
}

void NewConfiguration(Station&) {}  // -> ApplyFileNewDefaults(st)

LoadOutcome LoadSetup(Station&, const std::filesystem::path& file) {  // -> LoadConfiguration
    return {false, file.string() + ": setup files cannot be read by this build yet"};
}

void SaveSetup(const Station&, const std::filesystem::path&) {}  // -> SaveConfiguration

void ToggleLog(Station& st) {  // -> ToggleLogging(st)
    if (st.switches.LoggingEnabled.isOn()) {
        st.switches.LoggingEnabled = Variant::integer(0);
    } else if (st.logging.LogFileName.empty()) {
        st.platform.prompter->message("Error No Log File Name Has Been Entered", kAppTitle);
    } else {
        st.switches.LoggingEnabled = Variant::integer(1);
    }
}

void CloseLog(Station&) {}  // -> CloseLogFile(st)

}  // namespace kova::app
