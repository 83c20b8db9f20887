#include "logging/log_switch.h"

#include "logging/log_texts.h"
#include "logging/log_writer.h"

namespace kova {

void SetLoggingSwitch(Station& st, bool on) {
    const bool isOn = st.switches.LoggingEnabled.isOn();
    if (on != isOn) st.logRun.LastStop = {};  // the user's switch: an earlier ending is old news
    if (on && !isOn) {
        OpenLogFile(st);  // on failure: logging stays off and the fault travels on
        st.switches.LoggingEnabled = Variant::integer(1);
    } else if (!on && isOn) {
        CloseLogFile(st);
        st.switches.LoggingEnabled = Variant::integer(0);
    }
}

bool ToggleLogging(Station& st) {
    if (st.switches.LoggingEnabled.isOn()) {
        SetLoggingSwitch(st, false);
        return false;
    }
    if (st.logging.LogFileName.empty()) {
        st.platform.prompter->message(logtext::kNoLogFileName, kAppTitle);
        return false;
    }
    SetLoggingSwitch(st, true);
    return true;
}

}  // namespace kova
