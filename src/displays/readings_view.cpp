#include "displays/readings_view.h"

#include <cfloat>
#include <cmath>

#include "core/numeric.h"
#include "daq/driver_dispatch.h"
#include "displays/operator_writes.h"
#include "logging/log_conditions.h"

namespace kova {

namespace {

constexpr int kDigitalFirstLine = kScreenRows + 1;

ScreenLine& analogLine(Station& st, const ReadingsViewForm& form, int row) {
    return st.screens.Lines(form.Screen, row + 1);
}

ScreenLine& digitalLine(Station& st, const ReadingsViewForm& form, int row) {
    return st.screens.Lines(form.Screen, row + kDigitalFirstLine);
}

// The tag a line shows, or nullptr for an empty line (or a number out of 1..42).
const Tag* tagOf(const Station& st, const ScreenLine& line) {
    if (line.TagNumber < 1 || line.TagNumber > kTableTags) return nullptr;
    return &st.tags[line.TagNumber];
}

void showAnalogValue(const Station& st, const ScreenLine& line, ReadingsAnalogRow& row) {
    const Tag* t = tagOf(st, line);
    row.TxtAn = t ? numberText(t->Value) : std::string();
}

// The state text and tick box of a digital row; a box that changes runs the change
// handler, as a click would.
void showDigitalState(Station& st, ReadingsViewForm& form, int row) {
    ReadingsDigitalRow& r = form.Digital[static_cast<std::size_t>(row)];
    const Tag* t = tagOf(st, digitalLine(st, form, row));
    bool ticked = false;
    if (!t) {
        r.TxtDig.clear();
    } else if (t->Value == 0) {
        r.TxtDig = t->EngText1;
    } else {
        r.TxtDig = t->EngText2;
        ticked = true;
    }
    if (r.ChkDig != ticked) DigitalBoxChanged(st, form, row, ticked);
}

// An output or a variable takes the operator's writes; an input is only read.
bool writable(const Tag* t) {
    return t && (t->Direction == kOutput || t->Direction == kVariable);
}

// What every row says of its tag: prefix and label, units, and whether it takes writes.
void labelRows(Station& st, ReadingsViewForm& form) {
    for (int row = 0; row < kScreenRows; ++row) {
        ReadingsAnalogRow& a = form.Analog[static_cast<std::size_t>(row)];
        const Tag* t = tagOf(st, analogLine(st, form, row));
        a.TxtLabel = t ? DirectionPrefix(t->Direction) + t->Label : std::string();
        a.TxtUnits = t ? t->Units : std::string();
        form.AnalogWritable[static_cast<std::size_t>(row)] = writable(t);
        ReadingsDigitalRow& d = form.Digital[static_cast<std::size_t>(row)];
        const Tag* dt = tagOf(st, digitalLine(st, form, row));
        d.LblDIP = dt ? DirectionPrefix(dt->Direction) + dt->Label : std::string();
        form.DigitalWritable[static_cast<std::size_t>(row)] = writable(dt);
    }
}

void showScreen(Station& st, ReadingsViewForm& form, int n) {
    form.Screen = n;
    DrawScreen(st, form);
}

}  // namespace

std::string DirectionPrefix(std::int16_t direction) {
    switch (direction) {
        case kInput:
            return "I-";
        case kOutput:
            return "O-";
        case kVariable:
            return "V-";
        default:
            return "";
    }
}

ReadingsViewForm OpenReadingsView(Station& st) {
    ReadingsViewForm form;
    showScreen(st, form, 1);
    return form;
}

void DrawScreen(Station& st, ReadingsViewForm& form) {
    const ScreenHeader& h = st.screens.Headers[form.Screen];
    form.Caption = "Screen " + std::to_string(form.Screen) + "     " + h.Title;
    form.VOptLog = LoggingActive(st);
    form.TxtScreen = h.Title;
    for (int line = 1; line <= 2 * kScreenRows; ++line)
        st.screens.Lines(form.Screen, line).Editing = 0;
    labelRows(st, form);
    for (int row = 0; row < kScreenRows; ++row) {
        showAnalogValue(st, analogLine(st, form, row), form.Analog[static_cast<std::size_t>(row)]);
        showDigitalState(st, form, row);
    }
}

void RefreshScreen(Station& st, ReadingsViewForm& form) {
    for (int row = 0; row < kScreenRows; ++row) {
        const ScreenLine& line = analogLine(st, form, row);
        if (line.Editing == 0)
            showAnalogValue(st, line, form.Analog[static_cast<std::size_t>(row)]);
        showDigitalState(st, form, row);
    }
}

void ReadingsViewTablesChanged(Station& st, ReadingsViewForm& form, TableChange change) {
    if (change == TableChange::DaqType) return;
    if (change == TableChange::Configuration) {
        DrawScreen(st, form);
        return;
    }
    labelRows(st, form);
}

void ReadTimerTick(Station& st, ReadingsViewForm& form) {
    form.VOptLog = LoggingActive(st);
    RefreshScreen(st, form);
    SendPendingOutputs(st);
}

void NextReadingsScreen(Station& st, ReadingsViewForm& form) {
    showScreen(st, form, form.Screen == kScreens ? 1 : form.Screen + 1);
}

void PrevReadingsScreen(Station& st, ReadingsViewForm& form) {
    showScreen(st, form, form.Screen == 1 ? kScreens : form.Screen - 1);
}

void JumpReadingsScreen(Station& st, ReadingsViewForm& form) {
    const std::int16_t target = st.screens.Headers[form.Screen].JumpTo;
    if (target >= 1 && target <= kScreens) showScreen(st, form, target);
}

bool AnalogRowEditing(const Station& st, const ReadingsViewForm& form, int row) {
    return st.screens.Lines(form.Screen, row + 1).Editing != 0;
}

void AnalogValueFocused(Station& st, const ReadingsViewForm& form, int row) {
    analogLine(st, form, row).Editing = -1;
}

void AnalogValueLeft(Station& st, ReadingsViewForm& form, int row, const std::string& text) {
    ScreenLine& line = analogLine(st, form, row);
    ReadingsAnalogRow& r = form.Analog[static_cast<std::size_t>(row)];
    r.TxtAn = text;
    line.Editing = 0;
    const Tag* t = tagOf(st, line);
    if (!t || (t->Direction != kOutput && t->Direction != kVariable)) return;
    // Text that is no number, or a number no tag can hold, is ignored.
    const double v = isNumeric(text) ? leadingNumber(text) : NAN;
    if (!std::isfinite(v) || std::fabs(v) > static_cast<double>(FLT_MAX)) {
        showAnalogValue(st, line, r);
        return;
    }
    OperatorWriteAnalog(st, line.TagNumber, static_cast<float>(v));
    showAnalogValue(st, line, r);
}

void DigitalBoxChanged(Station& st, ReadingsViewForm& form, int row, bool ticked) {
    form.Digital[static_cast<std::size_t>(row)].ChkDig = ticked;
    const ScreenLine& line = digitalLine(st, form, row);
    if (tagOf(st, line)) OperatorWriteDigital(st, line.TagNumber, ticked);
}

}  // namespace kova
