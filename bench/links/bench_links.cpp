// What the station's links cost the scan's thread: building the snapshot after a tick and
// publishing it, with every tag, screen line, alarm and trend pen in use. The figure that
// matters is the time per tick (the scan's budget is the shortest I/O period, 50 ms) and
// the allocations, which stay a handful however many links read the snapshot.
#include <benchmark/benchmark.h>

#include "core/station.h"
#include "links/command_inbox.h"
#include "links/snapshot_hub.h"
#include "links/station_snapshot.h"
#include "support/allocation_counter.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

// A full station: 32 tags with names and labels, ten screens of twenty lines, twenty
// alarms with a full history, and all forty trend pens.
void fillStation(kova::Station& st) {
    for (int i = 1; i <= kova::kUserTags; ++i) {
        kova::Tag& t = st.tags[i];
        t.TagName = "TAG" + std::to_string(i);
        t.Label = "Label of tag number " + std::to_string(i);
        t.Units = "units";
        t.EngText1 = "OFF";
        t.EngText2 = "ON";
        kova::BindIOName(t, i % 2 ? "Analog Variable" : "Digital Variable");
    }
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);
    for (int s = 1; s <= 10; ++s) {
        st.screens.Headers[s].Title = "Screen title " + std::to_string(s);
        for (int line = 1; line <= 20; ++line)
            st.screens.Lines(s, line).TagNumber = static_cast<std::int16_t>(line);
    }
    for (int a = 1; a <= kova::kAlarmCount; ++a) {
        st.alarms.Alarms[a].TagNo = static_cast<std::int16_t>(a);
        st.alarms.Alarms[a].LastText = "ALARM 11-15-2026 14:05:09 Alarm text " + std::to_string(a);
    }
    for (int h = 0; h <= 50; ++h)
        st.alarms.History[h] = "NORML 11-15-2026 14:05:09 History line " + std::to_string(h);
    st.alarms.HistoryCount = 51;
    for (int t = 1; t <= 10; ++t)
        for (int p = 1; p <= 4; ++p)
            st.trends.TrendTable(t, p) = static_cast<std::int16_t>((t - 1) * 4 + p);
}

// A tick whose values changed but nothing else: the common case.
void BM_SnapshotAfterATickOfNewValues(benchmark::State& state) {
    kova::Station st;
    fillStation(st);
    kova::links::SnapshotBuilder builder;
    kova::links::SnapshotHub hub;
    hub.publish(builder.build(st, 0));
    float v = 0;
    const long long before = kova::bench::AllocationCount();
    for (auto _ : state) {
        v += 0.5f;
        for (int i = 1; i <= kova::kUserTags; ++i) st.tags[i].Value = v * i;
        hub.publish(builder.build(st, 0));
    }
    state.counters["allocs/tick"] =
        benchmark::Counter(static_cast<double>(kova::bench::AllocationCount() - before) /
                           static_cast<double>(state.iterations()));
}
BENCHMARK(BM_SnapshotAfterATickOfNewValues);

// A tick that also took a trend sample and raised an alarm: the ring and the alarm view
// are copied anew.
void BM_SnapshotAfterATickWithTrendSampleAndAlarm(benchmark::State& state) {
    kova::Station st;
    fillStation(st);
    kova::links::SnapshotBuilder builder;
    kova::links::SnapshotHub hub;
    std::int16_t row = 1;
    for (auto _ : state) {
        row = static_cast<std::int16_t>(row % kova::kTrendRows + 1);
        st.trends.NewestSample = row;
        for (int c = 1; c <= 40; ++c) st.trends.TrendSamples(row, c) = static_cast<float>(row + c);
        st.alarms.Alarms[1].State = static_cast<std::int16_t>(row % 2 + 1);
        hub.publish(builder.build(st, 0));
    }
}
BENCHMARK(BM_SnapshotAfterATickWithTrendSampleAndAlarm);

// Draining an inbox that holds nothing: what every tick pays when no one writes.
void BM_EmptyInboxDrain(benchmark::State& state) {
    kova::Station st;
    kova::links::CommandInbox inbox;
    for (auto _ : state) benchmark::DoNotOptimize(inbox.drain(st, {}));
}
BENCHMARK(BM_EmptyInboxDrain);

}  // namespace
