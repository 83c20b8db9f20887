#pragma once
// Do-nothing seam implementations, used until the program or a test plugs in real ones.
#include "platform/beeper.h"
#include "platform/prompter.h"
#include "platform/scan_timer.h"
#include "platform/status_sink.h"

namespace kova {

class NullPrompter final : public Prompter {
  public:
    void message(const std::string&, const std::string&) override {}
    bool askYesNo(const std::string&, const std::string&, DefaultAnswer) override { return false; }
    // Nobody to ask: nothing is replaced.
    SaveChoice askSaveDiscardCancel(const std::string&, const std::string&) override {
        return SaveChoice::Cancel;
    }
    std::optional<std::string> input(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> chooseFile(const std::string&, const std::string&,
                                          const std::string&, bool) override {
        return std::nullopt;
    }
};

class NullStatusSink final : public StatusSink {
  public:
    void setStatusText(const std::string&) override {}
};

class NullScanTimer final : public ScanTimer {
  public:
    void setInterval(int) override {}
};

}  // namespace kova
