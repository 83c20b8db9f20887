#pragma once
// Printing a text listing on the printer the user picks.
#include <string>

namespace kova {

class Printer {
  public:
    virtual ~Printer() = default;
    // Prints the text (lines separated by "\n") as one document; false when the user
    // cancelled or nothing could be printed.
    virtual bool printText(const std::string& documentName, const std::string& text) = 0;
};

class NullPrinter final : public Printer {
  public:
    bool printText(const std::string&, const std::string&) override { return false; }
};

}  // namespace kova
