#include "links/station_snapshot.h"

#include "core/station.h"
#include "displays/trend_view.h"
#include "logging/log_conditions.h"

namespace kova::links {

namespace {

// Each part's fields are walked once beside the station fields they come from, so that
// one list serves both the comparison with the previous snapshot and the copy.
struct CompareFields {
    template <typename T, typename U>
    void field(const T& kept, const U& now) {
        if (same && !(kept == now)) same = false;
    }
    bool same = true;
};

struct CopyFields {
    template <typename T, typename U>
    void field(T& into, const U& from) {
        into = from;
    }
};

template <typename Layout, typename Walk>
void walkLayout(const Station& st, Layout& l, Walk& w) {
    for (int n = 1; n <= kTableTags; ++n) {
        const Tag& t = st.tags[n];
        auto& i = l.tags[n];
        w.field(i.TagName, t.TagName);
        w.field(i.Label, t.Label);
        w.field(i.Units, t.Units);
        w.field(i.IOName, t.IOName);
        w.field(i.EngText1, t.EngText1);
        w.field(i.EngText2, t.EngText2);
        w.field(i.Kind, t.Kind);
        w.field(i.Direction, t.Direction);
    }
    for (int s = 1; s <= 10; ++s) {
        auto& i = l.screens[s];
        w.field(i.Title, st.screens.Headers[s].Title);
        w.field(i.JumpTo, st.screens.Headers[s].JumpTo);
        for (int line = 1; line <= 20; ++line)
            w.field(i.TagNumbers[static_cast<std::size_t>(line - 1)],
                    st.screens.Lines(s, line).TagNumber);
    }
    w.field(l.trendTable, st.trends.TrendTable);
    const TrendPeriod period = TrendSamplePeriod(st);
    w.field(l.trendPeriodText, period.text);
    w.field(l.trendPeriodSeconds, period.seconds);
    w.field(l.setupFileName, st.setupFileName);
    w.field(l.logFileName, st.logging.LogFileName);
    w.field(l.logDirectory, st.logging.LogDirectory);
}

template <typename Alarms, typename Walk>
void walkAlarms(const Station& st, Alarms& a, Walk& w) {
    for (int n = 1; n <= kAlarmCount; ++n) {
        w.field(a.lastText[n], st.alarms.Alarms[n].LastText);
        w.field(a.state[n], st.alarms.Alarms[n].State);
    }
    w.field(a.history, st.alarms.History);
    w.field(a.historyCount, st.alarms.HistoryCount);
}

template <typename Ring, typename Walk>
void walkTrend(const Station& st, Ring& r, Walk& w) {
    w.field(r.newestSample, st.trends.NewestSample);
    w.field(r.oldestSample, st.trends.OldestSample);
    w.field(r.samples, st.trends.TrendSamples);
}

// The previous part when the station still matches it, else a new copy (and a new version).
template <typename Part, typename Walk>
void sharePart(const Station& st, const std::shared_ptr<const Part>& before,
               std::uint64_t versionBefore, std::shared_ptr<const Part>& part,
               std::uint64_t& version, Walk walk) {
    if (before) {
        CompareFields compare;
        walk(st, *before, compare);
        if (compare.same) {
            part = before;
            version = versionBefore;
            return;
        }
    }
    auto fresh = std::make_shared<Part>();
    CopyFields copy;
    walk(st, *fresh, copy);
    part = std::move(fresh);
    version = versionBefore + 1;
}

}  // namespace

std::shared_ptr<const StationSnapshot> SnapshotBuilder::build(const Station& st,
                                                              long long lateTicks) {
    auto s = std::make_shared<StationSnapshot>();
    s->sequence = ++sequence_;
    s->time = st.platform.clock->now();
    for (int n = 1; n <= kTableTags; ++n) s->values[n] = st.tags[n].Value;
    s->tagMaximum = st.minMax.TagMaximum;
    s->tagMinimum = st.minMax.TagMinimum;
    s->pollEnabled = st.switches.PollEnabled;
    s->loggingEnabled = st.switches.LoggingEnabled.isOn();
    s->loggingActive = LoggingActive(st);
    s->alarmsEnabled = st.switches.AlarmsEnabled;
    s->controlsEnabled = st.switches.ControlsEnabled;
    s->scanTime = st.scan.ScanTime;
    s->lateTicks = lateTicks;

    const StationSnapshot* p = previous_.get();
    sharePart(st, p ? p->layout : nullptr, p ? p->layoutVersion : 0, s->layout, s->layoutVersion,
              [](const Station& st, auto& l, auto& w) { walkLayout(st, l, w); });
    sharePart(st, p ? p->alarms : nullptr, p ? p->alarmsVersion : 0, s->alarms, s->alarmsVersion,
              [](const Station& st, auto& a, auto& w) { walkAlarms(st, a, w); });
    sharePart(st, p ? p->trend : nullptr, p ? p->trendVersion : 0, s->trend, s->trendVersion,
              [](const Station& st, auto& r, auto& w) { walkTrend(st, r, w); });
    previous_ = s;
    return s;
}

}  // namespace kova::links
