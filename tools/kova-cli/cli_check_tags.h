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

// References by number alone that have lost their tag: a trend pen or the logging condition
// on the place-holder variable that deleting a tag leaves (a file written before deleting
// carried the references along: they now show whatever moved into the slot), and a logging
// condition on a tag slot without a name. Alarms and readings-screen lines also keep the
// tag's name; the window checks report those whose name and number disagree.
std::vector<std::string> CheckTagReferences(const Station& st);

}  // namespace kova::cli
