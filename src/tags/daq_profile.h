#pragma once
// The description of the selected module type and the catalogue of the six types.
#include <cstdint>
#include <string>

#include "core/one_based.h"

namespace kova {

enum DaqTypeCode : std::int16_t {
    kDaqTest = 0,
    kDaqQrt105 = 1,
    kDaqQrt110 = 2,
    kDaqQrt115 = 3,
    kDaqFieldRecorder = 4,
    kDaqQrtu = 5,
};
inline constexpr int kDaqTypeCount = 6;

// The type string of a code ("TEST", "QRT105", ...); "" outside 0..5.
const char* DaqTypeName(int code);

struct DaqProfile {
    std::int16_t TypeCode = 0;
    std::string TypeString;
    std::int16_t AnalogInputs = 0;
    std::int16_t AnalogOutputs = 0;
    std::int16_t DigitalInputs = 0;
    std::int16_t DigitalOutputs = 0;
    std::int16_t NumIONames = 0;
    Table<std::string, 40> IONameList;
    std::int16_t RawMin = 0;
    std::int16_t RawMax = 0;
    bool operator==(const DaqProfile&) const = default;
};

// Fills the profile for a type code. Fields a type does not describe are left as the
// previous type set them (a FIELD RECORDER after a QRTU still reports 1 AO, 15 DI, 8 DO).
// A code outside 0..5 changes nothing.
void BuildIOList(DaqProfile& profile, int typeCode);

}  // namespace kova
