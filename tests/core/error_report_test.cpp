#include "core/error_report.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/fault.h"
#include "core/station.h"
#include "support/test_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::RecordingStatus status;
    std::ostringstream log;
    ErrorReport report{st.platform, log};
    Rig() {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
    }
};

void overflowTick() {
    throw Fault(FaultKind::Overflow, "Overflow: SecondTicks");
}
}  // namespace

TEST(ErrorReport, AFaultIsShownInABoxTheStatusBarAndTheErrorStream) {
    Rig r;
    EXPECT_FALSE(r.report.guard([] { throwBounds("DigitalInputs", 17, 1, 16); }));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].title, "KOVA");
    EXPECT_EQ(
        r.prompt.messages[0].text.rfind("Run-time error: Subscript out of range: DigitalInputs", 0),
        0u);
    ASSERT_EQ(r.status.texts.size(), 1u);
    EXPECT_EQ(r.status.texts[0], r.prompt.messages[0].text);
    EXPECT_NE(r.log.str().find("kova: run-time error: Subscript out of range"), std::string::npos);
}

TEST(ErrorReport, AGuardThatCompletesReportsNothing) {
    Rig r;
    int ran = 0;
    EXPECT_TRUE(r.report.guard([&] { ++ran; }));
    EXPECT_EQ(ran, 1);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_TRUE(r.status.texts.empty());
    EXPECT_EQ(r.log.str(), "");
}

TEST(ErrorReport, AnyStandardExceptionIsReportedToo) {
    Rig r;
    r.report.guard([] { throw std::out_of_range("vector index"); });
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Run-time error: vector index");
}

TEST(ErrorReport, WindowFaultsAreReportedEveryTime) {
    Rig r;
    r.report.guard(overflowTick);
    r.report.guard(overflowTick);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(ErrorReport, TheSameScanFaultOnEveryTickIsShownOnce) {
    Rig r;
    for (int i = 0; i < 5; ++i) EXPECT_FALSE(r.report.guardTick(overflowTick));
    EXPECT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.status.texts.size(), 1u);
    EXPECT_EQ(r.report.reportedCount(), 1);
}

TEST(ErrorReport, AScanFaultIsShownAgainAfterACleanTick) {
    Rig r;
    r.report.guardTick(overflowTick);
    r.report.guardTick(overflowTick);
    EXPECT_TRUE(r.report.guardTick([] {}));
    r.report.guardTick(overflowTick);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(ErrorReport, ADifferentScanFaultIsShownAtOnce) {
    Rig r;
    r.report.guardTick(overflowTick);
    r.report.guardTick([] { throwBounds("TrendSamples", 201, 1, 200); });
    r.report.guardTick(overflowTick);
    EXPECT_EQ(r.prompt.messages.size(), 3u);
}

TEST(ErrorReport, ATickThatFailsWhileItsMessageIsUpStaysQuiet) {
    // The message box runs the event loop, so the next tick can fail before it closes.
    Rig r;
    struct ReenteringPrompter final : Prompter {
        ErrorReport* report = nullptr;
        std::vector<std::string> messages;
        void message(const std::string& text, const std::string&) override {
            messages.push_back(text);
            if (messages.size() < 5) report->guardTick(overflowTick);
        }
        bool askYesNo(const std::string&, const std::string&, DefaultAnswer) override {
            return false;
        }
        SaveChoice askSaveDiscardCancel(const std::string&, const std::string&) override {
            return SaveChoice::Cancel;
        }
        std::optional<std::string> input(const std::string&, const std::string&) override {
            return {};
        }
        std::optional<std::string> chooseFile(const std::string&, const std::string&,
                                              const std::string&, bool) override {
            return {};
        }
    } reentering;
    reentering.report = &r.report;
    r.st.platform.prompter = &reentering;
    r.report.guardTick(overflowTick);
    EXPECT_EQ(reentering.messages.size(), 1u);
}

}  // namespace kova

namespace kova {

TEST(ErrorReport, AScanFaultsBoxCanBePostedWhileTheStatusBarIsWrittenAtOnce) {
    Rig r;
    std::vector<std::function<void()>> posted;
    r.report.setPost([&](std::function<void()> show) { posted.push_back(std::move(show)); });
    r.report.guardTick(overflowTick);
    r.report.guardTick(overflowTick);
    EXPECT_TRUE(r.prompt.messages.empty());
    ASSERT_EQ(r.status.texts.size(), 1u);
    EXPECT_EQ(r.status.texts[0], "Run-time error: Overflow: SecondTicks");
    ASSERT_EQ(posted.size(), 1u);  // the repeat was already decided against
    posted[0]();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"Run-time error: Overflow: SecondTicks", "KOVA"}));
}

TEST(ErrorReport, WindowFaultsAreShownAtOnceEvenWithAPost) {
    Rig r;
    int posts = 0;
    r.report.setPost([&](std::function<void()>) { ++posts; });
    r.report.guard(overflowTick);
    EXPECT_EQ(posts, 0);
    EXPECT_EQ(r.prompt.messages.size(), 1u);
}

}  // namespace kova
