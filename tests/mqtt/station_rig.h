#pragma once
// A TEST-module station and a link to a private broker, shared by the MQTT tests.
#include <gtest/gtest.h>

#include <memory>

#include "core/configuration.h"
#include "links/mqtt/mqtt_link.h"
#include "mqtt/test_broker.h"
#include "tags/daq_profile.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::mqtt {

// A TEST-module station with an analog input, an analog output, a variable and two
// digital outputs.
struct StationRig {
    Station st;
    StationRig() {
        ApplyStartupDefaults(st);
        auto tag = [&](int n, const char* name, const char* io, int kind, int dir) {
            Tag& t = st.tags[n];
            t.TagName = name;
            t.Label = name;
            BindIOName(t, io);
            t.Address = 1;
            t.Kind = static_cast<std::int16_t>(kind);
            t.Direction = static_cast<std::int16_t>(dir);
            t.RawValue1 = 0;
            t.EngValue1 = 0;
            t.RawValue2 = 4095;
            t.EngValue2 = 4095;
            ComputeScaling(t);
        };
        tag(1, "TEMP", "AI-1", 0, 0);
        tag(2, "VALVE", "AO-1", 0, 1);
        tag(3, "SETP", "AVAR1", 0, 2);
        tag(4, "PUMP", "DO-3", 1, 1);
        tag(5, "LAMP", "DO-1", 1, 1);
        DeriveAfterLoad(st);
        // The analog outputs of a module with a 12-bit converter.
        st.profile.RawMin = 0;
        st.profile.RawMax = 4095;
    }
};

inline MqttOptions Options(int port, bool writes = false) {
    MqttOptions o;
    o.host = "127.0.0.1";
    o.port = port;
    o.prefix = "kova/test";
    o.clientId = "kova-test-station";
    o.writes = writes;
    return o;
}

inline std::unique_ptr<MqttLink> Connected(const MqttOptions& o) {
    std::string error;
    auto link = MqttLink::Start(o, error);
    EXPECT_TRUE(link) << error;
    if (link) {
        EXPECT_TRUE(test::WaitUntil([&] { return link->connected(); }));
    }
    return link;
}

}  // namespace kova::mqtt
