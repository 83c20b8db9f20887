// Commands from the links: queued by a link's thread, applied on the scan's thread with the
// readings screens' operator-write rules, one result line each naming the source.
#include "links/command_inbox.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/station.h"
#include "displays/screen_rig.h"

namespace kova::links {

namespace {

using test::ScreenRig;

LinkCommand writeOf(const std::string& tag, const std::string& value) {
    return {LinkCommand::Kind::Write, "web user ann from 127.0.0.1", tag, value};
}

CommandResult apply(ScreenRig& r, const LinkCommand& c) {
    return ApplyLinkCommand(r.st, c);
}

}  // namespace

TEST(LinkCommands, AVariableOnAReadingsScreenTakesTheNumberAndTheLineNamesTheUser) {
    ScreenRig r;
    const CommandResult res = apply(r, writeOf(" setpt ", "12.5"));
    EXPECT_TRUE(res.accepted);
    EXPECT_EQ(res.line, "web user ann from 127.0.0.1: SETPT set to 12.5");
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 12.5f);
}

TEST(LinkCommands, AnAnalogOutputIsClampedToTheRawRangeAsOnTheScreen) {
    ScreenRig r;
    EXPECT_TRUE(apply(r, writeOf("VALVE", "250")).accepted);
    EXPECT_EQ(r.st.tags[test::kValve].Value, 250.0f);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 4095);
}

TEST(LinkCommands, ADigitalOutputTakesZeroOrOneAndSetsItsBit) {
    ScreenRig r;
    EXPECT_TRUE(apply(r, writeOf("PUMP", "1")).accepted);
    EXPECT_EQ(r.st.tags[test::kPump].Value, 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage & 1u, 1u);
    const CommandResult two = apply(r, writeOf("PUMP", "2"));
    EXPECT_FALSE(two.accepted);
    EXPECT_EQ(two.line, "web user ann from 127.0.0.1: refused: PUMP is digital and takes 0 or 1");
    EXPECT_EQ(r.st.tags[test::kPump].Value, 1.0f);
}

TEST(LinkCommands, InputsUnknownTagsAndTagsOnNoScreenAreRefusedAndNothingChanges) {
    ScreenRig r;
    r.st.tags[test::kLevel].Value = 3;
    EXPECT_EQ(apply(r, writeOf("LEVEL", "9")).line,
              "web user ann from 127.0.0.1: refused: LEVEL is an input");
    EXPECT_EQ(r.st.tags[test::kLevel].Value, 3.0f);
    EXPECT_EQ(apply(r, writeOf("NOSUCH", "9")).line,
              "web user ann from 127.0.0.1: refused: there is no tag NOSUCH");
    r.put(1, 3, 0);  // SETPT off its screen
    EXPECT_EQ(apply(r, writeOf("SETPT", "9")).line,
              "web user ann from 127.0.0.1: refused: SETPT is on no readings screen");
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 0.0f);
}

TEST(LinkCommands, TextThatIsNoNumberOrTooBigIsRefused) {
    ScreenRig r;
    EXPECT_EQ(apply(r, writeOf("SETPT", "12abc")).line,
              "web user ann from 127.0.0.1: refused: \"12abc\" is not a number");
    EXPECT_EQ(apply(r, writeOf("SETPT", "1e39")).line,
              "web user ann from 127.0.0.1: refused: 1e39 is out of range for SETPT");
    EXPECT_FALSE(apply(r, writeOf("SETPT", std::string(65, '1'))).accepted);
    EXPECT_FALSE(apply(r, writeOf(std::string(65, 'A'), "1")).accepted);
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 0.0f);
}

TEST(LinkCommands, ControlCharactersFromOutsideArePrintedEscaped) {
    ScreenRig r;
    const CommandResult res = apply(r, writeOf("BAD\nNAME\x1b[2J", "1"));
    EXPECT_EQ(res.line,
              "web user ann from 127.0.0.1: refused: there is no tag BAD\\x0ANAME\\x1B[2J");
}

TEST(LinkCommands, AcknowledgeAndResetDoWhatTheWindowsButtonsDo) {
    ScreenRig r;
    r.st.alarms.Alarms[1].TagNo = 1;
    r.st.alarms.Alarms[1].State = 1;
    r.st.alarms.Alarms[1].LastText = "ALARM 11-15-2026 14:05:09 High";
    const CommandResult ack =
        apply(r, {LinkCommand::Kind::AcknowledgeAlarms, "web user ann", {}, {}});
    EXPECT_EQ(ack.line, "web user ann: alarms acknowledged");
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 3);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "ACKN  11-15-2026 14:05:09 High");
    r.st.tags[1].Value = 8;
    const CommandResult reset = apply(r, {LinkCommand::Kind::ResetMinMax, "web user ann", {}, {}});
    EXPECT_EQ(reset.line, "web user ann: min/max reset");
    EXPECT_EQ(r.st.minMax.TagMaximum[1], 8.0f);
    EXPECT_EQ(r.st.minMax.TagMinimum[1], 8.0f);
}

TEST(PrintableText, EscapesControlsAndBrokenUtf8AndCutsLongText) {
    EXPECT_EQ(PrintableText("a\tb"), "a\\x09b");
    EXPECT_EQ(PrintableText("\xC2\xB0"
                            "C"),
              "\xC2\xB0"
              "C");  // a whole sequence passes
    EXPECT_EQ(PrintableText("x\xFFy"), "x\\xFFy");
    EXPECT_EQ(PrintableText("\xE2\x82"), "\\xE2\\x82");  // cut short
    EXPECT_EQ(PrintableText(std::string(100, 'z'), 10), std::string(10, 'z') + "...");
}

TEST(CommandInbox, CommandsWaitForTheScanAndAreAnsweredInOrder) {
    ScreenRig r;
    CommandInbox inbox;
    auto first = inbox.submit(writeOf("SETPT", "1"));
    auto second = inbox.submit(writeOf("SETPT", "2"));
    EXPECT_EQ(first.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 0.0f);  // nothing before the scan drains
    std::vector<std::string> lines;
    EXPECT_EQ(inbox.drain(r.st, [&](const CommandResult& c) { lines.push_back(c.line); }), 2u);
    EXPECT_EQ(first.get().line, "web user ann from 127.0.0.1: SETPT set to 1");
    EXPECT_EQ(second.get().line, "web user ann from 127.0.0.1: SETPT set to 2");
    EXPECT_EQ(lines.size(), 2u);
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 2.0f);
}

TEST(CommandInbox, AFullInboxRefusesAtOnceAndKeepsWhatItHas) {
    ScreenRig r;
    CommandInbox inbox(2);
    auto a = inbox.submit(writeOf("SETPT", "1"));
    auto b = inbox.submit(writeOf("SETPT", "2"));
    auto c = inbox.submit(writeOf("SETPT", "3"));
    ASSERT_EQ(c.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_EQ(c.get().line,
              "web user ann from 127.0.0.1: refused: too many commands waiting for the scan; "
              "try again");
    EXPECT_EQ(inbox.queued(), 2u);
    inbox.drain(r.st, {});
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 2.0f);
}

TEST(CommandInbox, ClosingAnswersWhatWaitsAndRefusesWhatComesLater) {
    ScreenRig r;
    CommandInbox inbox;
    auto waiting = inbox.submit(writeOf("SETPT", "1"));
    inbox.close();
    EXPECT_EQ(waiting.get().line, "web user ann from 127.0.0.1: refused: the station is stopping");
    EXPECT_FALSE(inbox.submit(writeOf("SETPT", "1")).get().accepted);
    EXPECT_EQ(inbox.drain(r.st, {}), 0u);
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 0.0f);
}

TEST(CommandInbox, ALinkThreadWaitingForItsResultGetsItFromTheScanThread) {
    ScreenRig r;
    CommandInbox inbox;
    CommandResult got;
    std::thread link([&] { got = inbox.submit(writeOf("LAMP", "1")).get(); });
    while (inbox.queued() == 0) std::this_thread::yield();
    inbox.drain(r.st, {});
    link.join();
    EXPECT_TRUE(got.accepted);
    EXPECT_EQ(r.st.tags[test::kLamp].Value, 1.0f);
}

}  // namespace kova::links
