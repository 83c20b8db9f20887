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

void ExitDaqTypeForm(Station& st, const DaqTypeForm& form) {
    int code = st.profile.TypeCode;
    for (int i = 0; i < kDaqTypeCount; ++i)
        if (form.OptDaqType[static_cast<std::size_t>(i)]) code = i;
    BuildIOList(st.profile, code);
    st.scan.NumDigitalInputs = st.profile.DigitalInputs;
    RebuildModuleSummary(st);
}

}  // namespace kova
