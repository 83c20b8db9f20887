#pragma once
// What the tag editor would refuse in the tags of a configuration that reads.
#include <string>
#include <vector>

#include "core/station.h"

namespace kova::cli {

// For every user tag that carries a name: the record checks of the tag editor (an I/O name
// the module does not list, an address other than 1, a channel the module does not have,
// equal scaling points or state texts) and names used twice, each with the editor's
// message. Unnamed slots are left alone: File New leaves every slot so.
std::vector<std::string> CheckTagRecords(const Station& st);

}  // namespace kova::cli
