#pragma once
// The "Tag Configuration" window (CfgTags) as a model: what its boxes show, the checks a
// record passes before it is stored, renaming, deleting, finding, leaving and the printed
// listing. One user tag (1..32) is shown at a time; the table is edited in place.
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

class Printer;

struct TagForm {
    int LblTag = 1;  // the shown tag, 1..32
    std::string TxtLabel;
    std::string TxtTagName;
    std::string TxtRTUAddr;
    std::string CboIOName;
    std::string TxtRawValue1;
    std::string TxtRawValue2;
    std::string TxtEngValue1;
    std::string TxtEngValue2;
    std::string TxtUnits;
    bool ChkLog = false;
    std::vector<std::string> IONames;  // the drop-down's entries, from the DAQ profile
    // After a refused record: the box at fault ("TxtTagName", "CboIOName", ...), where the
    // keyboard goes back to; "" when the record was taken or no box is at fault.
    std::string FailedBox{};
};

// The captions of the four scaling boxes. A digital I/O name makes the engineering boxes
// the texts shown for states 0 and 1, and the raw boxes the fixed 0 and 1 (not typed in).
struct ScalingCaptions {
    bool Digital = false;
    std::string RawValue1, RawValue2, EngValue1, EngValue2;
    std::string EngHint1, EngHint2;  // what to type, shown in an empty box
};
ScalingCaptions TagFormScalingCaptions(const Station& st, const TagForm& form);

// The I/O names of the selected module, as the drop-down offers them.
std::vector<std::string> TagFormIONames(const Station& st);

// Opening: the I/O names of the selected module into the drop-down, tag 1 shown.
TagForm OpenTagForm(const Station& st);

// The stored record of form.LblTag into the boxes.
void ShowTag(const Station& st, TagForm& form);

// An I/O name chosen in the drop-down: an analog name shows the stored scaling points of
// the shown tag, a digital one "0" and "1" with the stored state texts.
void ChooseIOName(const Station& st, TagForm& form, const std::string& ioName);

// Accepts the shown record: the checks in order, the first failure shown titled "ERROR"
// and nothing stored. An unchanged record is left as it is. A rename is carried into the
// readings screens and the control statements (their codes compiled again). True when
// the record is accepted.
bool AcceptTag(Station& st, TagForm& form);

// The buttons. Previous and Next move (clamped to 1 and 32) only when the record is
// accepted; Find and Delete leave the boxes of the shown record as they are typed.
// Delete is refused while a control statement, an alarm, a readings-screen line, a trend
// pen or the logging condition uses the tag (a warning names the first); otherwise the
// later tags move up one place and every number that refers to them moves with them.
// Each returns true when another record (or the same one afresh) is shown.
bool TagFormPrevious(Station& st, TagForm& form);
bool TagFormNext(Station& st, TagForm& form);
bool TagFormFind(Station& st, TagForm& form);
bool TagFormDelete(Station& st, TagForm& form);

// E&xit: accepts the shown record and checks the whole table; with an error asks whether to
// leave anyway. True when the window may close; the name index and the module summary are
// then rebuilt.
bool TagFormExit(Station& st, TagForm& form);

// What leaving the window always does: the name index and the module summary rebuilt.
void LeaveTagForm(Station& st);

// What uses tag `number` by its number, besides the control statements (which use names):
// a warning naming the first alarm, screen line, trend pen or the logging condition, in
// that order; "" when nothing does.
std::string TagNumberInUse(const Station& st, int number);

// A place-holder variable that deleting a tag leaves in slot 32 ("AVAR" + a number, no
// description): a reference to it has lost the tag it followed.
bool IsDeletedTagPlaceHolder(const Tag& tag);

// The whole-table check: one message per user tag without a name, one per pair of user
// tags sharing a name.
std::vector<std::string> CheckTagTable(const TagTable& tags);

// The bytes a tag takes in its record of the setup file; nullopt when a text has a
// character Windows-1252 lacks. A record holds 128 bytes.
std::optional<std::size_t> TagRecordBytes(const Tag& tag);
inline constexpr std::size_t kTagRecordBytes = 128;

// The printed listing: five lines and a line of two blanks per named user tag.
std::string TagListing(const TagTable& tags);

// Prints the listing on the printer the user picks. False when there was nothing to print
// (the user is told) or the printing was cancelled.
bool PrintTagListing(const Station& st, Printer& printer);

}  // namespace kova
