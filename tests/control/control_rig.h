#pragma once
// A station with a small set of tags for the control language tests.
#include <string>

#include "core/station.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::test {

// Tag numbers of the rig.
enum RigTag : int {
    kA = 1,     // analog variable A
    kB = 2,     // analog variable B
    kX = 3,     // analog variable X
    kTank = 4,  // analog input TANK1 (AI-3)
    kAo1 = 5,   // analog output AO1 on AO-1: 0..100 over 0..4095
    kDo1 = 6,   // digital output DO1 on DO-1
    kPump = 7,  // digital output PUMP on DO-3
    kDi1 = 8,   // digital input DI1 on DI-2
    kFlag = 9,  // digital variable FLAG
    kAo2 = 10,  // analog output AO2 on AO-2: slope 1, offset 0
};

struct Rig {
    Station st;
    ScriptedPrompter prompt;

    Rig() {
        st.platform.prompter = &prompt;
        BuildIOList(st.profile, kDaqQrt110);  // analog outputs 0..4095
        analog(kA, "A", "Analog Variable");
        analog(kB, "B", "Analog Variable");
        analog(kX, "X", "Analog Variable");
        analog(kTank, "TANK1", "AI-3");
        analog(kAo1, "AO1", "AO-1", 0, 0, 4095, 100);
        digital(kDo1, "DO1", "DO-1");
        digital(kPump, "PUMP", "DO-3");
        digital(kDi1, "DI1", "DI-2");
        digital(kFlag, "FLAG", "Digital Variable");
        analog(kAo2, "AO2", "AO-2");
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }

    Tag& analog(int n, const std::string& name, const std::string& io, std::int16_t raw1 = 0,
                float eng1 = 0, std::int16_t raw2 = 4000, float eng2 = 4000) {
        Tag& t = st.tags[n];
        t.TagName = name;
        BindIOName(t, io);
        t.Address = 1;
        t.RawValue1 = raw1;
        t.EngValue1 = eng1;
        t.RawValue2 = raw2;
        t.EngValue2 = eng2;
        ComputeScaling(t);
        return t;
    }

    Tag& digital(int n, const std::string& name, const std::string& io) {
        Tag& t = st.tags[n];
        t.TagName = name;
        BindIOName(t, io);
        t.Address = 1;
        t.RawValue1 = 0;
        t.RawValue2 = 1;
        return t;
    }

    float value(int n) const { return st.tags[n].Value; }
    void set(int n, float v) { st.tags[n].Value = v; }
};

}  // namespace kova::test
