#pragma once
// The File menu's commands: New, Load, Save and Save As with their dialogs and messages.
#include "core/station.h"

namespace kova::app {

inline constexpr const char* kOpenSetupTitle = "Open SetUp File";
inline constexpr const char* kOpenSetupFilter = "All Files (*.SUF)|*.SUF|";
inline constexpr const char* kSaveSetupTitle = "Save SetUp File";
inline constexpr const char* kSaveSetupFilter = "All Files (*.SUF)|*.SUF";
inline constexpr const char* kConfigurationSetToDefault = "Configuration Set to Default";

// The defaults, then "Configuration Set to Default".
void FileNew(Station& st);
// "Open SetUp File": the chosen file becomes the setup file and is loaded; a file that
// cannot be loaded leaves the defaults and its error is shown. False when cancelled or
// not loaded.
bool FileLoad(Station& st);
// "Save SetUp File": saves under the chosen name, which becomes the setup file and counts
// as saved. A file that cannot be written is a fault for the general error report. False
// when cancelled.
bool FileSave(Station& st);
bool FileSaveAs(Station& st);

}  // namespace kova::app
