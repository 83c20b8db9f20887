#pragma once
// The texts and titles the control statement editor shows.
#include <string>

namespace kova::control_text {

inline constexpr const char* kErrorTitle = "Error";
inline constexpr const char* kOptionTitle = "Option";

// Part names as they appear in the messages.
inline constexpr const char* kIf = "If";
inline constexpr const char* kThen = "Then";
inline constexpr const char* kElse = "Else";

inline std::string SyntaxError(const char* part) {
    return std::string("Syntax Error in ") + part + " Statement";
}
inline std::string UnknownToken(const char* part, const std::string& token) {
    return "Unknown Token " + token + " in " + part + " Statement";
}
// The evaluator found an unknown tag after the text compiled.
inline std::string UnknownTokenAtRun(const char* part) {
    return std::string("Unknown Token in ") + part + " Statement";
}

inline constexpr const char* kMaximumLines = "Maximum number of Controls Entered";
inline constexpr const char* kCannotInsert = "Cannot Insert Line on Last line No.";
inline constexpr const char* kDeleteQuestion = "Do You Wish to Delete This Line";

// A line must fit one 128-byte record of the setup file, in Windows-1252.
inline constexpr const char* kLineTooLong =
    "Control Line Too Long. The If, Then and Else texts with their compiled codes must fit in "
    "128 bytes; shorten them";
inline constexpr const char* kCannotEncode =
    "Control Line Contains Characters That Cannot Be Saved. Use only characters of the Western "
    "(Windows-1252) character set";

// kova-cli check: a line whose stored codes differ from what its texts compile to.
inline constexpr const char* kStaleCode =
    "Stored Code Does Not Match The Statement Text. Check The Line In The Editor";

}  // namespace kova::control_text
