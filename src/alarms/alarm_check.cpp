#include "alarms/alarm_check.h"

#include <string>

#include "alarms/alarm_text.h"

namespace kova {

namespace {

bool isActive(std::int16_t state) {
    return state >= 1 && state <= 4;
}

void appendHistory(AlarmState& alarms, const std::string& line) {
    // Slots 0..50: when all 51 are in use the oldest line is dropped.
    if (alarms.HistoryCount > 50) {
        for (int slot = 1; slot <= 50; ++slot) alarms.History[slot - 1] = alarms.History[slot];
        alarms.HistoryCount = 50;
    }
    alarms.History[alarms.HistoryCount] = line;
    ++alarms.HistoryCount;
}

// What one alarm's step produced: nothing, or a line of this word and message.
struct AlarmLine {
    const char* word = nullptr;  // kAlarmWord or kNormalWord; null when no line
    const std::string* message = nullptr;
};

// Moves one alarm on from the state it had before this pass. Builds no text: most passes
// change nothing, and those cost no heap.
AlarmLine stepAlarm(AlarmDef& a, const Tag& tag, Beeper& beeper) {
    const float v = tag.Value;
    const std::int16_t s = a.State;
    AlarmLine line;
    bool intoHigh = false;
    bool intoLow = false;
    if (tag.Kind == kAnalog) {
        intoHigh = s == 0 || s == 2 || s == 4;
        intoLow = s == 0 || s == 1 || s == 4;
    } else if (tag.Kind == kDigital) {
        // A digital alarm never passes straight between high and low.
        intoHigh = s == 0 || s == 4;
        intoLow = s == 0 || s == 4;
    } else {
        return line;
    }
    if (v >= a.HiVal && intoHigh) {
        a.State = 1;
        line = {kAlarmWord, &a.HiMsg};
        beeper.beep();
    }
    if (v <= a.LoVal && intoLow) {
        a.State = 2;
        line = {kAlarmWord, &a.LoMsg};
        beeper.beep();
    }
    if (v > a.LoVal && v < a.HiVal && (s == 1 || s == 2 || s == 3)) {
        a.State = 4;
        line = {kNormalWord, &a.NormMsg};
        beeper.beep();
    }
    return line;
}

}  // namespace

void CheckAlarms(Station& st) {
    if (st.switches.AlarmsEnabled == 0) return;

    // Every line of one pass carries the same time: read the clock once, up front.
    const LocalDateTime now = st.platform.clock->now();

    AlarmState& alarms = st.alarms;
    for (int n = 1; n <= kAlarmCount; ++n) {
        AlarmDef& a = alarms.Alarms[n];
        if (a.State < 0 || a.State > 4) a.State = 0;
        if (a.TagNo <= 0) continue;
        const AlarmLine line = stepAlarm(a, st.tags[a.TagNo], *st.platform.beeper);
        if (line.word == nullptr) continue;
        const std::string text = AlarmLinePrefix(line.word, now) + *line.message;
        st.platform.status->setStatusText(text);
        a.LastText = text;
        appendHistory(alarms, text);
    }

    bool anyActive = false;
    for (const AlarmDef& a : alarms.Alarms) anyActive = anyActive || isActive(a.State);
    if (!anyActive) st.platform.status->setStatusText("");
}

void ClearAlarms(Station& st) {
    for (AlarmDef& a : st.alarms.Alarms) {
        a.TagName.clear();
        a.HiMsg.clear();
        a.LoMsg.clear();
        a.NormMsg.clear();
        a.LastText.clear();
        a.TagNo = 0;
        a.HiVal = 0;
        a.LoVal = 0;
        // State stays: an alarm without a tag is never evaluated.
    }
    // Slot 0 and the count are kept, as the history always has been.
    for (int slot = 1; slot <= 50; ++slot) st.alarms.History[slot].clear();
    st.switches.AlarmsEnabled = 0;
}

}  // namespace kova
