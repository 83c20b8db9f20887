#pragma once
// The logging windows' own texts, byte for byte.
namespace kova::logtext {

inline constexpr const char* kNoLogFileName = "Error No Log File Name Has Been Entered";

// SetLogging
inline constexpr const char* kOpenLoggingFileTitle = "Open Logging File";
inline constexpr const char* kLoggingFileFilter = "All Files (*.CSV)|*.CSV|";
inline constexpr const char* kProposedLogFile = "*.CSV";

// StartLog
inline constexpr const char* kSampleNumberRange =
    "Sample Number must be between 0 and 32000\nEnter 0 for continuous sampling";
inline constexpr const char* kEnterNumberOfSamples = "Enter Number of Samples";
inline constexpr const char* kTagNotFound = "Tag Name Could not be found";
inline constexpr const char* kStartValueNotNumber = "Starting Value Must Be a Number";
inline constexpr const char* kStopValueNotNumber = "Stopping Value Must Be a Value";
inline constexpr const char* kTagNameEmpty = "Tag Name must have an Entry";
inline constexpr const char* kStartTimeFormat =
    "Start Time must be in 24 Hour Time in the format HH:MM";
inline constexpr const char* kStopTimeFormat =
    "Stop Time must be in 24 Hour Time in the format HH:MM";

inline constexpr const char* kTitleERROR = "ERROR";
inline constexpr const char* kTitleError = "Error";

}  // namespace kova::logtext
