#include "app/program_data.h"

#include <QCoreApplication>

#include "kova_version.h"

namespace kova::app {

std::filesystem::path ProgramDataFolder() {
    const std::filesystem::path program = QCoreApplication::applicationDirPath().toStdString();
    return (program / kDataFolderFromProgram).lexically_normal();
}

std::filesystem::path HelpDocumentPath() {
    return ProgramDataFolder() / "help" / "kova.html";
}

std::filesystem::path DemoSetupPath() {
    return ProgramDataFolder() / "examples" / "Default.Suf";
}

}  // namespace kova::app
