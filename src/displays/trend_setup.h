#pragma once
// The "SetUp Trends" window (SetTrend) as a model: the four pen boxes of the current
// trend, storing them into the trend table, and moving from trend to trend.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

inline constexpr const char* kSetTrendCaption = "SetUp Trends";
inline constexpr const char* kSetTrendNumberHeading = "Trend Number";
inline constexpr const char* kSetTrendPenHeadings[4] = {"Tag Name - Pen 1", "Tag Name - Pen 2",
                                                        "Tag Name - Pen 3", "Tag Name - Pen 4"};
inline constexpr const char* kSetTrendPreviousCaption = "&Previous";
inline constexpr const char* kSetTrendNextCaption = "&Next";
inline constexpr const char* kSetTrendExitCaption = "E&xit";

struct SetTrendForm {
    std::string LblTrendNo;               // the trend being edited
    std::vector<std::string> TagList;     // every pen box's list: the names of tags 1..32
    std::array<std::string, 4> CboTagNo;  // the text of pen 1..4 (element 0 is pen 1)
    // What DisplayTrend put in the pen boxes: a box showing it was not typed in.
    std::array<std::string, 4> ShownPens{};
    int FailedPen = 0;  // after a refused trend: the pen (1..4) whose name was not found
    bool operator==(const SetTrendForm&) const = default;
};

// Load: CurrentTrend = 1 (the view window shares it), the form shows trend 1.
SetTrendForm OpenSetTrend(Station& st);

// Fills the pen boxes of CurrentTrend: each list holds the names of tags 1..32 in tag
// order (the empty names of unused tags included); each box shows its pen's tag name, ""
// when the pen has no tag.
void DisplayTrend(const Station& st, SetTrendForm& form);

// The text DisplayTrend puts in the box of `pen` of `trend`: its tag's name, "" when the pen
// has no tag (or a number no tag has).
std::string TrendPenText(const Station& st, int trend, int pen);

// SaveTrend's check of one pen box: the message it shows ("Tag Name <name> not Found"), ""
// when it takes the text; `tag` gets the pen's tag number (0 for an empty box or a refusal).
std::string TrendPenRefusal(const Station& st, const std::string& text, int& tag);
inline constexpr const char* kSetTrendErrorTitle = "ERROR";

// Stores the four boxes into the trend table for CurrentTrend, pen by pen: a name (trimmed,
// upper-cased) must be a tag's, an empty box stores 0. A name not found shows "Tag Name
// <name> not Found" (title "ERROR"), stores 0 for that pen and stops there, leaving the later
// pens as they were. Returns the error flag: true when a name was not found.
bool SaveTrend(Station& st, const SetTrendForm& form);

// "&Next" / "&Previous": store the trend, then move one trend on or back (10 wraps to 1, 1
// to 10) and show it. On an error the form stays on the trend as it is (FailedPen names
// the pen at fault) and false is returned.
bool SetTrendNext(Station& st, SetTrendForm& form);
bool SetTrendPrevious(Station& st, SetTrendForm& form);

// "E&xit": stores the trend; true when the window may close.
bool SetTrendExit(Station& st, SetTrendForm& form);

// The tag table or the whole configuration changed while the window is open; `form` holds
// what the boxes show now. The lists follow the table, and every pen box the user has not
// typed in shows its pen's tag as it is now named. A new configuration shows the trend
// afresh.
void SetTrendTablesChanged(const Station& st, SetTrendForm& form, TableChange change);

}  // namespace kova
