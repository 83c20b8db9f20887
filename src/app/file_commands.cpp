#include "app/file_commands.h"

#include "app/engine_link.h"

namespace kova::app {

void FileNew(Station& st) {
    NewConfiguration(st);
    st.platform.prompter->message(kConfigurationSetToDefault, kAppTitle);
}

bool FileLoad(Station& st) {
    const auto chosen = st.platform.prompter->chooseFile(kOpenSetupTitle, kOpenSetupFilter,
                                                         st.setupFileName, false);
    if (!chosen || chosen->empty()) return false;
    st.setupFileName = *chosen;
    const LoadOutcome outcome = LoadSetup(st, *chosen);
    if (!outcome.ok) {
        st.platform.prompter->message(outcome.error, kAppTitle);
        return false;
    }
    return true;
}

namespace {
bool saveUnderChosenName(Station& st) {
    const auto chosen =
        st.platform.prompter->chooseFile(kSaveSetupTitle, kSaveSetupFilter, st.setupFileName, true);
    if (!chosen || chosen->empty()) return false;
    SaveSetup(st, *chosen);
    st.setupFileName = *chosen;
    RememberConfigurationAsSaved(st);  // nothing left to ask about
    return true;
}
}  // namespace

bool FileSave(Station& st) {
    return saveUnderChosenName(st);
}

bool FileSaveAs(Station& st) {
    return saveUnderChosenName(st);
}

}  // namespace kova::app
