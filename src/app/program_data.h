#pragma once
// Where the program finds its read-only files: the help and the demonstration
// configuration, in <prefix>/share/kova beside an installed program's bin folder, and in
// the same place relative to the program in the build tree.
#include <filesystem>

namespace kova::app {

// Needs the application object (it asks where the program is).
std::filesystem::path ProgramDataFolder();
std::filesystem::path HelpDocumentPath();  // help/kova.html
std::filesystem::path DemoSetupPath();     // examples/Default.Suf

}  // namespace kova::app
