#pragma once
// A station with a scripted platform and a few named tags for the alarm tests.
#include <string>

#include "core/station.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"

namespace kova::test {

struct AlarmRig {
    Station st;
    SimulatedClock clock{LocalDateTime{2026, 11, 15, 14, 5, 9, 250}};
    CountingBeeper beeper;
    RecordingStatus status;
    ScriptedPrompter prompt;

    AlarmRig() {
        st.platform.clock = &clock;
        st.platform.beeper = &beeper;
        st.platform.status = &status;
        st.platform.prompter = &prompt;
        nameTag(1, "TANK", kAnalog);
        nameTag(2, "PUMP", kDigital);
        nameTag(5, "FLOW", kAnalog);
        st.switches.AlarmsEnabled = 1;
    }

    void nameTag(int n, const std::string& name, std::int16_t kind) {
        st.tags[n].TagName = name;
        st.tags[n].Label = name + " label";
        st.tags[n].Kind = kind;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }

    // Alarm n watches tag t between lo and hi with the messages "<tag> high" etc.
    AlarmDef& watch(int n, int t, float hi, float lo) {
        AlarmDef& a = st.alarms.Alarms[n];
        a.TagName = st.tags[t].TagName;
        a.TagNo = static_cast<std::int16_t>(t);
        a.HiVal = hi;
        a.LoVal = lo;
        a.HiMsg = a.TagName + " high";
        a.LoMsg = a.TagName + " low";
        a.NormMsg = a.TagName + " normal";
        return a;
    }

    void set(int t, float v) { st.tags[t].Value = v; }
};

}  // namespace kova::test
