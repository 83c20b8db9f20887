#include "support/control_lines.h"

#include <cstdio>
#include <cstdlib>

#include "control/line_check.h"
#include "control/run_controls.h"

namespace kova::bench {

void InstallControlLines(Station& st, const char* const (*lines)[3], int count) {
    for (int i = 1; i <= count; ++i) {
        ControlLine& l = st.control.Lines[i];
        l.IfText = lines[i - 1][0];
        l.ThenText = lines[i - 1][1];
        l.ElseText = lines[i - 1][2];
        const LineCheck c = CheckLineTexts(st, nullptr, l.IfText, l.ThenText, l.ElseText);
        if (!c.ok) {
            std::fprintf(stderr, "line %d: %s\n", i, c.message.c_str());
            std::abort();
        }
        l.IfCode = c.ifCode;
        l.ThenCode = c.thenCode;
        l.ElseCode = c.elseCode;
    }
    st.control.ControlCount = ComputeControlCount(st.control);
    st.switches.ControlsEnabled = 1;
}

}  // namespace kova::bench
