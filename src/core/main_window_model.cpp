#include "core/main_window_model.h"

#include <cstdlib>

#include "core/configuration.h"
#include "core/working_folder.h"
#include "daq/port_messages.h"

namespace kova {

void MirrorSwitches(const RunSwitches& sw, SwitchIndicators& boxes) {
    boxes.OptPoll = sw.PollEnabled;
    boxes.OptLog = sw.LoggingEnabled.isOn();
    if (sw.AlarmsEnabled == 1) boxes.OptAlarm = true;
    if (sw.AlarmsEnabled == 0) boxes.OptAlarm = false;
    if (sw.ControlsEnabled == 1) boxes.OptControl = true;
    if (sw.ControlsEnabled == 0) boxes.OptControl = false;
}

void TogglePoll(Station& st) {
    st.switches.PollEnabled = !st.switches.PollEnabled;
}

void ToggleAlarms(Station& st) {
    st.switches.AlarmsEnabled = st.switches.AlarmsEnabled == 0 ? 1 : 0;
}

void ToggleControls(Station& st) {
    st.switches.ControlsEnabled = st.switches.ControlsEnabled == 0 ? 1 : 0;
}

std::string PortProblemToTell(const Station& st, std::string& told) {
    if (st.profile.TypeCode == kDaqTest) return {};
    const std::string problem = st.platform.port->problem();
    if (problem.empty() || problem == told) return {};
    told = problem;
    return problem + " " + FloatingBusReadingsText(st.profile.TypeCode);
}

std::string MainWindowTitle(const Station& st) {
    std::string title = kAppTitle;
    if (!st.setupFileName.empty()) title += " - " + SetupFileShortName(st);
    // The calibration file and log files without a folder of their own live in the working
    // folder, wherever the setup file came from.
    if (!st.workingFolder.empty()) {
        const char* home = std::getenv("HOME");
        title += " - " + FolderForDisplay(st.workingFolder, home ? home : "");
    }
    return title;
}

std::string SetupFileShortName(const Station& st) {
    if (st.setupFileName.empty()) return kDefaultSetupFile;
    // The name may come from a file written on Windows, with backslashes.
    std::string name = st.setupFileName;
    const auto cut = name.find_last_of("/\\");
    if (cut != std::string::npos) name = name.substr(cut + 1);
    return name;
}

std::string SaveChangesQuestion(const Station& st) {
    return "Save changes to " + SetupFileShortName(st) + "?";
}

bool MayReplaceConfiguration(Station& st, const std::function<bool()>& save) {
    if (!ConfigurationChanged(st)) return true;
    switch (st.platform.prompter->askSaveDiscardCancel(SaveChangesQuestion(st), kAppTitle)) {
        case SaveChoice::Save:
            return save();
        case SaveChoice::Discard:
            return true;
        case SaveChoice::Cancel:
            break;
    }
    return false;
}

}  // namespace kova
