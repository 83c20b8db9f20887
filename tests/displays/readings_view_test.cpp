// The "View Readings" model: drawing, refreshing, navigation and the operator's writes.
#include "displays/readings_view.h"

#include <gtest/gtest.h>

#include "screen_rig.h"

namespace kova {

namespace {
using test::ScreenRig;

ScreenRig& withValues(ScreenRig& r) {
    r.st.tags[test::kLevel].Value = 12.5f;
    r.st.tags[test::kValve].Value = -3.0f;
    r.st.tags[test::kSetpt].Value = 40.0f;
    r.st.tags[kTagTS].Value = 3600.0f;
    r.st.tags[test::kDoor].Value = 1.0f;
    r.st.tags[test::kPump].Value = 0.0f;
    return r;
}
}  // namespace

TEST(ViewReadings, OpensOnScreen1WithTheCaptionOfNumberAndTitle) {
    ScreenRig r;
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Screen, 1);
    EXPECT_EQ(f.Caption, "Screen 1     Plant");
    EXPECT_EQ(f.TxtScreen, "Plant");
}

TEST(ViewReadings, AnalogRowsShowPrefixLabelValueAndUnits) {
    ScreenRig r;
    withValues(r);
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Analog[0], (ReadingsAnalogRow{"I-Tank Level", " 12.5", "%"}));
    EXPECT_EQ(f.Analog[1], (ReadingsAnalogRow{"O-Valve Position", "-3", "%"}));
    EXPECT_EQ(f.Analog[2], (ReadingsAnalogRow{"V-Level Setpoint", " 40", "%"}));
    EXPECT_EQ(f.Analog[3], (ReadingsAnalogRow{"I-Time In Secs", " 3600", "Secs"}));
    EXPECT_EQ(f.Analog[9], (ReadingsAnalogRow{}));
}

TEST(ViewReadings, ValuesUseTheNumberToTextOfSevenDigits) {
    ScreenRig r;
    r.st.tags[test::kLevel].Value = 1.0f / 3.0f;
    r.st.tags[test::kValve].Value = 12345678.0f;
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Analog[0].TxtAn, " 0.3333333");
    EXPECT_EQ(f.Analog[1].TxtAn, " 1.234568E+07");
}

TEST(ViewReadings, DigitalRowsShowPrefixLabelStateTextAndTickBox) {
    ScreenRig r;
    withValues(r);
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Digital[0], (ReadingsDigitalRow{"I-Door Switch", "CLOSED", true}));
    EXPECT_EQ(f.Digital[1], (ReadingsDigitalRow{"O-Feed Pump", "OFF", false}));
    EXPECT_EQ(f.Digital[3], (ReadingsDigitalRow{"V-Alarm Lamp", "DARK", false}));
    EXPECT_EQ(f.Digital[4], (ReadingsDigitalRow{}));
}

TEST(ViewReadings, AnyNonZeroDigitalValueShowsTheSecondText) {
    ScreenRig r;
    r.st.tags[test::kLamp].Value = -1.0f;
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Digital[3].TxtDig, "LIT");
    EXPECT_TRUE(f.Digital[3].ChkDig);
}

TEST(ViewReadings, ALineWithATagNumberOutOfRangeIsShownEmpty) {
    ScreenRig r;
    r.st.screens.Lines(1, 6) = ScreenLine{"GHOST", 43, 0};
    r.st.screens.Lines(1, 15) = ScreenLine{"GHOST", -4, 0};
    const ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Analog[5], (ReadingsAnalogRow{}));
    EXPECT_EQ(f.Digital[4], (ReadingsDigitalRow{}));
}

TEST(ViewReadings, LoggingDataIsTickedOnlyWhileLoggingIsOnAndRecording) {
    ScreenRig r;
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.st.logRun.LogState = 0;
    ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_FALSE(f.VOptLog);
    r.st.logRun.LogState = 1;
    ReadTimerTick(r.st, f);
    EXPECT_TRUE(f.VOptLog);
    r.st.switches.LoggingEnabled = Variant::integer(0);
    ReadTimerTick(r.st, f);
    EXPECT_FALSE(f.VOptLog);
    r.st.switches.LoggingEnabled = Variant::integer(1);
    DrawScreen(r.st, f);
    EXPECT_TRUE(f.VOptLog);
}

TEST(ViewReadings, TheTimerTickShowsNewValues) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_EQ(f.Analog[0].TxtAn, " 0");
    r.st.tags[test::kLevel].Value = 55.25f;
    r.st.tags[test::kDoor].Value = 1;
    ReadTimerTick(r.st, f);
    EXPECT_EQ(f.Analog[0].TxtAn, " 55.25");
    EXPECT_EQ(f.Digital[0].TxtDig, "CLOSED");
    EXPECT_TRUE(f.Digital[0].ChkDig);
}

TEST(ViewReadings, TheRefreshSkipsTheLineBeingTypedIn) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 2);
    EXPECT_EQ(r.st.screens.Lines(1, 3).Editing, -1);
    f.Analog[2].TxtAn = "7";  // what the operator has typed so far
    r.st.tags[test::kSetpt].Value = 99;
    r.st.tags[test::kLevel].Value = 5;
    RefreshScreen(r.st, f);
    EXPECT_EQ(f.Analog[2].TxtAn, "7");
    EXPECT_EQ(f.Analog[0].TxtAn, " 5");
}

TEST(ViewReadings, DrawingAScreenClearsEveryEditingFlag) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 0);
    r.st.screens.Lines(1, 17).Editing = -1;
    DrawScreen(r.st, f);
    for (int line = 1; line <= 20; ++line) EXPECT_EQ(r.st.screens.Lines(1, line).Editing, 0);
}

TEST(ViewReadings, NextAndPreviousWrapWithoutSaving) {
    ScreenRig r;
    r.st.screens.Headers[10].Title = "Last";
    ReadingsViewForm f = OpenReadingsView(r.st);
    PrevReadingsScreen(r.st, f);
    EXPECT_EQ(f.Screen, 10);
    EXPECT_EQ(f.Caption, "Screen 10     Last");
    NextReadingsScreen(r.st, f);
    EXPECT_EQ(f.Screen, 1);
    NextReadingsScreen(r.st, f);
    EXPECT_EQ(f.Screen, 2);
    EXPECT_EQ(f.Caption, "Screen 2     ");
    EXPECT_EQ(f.Analog[0], (ReadingsAnalogRow{}));
}

TEST(ViewReadings, JumpToGoesToTheScreensTarget) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    JumpReadingsScreen(r.st, f);
    EXPECT_EQ(f.Screen, 3);
    EXPECT_EQ(f.Caption, "Screen 3     ");
}

TEST(ViewReadings, JumpToDoesNothingWithoutATargetOrOutside1To10) {
    for (std::int16_t target : {0, 11, -1}) {
        ScreenRig r;
        r.st.screens.Headers[1].JumpTo = target;
        ReadingsViewForm f = OpenReadingsView(r.st);
        JumpReadingsScreen(r.st, f);
        EXPECT_EQ(f.Screen, 1) << target;
        EXPECT_EQ(r.st.screens.Headers[1].JumpTo, target);
    }
}

TEST(ViewReadings, AnalogVariableTakesTheTypedValue) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 2);
    AnalogValueLeft(r.st, f, 2, "42.5");
    EXPECT_EQ(r.st.tags[test::kSetpt].Value, 42.5f);
    EXPECT_EQ(r.st.screens.Lines(1, 3).Editing, 0);
    EXPECT_EQ(f.Analog[2].TxtAn, " 42.5");
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
}

TEST(ViewReadings, AnalogOutputTakesTheValueAndItsRawCountIsPending) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 1);
    AnalogValueLeft(r.st, f, 1, "25");
    EXPECT_EQ(r.st.tags[test::kValve].Value, 25.0f);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 1000);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, -1);
}

TEST(ViewReadings, TextThatIsNoNumberIsIgnoredAndTheValueShownAgain) {
    for (const char* text : {"abc", "", "12abc", "1e999"}) {
        ScreenRig r;
        r.st.tags[test::kValve].Value = 10;
        r.st.daq.AnalogOutputValues[1] = 400;
        ReadingsViewForm f = OpenReadingsView(r.st);
        AnalogValueFocused(r.st, f, 1);
        AnalogValueLeft(r.st, f, 1, text);
        EXPECT_EQ(r.st.tags[test::kValve].Value, 10.0f) << text;
        EXPECT_EQ(f.Analog[1].TxtAn, " 10") << text;
        EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 400) << text;
        EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0) << text;
        EXPECT_EQ(r.st.screens.Lines(1, 2).Editing, 0) << text;
    }
}

TEST(ViewReadings, AnInputIsNotWrittenAndItsTextGoesAtTheNextRefresh) {
    ScreenRig r;
    r.st.tags[test::kLevel].Value = 20;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 0);
    AnalogValueLeft(r.st, f, 0, "77");
    EXPECT_EQ(r.st.tags[test::kLevel].Value, 20.0f);
    EXPECT_EQ(f.Analog[0].TxtAn, "77");
    RefreshScreen(r.st, f);
    EXPECT_EQ(f.Analog[0].TxtAn, " 20");
}

TEST(ViewReadings, AnEmptyLineTakesNoValue) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 8);
    AnalogValueLeft(r.st, f, 8, "5");
    EXPECT_EQ(r.st.screens.Lines(1, 9).Editing, 0);
    RefreshScreen(r.st, f);
    EXPECT_EQ(f.Analog[8].TxtAn, "");
}

TEST(ViewReadings, TickingADigitalOutputSetsItsBitAndMarksItPending) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    DigitalBoxChanged(r.st, f, 2, true);  // HEATER, DO-3
    EXPECT_EQ(r.st.tags[test::kHeater].Value, 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x04);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
    ReadTimerTick(r.st, f);
    EXPECT_EQ(f.Digital[2].TxtDig, "HOT");
}

TEST(ViewReadings, TickingADigitalVariableSetsOnlyItsValue) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    DigitalBoxChanged(r.st, f, 3, true);
    EXPECT_EQ(r.st.tags[test::kLamp].Value, 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(ViewReadings, ADigitalInputIsLeftAloneAndTheRefreshPutsTheBoxBack) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    DigitalBoxChanged(r.st, f, 0, true);
    EXPECT_EQ(r.st.tags[test::kDoor].Value, 0.0f);
    EXPECT_TRUE(f.Digital[0].ChkDig);
    RefreshScreen(r.st, f);
    EXPECT_FALSE(f.Digital[0].ChkDig);
    EXPECT_EQ(f.Digital[0].TxtDig, "OPEN");
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(ViewReadings, WhenTheScanChangesAnOutputTheRefreshRewritesItAndSendsItOnce) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    // A control statement switched the pump on and its pass already sent the word.
    r.st.tags[test::kPump].Value = 1;
    r.st.daq.DigitalOutputImage = 0x01;
    r.st.daq.Summary.DigitalOutputsPending = 0;
    RefreshScreen(r.st, f);
    EXPECT_TRUE(f.Digital[1].ChkDig);
    EXPECT_EQ(r.st.tags[test::kPump].Value, 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x01);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
    // The tick sends it once; the next refresh changes no box and sends nothing.
    ReadTimerTick(r.st, f);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
    RefreshScreen(r.st, f);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

}  // namespace kova
