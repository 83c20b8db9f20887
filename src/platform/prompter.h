#pragma once
// How the engine's models talk to the user: message boxes, questions, input boxes, file
// choice. The Qt program implements it with dialogs; tests script it.
#include <optional>
#include <string>

namespace kova {

class Prompter {
  public:
    virtual ~Prompter() = default;
    // A plain message box with an OK button.
    virtual void message(const std::string& text, const std::string& title) = 0;
    // A Yes/No question; true for Yes.
    virtual bool askYesNo(const std::string& text, const std::string& title) = 0;
    // An input box; nullopt when cancelled.
    virtual std::optional<std::string> input(const std::string& prompt,
                                             const std::string& title) = 0;
    // A file dialog. filter is in the "Description (*.EXT)|*.EXT|" form; save chooses a
    // save dialog. nullopt when cancelled.
    virtual std::optional<std::string> chooseFile(const std::string& title,
                                                  const std::string& filter,
                                                  const std::string& proposed, bool save) = 0;
    // An open dialog that also takes the name of a file that does not exist yet, such as a
    // log file that logging will make. Prompters without such a dialog use the open dialog.
    virtual std::optional<std::string> chooseFileToWrite(const std::string& title,
                                                         const std::string& filter,
                                                         const std::string& proposed) {
        return chooseFile(title, filter, proposed, false);
    }
};

// The application's title, used where a message has no title of its own.
inline constexpr const char* kAppTitle = "KOVA";

}  // namespace kova
