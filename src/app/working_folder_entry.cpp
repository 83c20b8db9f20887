#include "app/working_folder_entry.h"

#include <system_error>

#include "core/working_folder.h"

namespace kova::app {

std::optional<std::filesystem::path> EnterWorkingFolder(const CommandLine& line,
                                                        const std::filesystem::path& documents,
                                                        const std::filesystem::path& demoSetup,
                                                        std::string& problem, std::ostream& notes) {
    std::error_code ec;
    const std::filesystem::path current = std::filesystem::current_path(ec);
    WorkingFolderChoice choice = ChooseWorkingFolder(line.folder, current, documents);
    if (choice.inDocuments) {
        const std::string note = PrepareDocumentsFolder(choice.folder, demoSetup);
        if (!note.empty()) notes << "kova: " << note << "\n";
        if (!std::filesystem::is_directory(choice.folder, ec)) {
            notes << "kova: working in " << current.string() << " instead\n";
            choice.folder = current;
        }
    }
    if (!std::filesystem::is_directory(choice.folder, ec)) {
        problem = choice.folder.string() + ": no such folder";
        return std::nullopt;
    }
    std::filesystem::current_path(choice.folder, ec);
    if (ec) {
        problem = choice.folder.string() + ": cannot work in this folder: " + ec.message();
        return std::nullopt;
    }
    return std::filesystem::current_path(ec);
}

}  // namespace kova::app
