#pragma once
// How the engine's models talk to the user: message boxes, questions, input boxes, file
// choice. The Qt program implements it with dialogs; tests script it.
#include <optional>
#include <string>

namespace kova {

// The button of a Yes/No question that Enter presses. A question whose Yes throws work
// away defaults to No, so that a user who presses Enter out of habit loses nothing.
enum class DefaultAnswer { Yes, No };

// The answers to "Save changes to NAME?".
enum class SaveChoice { Save, Discard, Cancel };

class Prompter {
  public:
    virtual ~Prompter() = default;
    // A plain message box with an OK button.
    virtual void message(const std::string& text, const std::string& title) = 0;
    // A Yes/No question; true for Yes. `enter` is the default button.
    virtual bool askYesNo(const std::string& text, const std::string& title,
                          DefaultAnswer enter) = 0;
    // A question with Save, Discard and Cancel buttons, Save the default; closing the box
    // any other way is Cancel.
    virtual SaveChoice askSaveDiscardCancel(const std::string& text, const std::string& title) = 0;
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

    // The window the boxes belong to: they open over it and give the keyboard back to it.
    // The token is the front end's own handle of the window, opaque here; nullptr means
    // the program's main window. Set it with PromptOwner.
    const void* owner() const { return owner_; }
    void setOwner(const void* owner) { owner_ = owner; }

  private:
    const void* owner_ = nullptr;
};

// While it lives, the boxes of `prompter` belong to `owner`; then to the window before.
class PromptOwner {
  public:
    PromptOwner(Prompter& prompter, const void* owner)
        : prompter_(prompter), before_(prompter.owner()) {
        prompter_.setOwner(owner);
    }
    ~PromptOwner() { prompter_.setOwner(before_); }
    PromptOwner(const PromptOwner&) = delete;
    PromptOwner& operator=(const PromptOwner&) = delete;

  private:
    Prompter& prompter_;
    const void* before_;
};

// The application's title, used where a message has no title of its own.
inline constexpr const char* kAppTitle = "KOVA";

}  // namespace kova
