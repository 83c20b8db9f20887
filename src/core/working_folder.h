#pragma once
// The program's working folder: where "Default.Suf", "KOVA_P.CAL" and the log files live.
// A folder named on the command line wins; otherwise the current folder when it already
// holds a "Default.Suf" (someone who starts KOVA in a plant's folder works there, as
// KOVA always has); otherwise a "KOVA" folder in the user's documents, which a program
// started from the desktop menu uses and which is made on first start with the
// demonstration configuration in it.
#include <filesystem>
#include <optional>
#include <string>

namespace kova {

inline constexpr const char* kDocumentsFolderName = "KOVA";

struct WorkingFolderChoice {
    std::filesystem::path folder;
    bool inDocuments = false;  // the documents folder: made (and seeded) when missing
};

WorkingFolderChoice ChooseWorkingFolder(const std::optional<std::filesystem::path>& named,
                                        const std::filesystem::path& current,
                                        const std::filesystem::path& documents);

// Makes the documents folder when it is not there yet and copies the demonstration setup
// file into it as "Default.Suf" (nothing is copied into a folder that already exists: a
// user who deleted the demonstration keeps it deleted). Returns "" or what went wrong,
// naming the folder or file.
std::string PrepareDocumentsFolder(const std::filesystem::path& folder,
                                   const std::filesystem::path& demoSetup);

// A folder as a title shows it: under the home folder as "~/...".
std::string FolderForDisplay(const std::filesystem::path& folder, const std::string& home);

}  // namespace kova
