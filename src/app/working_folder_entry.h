#pragma once
// The program's start in its working folder: the folder is chosen (core/working_folder.h),
// the documents folder made on first start, and the folder becomes the current folder, so
// that log files named without a folder land there too.
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

#include "app/command_line.h"

namespace kova::app {

// The working folder, now current. A named folder that cannot be entered gives nullopt and
// `problem`; a documents folder that cannot be made is told on `notes` and the program
// works in the current folder instead.
std::optional<std::filesystem::path> EnterWorkingFolder(const CommandLine& line,
                                                        const std::filesystem::path& documents,
                                                        const std::filesystem::path& demoSetup,
                                                        std::string& problem, std::ostream& notes);

}  // namespace kova::app
