#pragma once
// The values of a record the station's outbox held while the broker was away. A record's
// body is one JSON object whose "values" map each logged tag's name to its number (null
// for a value no number can hold, which is left out here).
#include <string>
#include <vector>

#include "links/sparkplug/edge_node.h"

namespace kova::sparkplug {

// The values of a record's body; empty when the body holds none (or is no such object).
std::vector<HeldValue> HeldValuesOf(const std::string& body);

}  // namespace kova::sparkplug
