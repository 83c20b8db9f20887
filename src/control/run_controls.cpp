#include "control/run_controls.h"

#include <algorithm>

#include "control/evaluator.h"
#include "daq/driver_dispatch.h"

namespace kova {

namespace {

// Brings a line's decoded image up to date with its code texts; a part is decoded again
// only when its text differs from the one it was decoded from.
void refresh(const ControlLine& line, CompiledLine& c) {
    if (!c.ifBuilt || c.ifSource != line.IfCode) {
        DecodeIfCode(line.IfCode, c.ifExpr);
        c.ifSource = line.IfCode;
        c.ifBuilt = true;
    }
    if (!c.thenBuilt || c.thenSource != line.ThenCode) {
        DecodeAssignmentList(line.ThenCode, c.thenParts);
        c.thenSource = line.ThenCode;
        c.thenBuilt = true;
    }
    if (!c.elseBuilt || c.elseSource != line.ElseCode) {
        DecodeAssignmentList(line.ElseCode, c.elseParts);
        c.elseSource = line.ElseCode;
        c.elseBuilt = true;
    }
}

void execute(Station& st, const std::vector<CompiledAssignment>& parts) {
    // A failing assignment stops neither the line nor the pass.
    for (const CompiledAssignment& a : parts) ExecuteCompiledAssignment(st, a);
}

}  // namespace

void RunControls(Station& st) {
    ControlState& control = st.control;
    if (st.switches.ControlsEnabled == 0 || control.ControlCount <= 0) return;
    const int count = std::min<int>(control.ControlCount, kControlLines);
    for (int i = 1; i <= count; ++i) {
        ControlLine& line = control.Lines[i];
        CompiledLine& compiled = control.Compiled[i];
        refresh(line, compiled);

        const std::int16_t r = EvaluateCompiledIf(st, compiled.ifExpr);
        // With ThenOnRise the THEN part runs only when the IF goes from false to true.
        const bool skipThen = r > 0 && line.ThenOnRise != 0 && line.LastResult > 0;
        line.LastResult = r;
        if (r > 0 && !skipThen) {
            if (!line.ThenText.empty()) execute(st, compiled.thenParts);
        } else if (r == 0) {
            if (!line.ElseText.empty()) execute(st, compiled.elseParts);
        }
    }
    control.StartUpFlag = 1;

    // Outputs go to the module once per pass, after the last line, and only when changed.
    SendPendingOutputs(st);
}

void ClearControls(Station& st) {
    for (ControlLine& line : st.control.Lines) line = ControlLine{};
    for (CompiledLine& c : st.control.Compiled) c = CompiledLine{};
    st.control.ControlCount = 0;
    st.switches.ControlsEnabled = 0;
}

std::int16_t ComputeControlCount(const ControlState& control) {
    for (int i = 1; i <= kControlLines; ++i) {
        const ControlLine& line = control.Lines[i];
        if (line.ThenText.empty() && line.ElseText.empty()) return static_cast<std::int16_t>(i);
    }
    return kControlLines;
}

}  // namespace kova
