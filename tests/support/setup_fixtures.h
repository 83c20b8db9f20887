#pragma once
// Configurations for setup-file tests: one that uses every field with a distinct value,
// and a flat listing of every stored item for comparing two stations.
#include <string>
#include <vector>

#include "core/station.h"

namespace kova::test {

// Every stored item set to a value unlike its default: non-ASCII Windows-1252 texts
// ("°C", "µs", "€"), each variant type on some variant item, negative and fractional
// numbers, a NaN and an infinity among the floats.
void FillRichConfiguration(Station& st);

// Every item the setup file stores, one line each ("tags[3].Units = \"°C\""), floats by
// their bits so that NaN and -0 compare too.
std::vector<std::string> StoredItems(const Station& st);

}  // namespace kova::test
