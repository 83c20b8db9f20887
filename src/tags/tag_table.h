#pragma once
// Tag table rules: system-variable tags, I/O name classification and two-point scaling.
#include <cstdint>
#include <string>

#include "tags/tag.h"

namespace kova {

// Tag numbers of the system variables.
enum SystemTag : int { kTagTS = 33, kTagHR, kTagMN, kTagSC, kTagDW, kTagSU };

// Writes tags 33..38 (TS, HR, MN, SC, DW, SU) with their names, labels and units.
void InitSystemTags(TagTable& tags);

// Empties user tags 1..32 to their initial state (a new configuration).
void ClearUserTags(TagTable& tags);

struct IONameClass {
    std::int16_t Kind;
    std::int16_t Direction;
    std::int16_t IONumber;
};
// "A" first gives analog; second character "I" input, "O" output, else variable; the text
// from the fourth character on, when numeric, is the channel number (0 for a variable).
IONameClass ClassifyIOName(const std::string& ioName);
// Binds a tag to an I/O name: stores the name and its Kind, Direction and IONumber.
void BindIOName(Tag& tag, const std::string& ioName);

// Slope and Offset from the two scaling points. A zero raw difference would give a
// non-finite slope: the slope is then 0 (never stored non-finite) and the offset EngValue1.
void ComputeScaling(Tag& tag);

// Raw count to engineering value: raw x Slope + Offset, in double, stored as single.
float ScaleInput(const Tag& tag, std::int16_t raw);

// Engineering value to the raw count of an analog output, clamped to rawMin..rawMax and
// rounded half to even. Faults when the slope is 0 or the result does not fit 16 bits.
std::int16_t ScaleOutput(const Tag& tag, double value, std::int16_t rawMin, std::int16_t rawMax);

// The analog output slot of a tag: (Address - 1) x 20 + IONumber; faults outside 1..32.
int OutputSlot(const Tag& tag);

// Upper-case and trim a name as tag names are kept.
std::string NormalizeTagName(const std::string& name);

// A station publishes each tag under a topic named after it, where "+" and "#" are
// wildcards and "/" separates levels: a tag name cannot hold them.
bool TagNameHasTopicCharacters(const std::string& name);
// What the tag editor (and kova-cli build and check) say of such a name.
inline constexpr const char* kTagNameTopicCharacters =
    "Tag Name cannot contain +, # or /. These characters have a meaning of their own in the "
    "MQTT topics a station publishes its tags under";
std::string ToUpper(std::string s);
std::string Trim(const std::string& s);

}  // namespace kova

namespace kova {
class Prompter;
// True when a user tag other than `editing` already has exactly this name; then shows
// "Variable <name> already in use in Record Number <n>" titled "ERROR".
bool IsTagNameInUse(const TagTable& tags, Prompter& prompter, const std::string& name, int editing);
}  // namespace kova
