#pragma once
// The "Set Up Screens" window (SetRead) as a model: what the controls show, the load and
// save of one screen with its checks in their order, the wrap-around navigation, exit,
// and the row that asked the analog tag picker for a name.
#include <array>
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

inline constexpr int kScreens = 10;
inline constexpr int kScreenRows = 10;  // analog rows; as many digital rows

inline constexpr const char* kSetupScreensCaption = "Set Up Screens";
inline constexpr const char* kScreenHeadings[7] = {
    "Screen Title", "Screen No.", "Jump To", "ANALOGS", "DIGITALS", "TagName", "Description"};
inline constexpr const char* kJumpToMessage = "ERROR - Jump to must be a number between 1 and ";
inline constexpr const char* kExitQuestion = "Do You Wish To Exit";
inline constexpr const char* kExitQuestionTitle = "ERROR";

struct ScreenSetupForm {
    int LblScrNo = 1;  // the screen shown, 1..10
    std::string TxtScreen;
    std::string TxtJump;
    std::array<std::string, kScreenRows> CboAnTag;  // the combo texts, row 0..9
    std::array<std::string, kScreenRows> LblAn;
    std::array<std::string, kScreenRows> CboDigTag;
    std::array<std::string, kScreenRows> LblDig;
    std::vector<std::string> AnalogChoices;   // every CboAnTag list
    std::vector<std::string> DigitalChoices;  // every CboDigTag list
    int PickerRow = -1;  // the analog row that opened the tag picker, -1 = none
    // What LoadSetupScreen put in the rows: a row showing it was not typed in.
    std::array<std::string, kScreenRows> ShownAnTag{};
    std::array<std::string, kScreenRows> ShownDigTag{};
    // After a refused screen: the box at fault ("TxtJump", "CboAnTag3", "CboDigTag0", ...).
    std::string FailedBox{};
};

// The lists: TagName of every user tag 1..32 of that kind, in tag order (unused tags are
// analog and add empty entries to the analog list, as the picker's list does).
std::vector<std::string> ScreenTagChoices(const TagTable& tags, std::int16_t kind);

// The window's load: screen 1, then the two lists.
ScreenSetupForm OpenSetupScreens(Station& st);

// Puts screen n into the form. A jump target outside 0..10 is reset to 1 in the table; a
// target of 0 becomes 1 in the table and shows an empty box (an empty box saves 0 again).
void LoadSetupScreen(Station& st, ScreenSetupForm& form, int n);

// Stores the form into the shown screen. Returns 1 after the first refusal (its message
// shown; what was stored before it stays), 0 on success.
int SaveSetupScreen(Station& st, const ScreenSetupForm& form);

// SaveSetupScreen's check of one line's combo text (`digital` for rows 11..20): the message
// it shows, "" when it takes the name (an empty name, or a tag of the row's kind, whose
// number goes to `tagNumber`; 0 for an empty name).
std::string ScreenLineRefusal(const Station& st, const std::string& text, bool digital,
                              int& tagNumber);

// SaveSetupScreen's check of the jump box: the message it shows, "" when it takes the text
// (an empty box, or a whole number 0..10 once rounded).
std::string JumpToRefusal(const std::string& text);

// The tag table or the whole configuration changed while the window is open; `form` holds
// what the controls show now. The lists and the descriptions follow the table, and every
// row the user has not typed in shows its line's tag as it is now named. A new
// configuration shows the screen afresh.
void ScreenSetupTablesChanged(Station& st, ScreenSetupForm& form, TableChange change);

// "&Next" / "&Previous": save, then move on (after 10 comes 1, before 1 comes 10). A failed
// save stays on the screen. True when the form moved.
bool NextSetupScreen(Station& st, ScreenSetupForm& form);
bool PrevSetupScreen(Station& st, ScreenSetupForm& form);

// "E&xit": save; on a refusal ask "Do You Wish To Exit". True when the window closes.
bool ExitSetupScreens(Station& st, ScreenSetupForm& form);

// The analog tag picker was opened from row (0..9) / gave a name: the asking row's combo
// text takes it. A name without an asking row is dropped.
void AskPickerFromRow(ScreenSetupForm& form, int row);
void TakePickedTag(ScreenSetupForm& form, const std::string& name);

}  // namespace kova
