#pragma once
// The "View Readings" window (ViewRead) as a model: one screen at a time with its caption,
// the values refreshed once a second, the operator's writes from the value boxes and tick
// boxes, and the navigation.
#include <array>
#include <string>

#include "core/station.h"
#include "displays/readings_setup.h"

namespace kova {

inline constexpr const char* kViewReadingsCaption = "View Readings";
inline constexpr const char* kLoggingDataCaption = "Logging Data";
inline constexpr int kReadTimerMs = 1000;

struct ReadingsAnalogRow {
    std::string TxtLabel;  // prefix + label
    std::string TxtAn;     // the value
    std::string TxtUnits;
    bool operator==(const ReadingsAnalogRow&) const = default;
};

struct ReadingsDigitalRow {
    std::string LblDIP;  // prefix + label
    std::string TxtDig;  // the state's text
    bool ChkDig = false;
    bool operator==(const ReadingsDigitalRow&) const = default;
};

struct ReadingsViewForm {
    int Screen = 1;       // the screen shown, 1..10
    std::string Caption;  // "Screen n     Title"
    std::string TxtScreen;
    bool VOptLog = false;
    std::array<ReadingsAnalogRow, kScreenRows> Analog;
    std::array<ReadingsDigitalRow, kScreenRows> Digital;
    // Rows whose tag takes the operator's writes (an output or a variable): a value may be
    // typed, a box ticked. An input's row, and an empty one, only shows.
    std::array<bool, kScreenRows> AnalogWritable{};
    std::array<bool, kScreenRows> DigitalWritable{};
};

// "I-", "O-" or "V-" for Direction 0, 1 or 2, then the label.
std::string DirectionPrefix(std::int16_t direction);

// The window's load: screen 1 drawn.
ReadingsViewForm OpenReadingsView(Station& st);

// Lays out the shown screen: caption, logging tick, title, every line's Editing flag
// cleared, labels, values, units and the digital states.
void DrawScreen(Station& st, ReadingsViewForm& form);

// The values only: analog lines the operator is typing in are skipped; digital lines
// show EngText1 and a cleared box for 0, EngText2 and a ticked box otherwise. A tick box
// that changes here runs its change handler as an operator's click does.
void RefreshScreen(Station& st, ReadingsViewForm& form);

// The tag table or the whole configuration changed while the window is open. After a tag
// change the labels, prefixes and units follow the tags; values and a box being typed in
// stay as they are. A new configuration draws the screen afresh.
void ReadingsViewTablesChanged(Station& st, ReadingsViewForm& form, TableChange change);

// One ReadTimer tick: the logging tick, RefreshScreen, then the pending outputs sent.
void ReadTimerTick(Station& st, ReadingsViewForm& form);

// "&Next" / "&Previous" (wrapping at 10 and 1) and "&Jump To" (only to a target in
// 1..10), each drawing the new screen; nothing is saved.
void NextReadingsScreen(Station& st, ReadingsViewForm& form);
void PrevReadingsScreen(Station& st, ReadingsViewForm& form);
void JumpReadingsScreen(Station& st, ReadingsViewForm& form);

// True while the operator is typing in analog row (0..9)'s value box: the refresh leaves
// the box as it is.
bool AnalogRowEditing(const Station& st, const ReadingsViewForm& form, int row);

// The cursor entered analog row (0..9)'s value box: the refresh leaves it alone.
void AnalogValueFocused(Station& st, const ReadingsViewForm& form, int row);
// The cursor left it with this text. An output or variable takes the number (an output
// also its raw count and the pending flag); text that is no number is ignored and the
// tag's value shown again; an input's text stays until the next refresh. The refresh
// goes on for the line in every case.
void AnalogValueLeft(Station& st, ReadingsViewForm& form, int row, const std::string& text);

// Digital row (0..9)'s tick box changed to `ticked`: an output or variable takes 1 or 0.
void DigitalBoxChanged(Station& st, ReadingsViewForm& form, int row, bool ticked);

}  // namespace kova
