#include "core/configuration.h"

#include <memory>

#include "alarms/alarm_check.h"
#include "control/run_controls.h"
#include "core/fault.h"
#include "core/setup_file.h"
#include "daq/driver_dispatch.h"
#include "tags/tag_table.h"

namespace kova {

namespace {
void clearScreens(ScreenTable& screens) {
    screens.Headers.fill(ScreenHeader{});
    screens.Lines.fill(ScreenLine{});
    screens.JumpShownEmpty = 0;
}

void rebuildDerived(Station& st) {
    RebuildTagNameIndex(st.tags, st.nameIndex);
    RebuildModuleSummary(st);
}

void fileNewDefaults(Station& st) {
    ClearUserTags(st.tags);
    clearScreens(st.screens);
    ClearAlarms(st);
    ClearControls(st);
    // The trend table is not a table File New clears: it lives for the whole run, and its
    // pens simply plot the cleared tags until the user sets them up again.
    st.periods = Periods{};
    ResetTrendSamples(st.trends);
    rebuildDerived(st);
}

void startupDefaults(Station& st) {
    fileNewDefaults(st);
    // Everything else a setup file holds goes back to its start-up value too, so nothing of
    // a file that failed half-way through remains.
    for (int i = 1; i <= kAlarmCount; ++i) st.alarms.Alarms[i] = AlarmDef{};
    st.trends.TrendTable.fill(0);
    st.logging = LogSettings{};
    st.switches.LoggingEnabled = Variant::integer(0);
    st.switches.AlarmsEnabled = 0;
    st.switches.ControlsEnabled = 0;
    st.daq.PrinterPortNumber = 1;
    st.daq.PrinterPortBase = 0;
    BuildIOList(st.profile, kDaqTest);
    rebuildDerived(st);
}
}  // namespace

void ApplyFileNewDefaults(Station& st) {
    fileNewDefaults(st);
    st.changes.raise(TableChange::Configuration);
}

void ApplyStartupDefaults(Station& st) {
    startupDefaults(st);
    st.changes.raise(TableChange::Configuration);
}

void DeriveAfterLoad(Station& st) {
    for (int i = 1; i <= kUserTags; ++i) ComputeScaling(st.tags[i]);
    BuildIOList(st.profile, st.profile.TypeCode);
    st.control.ControlCount = ComputeControlCount(st.control);
    rebuildDerived(st);
}

LoadOutcome LoadConfiguration(Station& st, const std::filesystem::path& file) {
    st.setupFileName = file.string();
    LoadOutcome out = LoadSetupFile(st, file);
    if (out.ok) {
        try {
            DeriveAfterLoad(st);
        } catch (const Fault& f) {
            // Values that cannot be derived (a scaling that overflows) make the file unusable.
            out.ok = false;
            out.error = file.string() + ": " + f.what();
        }
    }
    if (!out.ok) startupDefaults(st);
    st.screens.JumpShownEmpty = 0;
    ResetTrendSamples(st.trends);
    RememberConfigurationAsSaved(st);
    st.changes.raise(TableChange::Configuration);
    return out;
}

void SaveConfiguration(const Station& st, const std::filesystem::path& file) {
    SaveSetupFile(st, file);
}

void RememberConfigurationAsSaved(Station& st) {
    st.savedConfiguration = ConfigurationFingerprint(st);
}

bool ConfigurationChanged(const Station& st) {
    if (!st.savedConfiguration.empty())
        return ConfigurationFingerprint(st) != st.savedConfiguration;
    // Never remembered: the station is measured against a new one. Every new station is the
    // same, so that one's fingerprint is made once, not by every station made.
    static const std::string fresh = [] {
        const auto blank = std::make_unique<Station>();
        return ConfigurationFingerprint(*blank);
    }();
    return ConfigurationFingerprint(st) != fresh;
}

LoadOutcome StartStation(Station& st) {
    return StartStation(st, st.workingFolder / kDefaultSetupFile);
}

LoadOutcome StartStation(Station& st, const std::filesystem::path& setupFile) {
    const CalibrationLoad cal = LoadCalibration(st.workingFolder);
    st.calibration = cal.data;
    LoadOutcome out = LoadConfiguration(st, setupFile);
    out.calibrationError = cal.error;
    InitSystemTags(st.tags);
    ResetTrendSamples(st.trends);
    SelectPort(st, st.daq.PrinterPortNumber, static_cast<std::uint16_t>(st.daq.PrinterPortBase));
    WriteAnalogOutputs(st);
    return out;
}

}  // namespace kova
