#include "tags/daq_profile.h"

#include <optional>

namespace kova {

const char* DaqTypeName(int code) {
    static const char* const names[] = {"TEST",   "QRT105",         "QRT110",
                                        "QRT115", "FIELD RECORDER", "QRTU"};
    return code >= 0 && code < kDaqTypeCount ? names[code] : "";
}

namespace {
struct CatalogueEntry {
    // nullopt: the type's builder does not write the field.
    std::optional<std::int16_t> ai, ao, di, dout, rawMin, rawMax;
};

// Each type's channel counts and analog output range, as its builder writes them.
const CatalogueEntry kCatalogue[kDaqTypeCount] = {
    /* TEST */ {8, 2, 4, 4, std::nullopt, std::nullopt},
    /* QRT105 */ {8, 0, 4, 4, 0, 4095},
    /* QRT110 */ {8, 2, 0, 0, 0, 4095},
    /* QRT115 */ {0, 0, 8, 8, 0, 0},
    /* FIELD RECORDER */ {1, std::nullopt, std::nullopt, std::nullopt, 0, 4095},
    /* QRTU */ {8, 1, 15, 8, 0, 255},
};

// The names listed for a type use its own counts, not the profile's, so a FIELD RECORDER
// offers only AI-1 even when the profile still carries another type's output counts.
struct ListCounts {
    int ai, ao, di, dout;
};
const ListCounts kListCounts[kDaqTypeCount] = {{8, 2, 4, 4}, {8, 0, 4, 4}, {8, 2, 0, 0},
                                               {0, 0, 8, 8}, {1, 0, 0, 0}, {8, 1, 15, 8}};
}  // namespace

void BuildIOList(DaqProfile& p, int typeCode) {
    if (typeCode < 0 || typeCode >= kDaqTypeCount) return;
    const CatalogueEntry& c = kCatalogue[typeCode];
    p.TypeCode = static_cast<std::int16_t>(typeCode);
    p.TypeString = DaqTypeName(typeCode);
    if (c.ai) p.AnalogInputs = *c.ai;
    if (c.ao) p.AnalogOutputs = *c.ao;
    if (c.di) p.DigitalInputs = *c.di;
    if (c.dout) p.DigitalOutputs = *c.dout;
    if (c.rawMin) p.RawMin = *c.rawMin;
    if (c.rawMax) p.RawMax = *c.rawMax;

    const ListCounts& n = kListCounts[typeCode];
    int k = 0;
    // Writing past entry 40 faults through the range-checked table.
    auto add = [&](const std::string& name) { p.IONameList[++k] = name; };
    add("Analog Variable");
    add("Digital Variable");
    for (int i = 1; i <= n.ai; ++i) add("AI-" + std::to_string(i));
    static const char* const aoNames[] = {"AO-1", "AO-2"};
    for (int i = 0; i < n.ao; ++i) add(aoNames[i]);
    for (int i = 1; i <= n.di; ++i) add("DI-" + std::to_string(i));
    for (int i = 1; i <= n.dout; ++i) add("DO-" + std::to_string(i));
    p.NumIONames = static_cast<std::int16_t>(k);
}

}  // namespace kova
