#include "core/working_folder.h"

#include <system_error>

#include "core/configuration.h"

namespace kova {

WorkingFolderChoice ChooseWorkingFolder(const std::optional<std::filesystem::path>& named,
                                        const std::filesystem::path& current,
                                        const std::filesystem::path& documents) {
    if (named) return {std::filesystem::absolute(*named), false};
    std::error_code ec;
    if (std::filesystem::is_regular_file(current / kDefaultSetupFile, ec)) return {current, false};
    return {documents / kDocumentsFolderName, true};
}

std::string PrepareDocumentsFolder(const std::filesystem::path& folder,
                                   const std::filesystem::path& demoSetup) {
    std::error_code ec;
    if (std::filesystem::is_directory(folder, ec)) return "";
    if (!std::filesystem::create_directories(folder, ec) || ec)
        return folder.string() + ": cannot make the working folder: " + ec.message();
    if (!std::filesystem::is_regular_file(demoSetup, ec))
        return demoSetup.string() + ": the demonstration configuration is missing";
    std::filesystem::copy_file(demoSetup, folder / kDefaultSetupFile, ec);
    if (ec)
        return (folder / kDefaultSetupFile).string() +
               ": cannot copy the demonstration configuration: " + ec.message();
    return "";
}

std::string FolderForDisplay(const std::filesystem::path& folder, const std::string& home) {
    std::string text = folder.lexically_normal().generic_string();
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    if (home.empty() || home == "/") return text;
    std::string root = std::filesystem::path(home).lexically_normal().generic_string();
    while (root.size() > 1 && root.back() == '/') root.pop_back();
    if (text == root) return "~";
    if (text.size() > root.size() && text.compare(0, root.size(), root) == 0 &&
        text[root.size()] == '/')
        return std::string("~").append(text, root.size());
    return text;
}

}  // namespace kova
