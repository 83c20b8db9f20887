#include "support/comma_locale.h"

#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kova::test {

namespace {
namespace fs = std::filesystem;

bool usable(const fs::path& folder) {
    std::error_code ec;
    return fs::exists(folder / kCommaLocale / "LC_NUMERIC", ec);
}
}  // namespace

bool PrepareCommaLocale(std::string& why) {
    const fs::path folder =
        fs::temp_directory_path() / ("kova-test-locales-" + std::to_string(getuid()));
    if (!usable(folder)) {
        // Made beside the final folder and renamed into place, so two test programs
        // starting at once never see half a locale.
        const fs::path work = folder.string() + "." + std::to_string(getpid());
        std::error_code ec;
        fs::create_directories(work, ec);
        const std::string command =
            "localedef -i de_DE -f UTF-8 '" + (work / kCommaLocale).string() + "' >/dev/null 2>&1";
        const int rc = std::system(command.c_str());
        if (!usable(work)) {
            fs::remove_all(work, ec);
            why = "cannot make the " + std::string(kCommaLocale) +
                  " locale with localedef (exit status " + std::to_string(rc) + ")";
            return false;
        }
        fs::rename(work, folder, ec);
        if (ec) fs::remove_all(work, ec);  // another program put it there first
        if (!usable(folder)) {
            why = "the locale folder " + folder.string() + " is not usable";
            return false;
        }
    }
    setenv("LOCPATH", folder.c_str(), 1);
    return true;
}

}  // namespace kova::test
