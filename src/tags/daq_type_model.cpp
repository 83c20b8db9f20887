#include "tags/daq_type_model.h"

#include "daq/driver_dispatch.h"

namespace kova {

std::string DaqTypeCaption(int code) {
    switch (code) {
        case kDaqQrt105:
            return "QRT105 (K105 Kit)";
        case kDaqQrt110:
            return "QRT110 (K110 Kit)";
        case kDaqQrt115:
            return "QRT115 (K115 Kit)";
        default:
            return DaqTypeName(code);
    }
}

DaqTypeForm OpenDaqTypeForm(const Station& st) {
    DaqTypeForm f;
    const int code = st.profile.TypeCode;
    if (code >= 0 && code < kDaqTypeCount) f.OptDaqType[static_cast<std::size_t>(code)] = true;
    return f;
}

std::string DaqTypeTip(int code) {
    if (code != kDaqTest) return {};
    return "The TEST module is simulated: nothing is read from or sent to the printer port.\n"
           "AI-1 to AI-8: raw counts in a saw-tooth, AI-n from n x 200 to n x 200 + 198 (AI-1 "
           "200 to 398); the ramp moves 2 counts at every analog read and starts again after "
           "100 reads, so with one analog input tag a ramp takes 100 I/O periods, with four "
           "tags 25.\n"
           "DI-1 to DI-4: at every poll one of them reads 0 and the others 1; the 0 moves on "
           "from DI-1 to DI-4, so each reads 0 for one poll in four.\n"
           "AO-1, AO-2, DO-1 to DO-4: the tags keep what is written to them; nothing goes "
           "anywhere.\n"
           "Scale an analog input over its own raw range (AI-1: raw 200 = 0, raw 398 = 100).";
}

void ExitDaqTypeForm(Station& st, const DaqTypeForm& form) {
    const int before = st.profile.TypeCode;
    int code = before;
    for (int i = 0; i < kDaqTypeCount; ++i)
        if (form.OptDaqType[static_cast<std::size_t>(i)]) code = i;
    BuildIOList(st.profile, code);
    st.scan.NumDigitalInputs = st.profile.DigitalInputs;
    RebuildModuleSummary(st);
    // The windows offering I/O names follow the new module.
    if (code != before) st.changes.raise(TableChange::DaqType);
}

}  // namespace kova
