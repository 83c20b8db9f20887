#pragma once
// A station with a tag of every kind and direction for the readings-screen tests, a
// scripted prompter, and screen 1 holding every tag.
#include <string>

#include "core/station.h"
#include "support/test_support.h"
#include "tags/daq_profile.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::test {

enum RigTag : int { kLevel = 1, kValve, kSetpt, kDoor, kPump, kHeater, kLamp, kValve2 };

inline void AddTag(Station& st, int n, const std::string& name, const std::string& label,
                   const std::string& ioName, const std::string& units = "",
                   const std::string& text0 = "", const std::string& text1 = "") {
    Tag& t = st.tags[n];
    t.TagName = name;
    t.Label = label;
    t.Address = 1;
    BindIOName(t, ioName);
    t.Units = units;
    t.EngText1 = text0;
    t.EngText2 = text1;
    if (t.Kind == kAnalog) {
        // 0..4000 counts are 0..100 engineering units: 40 counts a unit.
        t.RawValue1 = 0;
        t.EngValue1 = 0;
        t.RawValue2 = 4000;
        t.EngValue2 = 100;
        ComputeScaling(t);
    } else {
        t.RawValue1 = 0;
        t.RawValue2 = 1;
    }
}

struct ScreenRig {
    Station st;
    ScriptedPrompter prompt;

    explicit ScreenRig(int daqType = kDaqQrt105) {
        st.platform.prompter = &prompt;
        BuildIOList(st.profile, kDaqQrt105);  // the 0..4095 output range
        BuildIOList(st.profile, daqType);
        AddTag(st, kLevel, "LEVEL", "Tank Level", "AI-1", "%");
        AddTag(st, kValve, "VALVE", "Valve Position", "AO-1", "%");
        AddTag(st, kSetpt, "SETPT", "Level Setpoint", "Analog Variable", "%");
        AddTag(st, kDoor, "DOOR", "Door Switch", "DI-1", "", "OPEN", "CLOSED");
        AddTag(st, kPump, "PUMP", "Feed Pump", "DO-1", "", "OFF", "ON");
        AddTag(st, kHeater, "HEATER", "Heater", "DO-3", "", "COLD", "HOT");
        AddTag(st, kLamp, "LAMP", "Alarm Lamp", "Digital Variable", "", "DARK", "LIT");
        AddTag(st, kValve2, "VALVE2", "Second Valve", "AO-2", "%");
        RebuildTagNameIndex(st.tags, st.nameIndex);

        st.screens.Headers[1].Title = "Plant";
        st.screens.Headers[1].JumpTo = 3;
        put(1, 1, kLevel);
        put(1, 2, kValve);
        put(1, 3, kSetpt);
        put(1, 4, kTagTS);
        put(1, 5, kValve2);
        put(1, 11, kDoor);
        put(1, 12, kPump);
        put(1, 13, kHeater);
        put(1, 14, kLamp);
    }

    void put(int screen, int line, int tag) {
        ScreenLine& l = st.screens.Lines(screen, line);
        l.TagName = tag ? st.tags[tag].TagName : "";
        l.TagNumber = static_cast<std::int16_t>(tag);
    }
    std::string lastMessage() const {
        return prompt.messages.empty() ? std::string() : prompt.messages.back().text;
    }
};

}  // namespace kova::test
