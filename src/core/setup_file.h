#pragma once
// The setup file (*.SUF): 363 records of 128 bytes holding the whole configuration, in the
// order of VisitSetupItems. Numbers are little-endian, texts a 2-byte length and 8-bit
// Windows-1252 bytes, variants a 2-byte type code and the value. The writer fills every
// record to its full length with zero bytes, so one configuration always gives the same
// 46464 bytes; the reader accepts a shorter last record and ignores the filler.
#include <filesystem>
#include <string>
#include <vector>

#include "core/configuration.h"
#include "core/setup_items.h"
#include "core/station.h"

namespace kova {

// Every item that cannot be stored: a record needing more than 128 bytes, a text with a
// character Windows-1252 lacks, a variant whose value its type cannot hold. Each entry
// names the record and the item ("record 5 (tag 5): needs 140 bytes, ...").
std::vector<std::string> FindUnsavableItems(const Station& st);

// The bytes of the setup file for this configuration. Faults (File) naming the first item
// that cannot be stored.
std::string EncodeSetupFile(const Station& st);

// What File Save would write, without the values that move by themselves while the station
// runs (tag values, alarm states and lines, control results, the readings screens' editing
// flags) and without the control lines' codes, which follow their texts. Two configurations with the same fingerprint differ only in run-time values.
// Never faults: an item the file cannot hold is compared as it stands.
std::string ConfigurationFingerprint(const Station& st);

// Every problem of a setup file's bytes: a record cut short, a length running past its
// record, an unknown variant type, missing records. A corrupt record does not hide the
// ones after it (every record starts at a fixed place); a file that ends early gives one
// entry for the missing rest. Empty when the whole file reads.
std::vector<std::string> FindSetupFileProblems(const std::string& bytes);

// Reads the stored items into the station, and nothing else: no defaults, no slopes, no
// name index (the caller derives those, or applies the defaults on failure). On failure
// `error` names the record, the item and what was wrong, and the station is unchanged.
bool DecodeSetupFile(Station& st, const std::string& bytes, std::string& error);

// Checks every item first, then writes the file atomically. Faults (File) naming the file
// and the item that cannot be stored, or what went wrong while writing; the file that was
// there before is then left as it was.
void SaveSetupFile(const Station& st, const std::filesystem::path& file);

// Reads a setup file into the station (as DecodeSetupFile); the error names the file.
LoadOutcome LoadSetupFile(Station& st, const std::filesystem::path& file);

}  // namespace kova
