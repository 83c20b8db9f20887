#include "control/evaluator.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

#include "control/compiler.h"
#include "control_rig.h"
#include "core/fault.h"

namespace kova {

using test::kA;
using test::kAo1;
using test::kAo2;
using test::kB;
using test::kDi1;
using test::kDo1;
using test::kFlag;
using test::kPump;
using test::kTank;
using test::kX;

namespace {
// Compiles an assignment text and executes it.
std::int16_t run(test::Rig& r, const std::string& text) {
    std::string code;
    std::string token;
    const std::int16_t c = CompileAssignment(r.st, text, code, token);
    EXPECT_EQ(c, 1) << text;
    return ExecuteAssignment(r.st, code);
}

std::int16_t evalIf(test::Rig& r, const std::string& text) {
    std::string code;
    std::string token;
    EXPECT_EQ(CompileIf(r.st, text, code, token), 1) << text;
    return EvaluateIf(r.st, code);
}
}  // namespace

TEST(EvaluateIf, EmptyIfIsAlwaysTrue) {
    test::Rig r;
    EXPECT_EQ(EvaluateIf(r.st, ","), 1);
}

TEST(EvaluateIf, ComparisonsAreExact) {
    test::Rig r;
    r.set(kA, 80);
    EXPECT_EQ(evalIf(r, "@A>80"), 0);
    EXPECT_EQ(evalIf(r, "@A>=80"), 1);
    EXPECT_EQ(evalIf(r, "@A=80"), 1);
    EXPECT_EQ(evalIf(r, "@A<>80"), 0);
    EXPECT_EQ(evalIf(r, "@A<80"), 0);
    EXPECT_EQ(evalIf(r, "@A<=80"), 1);
    EXPECT_EQ(evalIf(r, "@A=80.0001"), 0);
    r.set(kA, 0.1f);  // single precision 0.1 is not the decimal 0.1
    EXPECT_EQ(evalIf(r, "@A=0.1"), 0);
    EXPECT_EQ(evalIf(r, "@A>0.1"), 1);
}

TEST(EvaluateIf, AndOrAreTrueOnlyForExactlyOne) {
    test::Rig r;
    r.set(kA, 2);
    r.set(kB, 1);
    EXPECT_EQ(evalIf(r, "@A&@B"), 0);  // 2 is not true
    EXPECT_EQ(evalIf(r, "@A|0"), 0);
    EXPECT_EQ(evalIf(r, "@B|0"), 1);
    EXPECT_EQ(evalIf(r, "@B&1"), 1);
    EXPECT_EQ(evalIf(r, "1&0"), 0);
    EXPECT_EQ(evalIf(r, "0|0"), 0);
    EXPECT_EQ(evalIf(r, "@A>1&@B<2"), 1);
}

TEST(EvaluateIf, AValueThatIsNotATruthValueGivesMinusOne) {
    test::Rig r;
    r.set(kTank, 55);
    EXPECT_EQ(evalIf(r, "@TANK1"), -1);
    EXPECT_EQ(evalIf(r, "2"), -1);
    EXPECT_EQ(evalIf(r, "1"), 1);
    EXPECT_EQ(evalIf(r, "0"), 0);
    EXPECT_EQ(evalIf(r, "(1)"), 1);
    // A bare reference is not a number, whatever the tag holds.
    r.set(kTank, 1);
    EXPECT_EQ(evalIf(r, "@TANK1"), -1);
}

TEST(EvaluateIf, MissingTagGivesMinusTwo) {
    test::Rig r;
    EXPECT_EQ(EvaluateIf(r.st, "@NOSUCH,1,>,"), -2);
    EXPECT_EQ(EvaluateIf(r.st, "@A,1,>,@NOSUCH,1,<,|,"), -2);
    // A tag renamed after the code was compiled is missing too.
    std::string code;
    std::string token;
    ASSERT_EQ(CompileIf(r.st, "@A>1", code, token), 1);
    r.st.tags[kA].TagName = "ALPHA";
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    EXPECT_EQ(EvaluateIf(r.st, code), -2);
}

TEST(EvaluateIf, SystemVariablesAreRead) {
    test::Rig r;
    r.st.tags[kTagHR].Value = 7;
    r.st.tags[kTagSU].Value = 0;
    EXPECT_EQ(evalIf(r, "@HR=7&@SU=0"), 1);
}

TEST(EvaluateIf, CodesTheCompilerNeverWritesGiveMinusOne) {
    test::Rig r;
    EXPECT_EQ(EvaluateIf(r.st, ""), -1);
    EXPECT_EQ(EvaluateIf(r.st, ">,"), -1);
    EXPECT_EQ(EvaluateIf(r.st, "1,>,"), -1);
    EXPECT_EQ(EvaluateIf(r.st, "1,1,"), -1);
    EXPECT_EQ(EvaluateIf(r.st, std::string(400, '9') + ","), -1);
    std::string longCode;
    for (int i = 0; i < 31; ++i) longCode += "1,";
    EXPECT_EQ(EvaluateIf(r.st, longCode), -1);
    std::string huge;
    for (int i = 0; i < 100000; ++i) huge += "1,1,=,";
    EXPECT_EQ(EvaluateIf(r.st, huge), -1);
    // The first empty entry ends the list.
    EXPECT_EQ(EvaluateIf(r.st, "1,,garbage,"), 1);
}

TEST(ExecuteAssignment, StoresTheValueInSinglePrecision) {
    test::Rig r;
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,0.1,"), 1);
    EXPECT_EQ(r.value(kX), 0.1f);
    r.set(kA, 3);
    r.set(kB, 4);
    EXPECT_EQ(run(r, "@X = SQR(@A*@A+@B*@B)"), 1);
    EXPECT_EQ(r.value(kX), 5.0f);
}

TEST(ExecuteAssignment, TheDummyOperandOfAFunctionIsIgnored) {
    test::Rig r;
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,1,0,SIN,"), 1);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,5,0,COS,"), 1);
    EXPECT_EQ(r.value(kX), 1.0f);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,@NOSUCH,0,EXP,"), 1);
    EXPECT_EQ(r.value(kX), 1.0f);
}

TEST(ExecuteAssignment, EveryFunction) {
    test::Rig r;
    r.set(kA, 0.5f);
    const double a = 0.5;
    const struct {
        const char* fn;
        double expected;
    } cases[] = {{"SIN", std::sin(a)},  {"COS", std::cos(a)}, {"TAN", std::tan(a)},
                 {"ATN", std::atan(a)}, {"LOG", std::log(a)}, {"ABS", std::fabs(a)},
                 {"EXP", std::exp(a)},  {"SQR", std::sqrt(a)}};
    for (const auto& c : cases) {
        EXPECT_EQ(run(r, std::string("@X = ") + c.fn + "(@A)"), 1) << c.fn;
        EXPECT_EQ(r.value(kX), static_cast<float>(c.expected)) << c.fn;
    }
    r.set(kA, -2.5f);
    EXPECT_EQ(run(r, "@X = ABS(@A)"), 1);
    EXPECT_EQ(r.value(kX), 2.5f);
    EXPECT_EQ(run(r, "@X = 2^10"), 1);
    EXPECT_EQ(r.value(kX), 1024.0f);
}

TEST(ExecuteAssignment, DivisionByZeroAndLogOfZeroGiveZero) {
    test::Rig r;
    r.set(kX, 9);
    EXPECT_EQ(run(r, "@X = 5/0"), 1);
    EXPECT_EQ(r.value(kX), 0.0f);
    r.set(kX, 9);
    EXPECT_EQ(run(r, "@X = LOG(0)"), 1);
    EXPECT_EQ(r.value(kX), 0.0f);
    r.set(kX, 9);
    EXPECT_EQ(run(r, "@X = 1 + 5/(@A-@A)"), 1);
    EXPECT_EQ(r.value(kX), 1.0f);
}

TEST(ExecuteAssignment, NoRealResultFailsAndStoresNothing) {
    test::Rig r;
    r.set(kA, -4);
    r.set(kX, 9);
    EXPECT_EQ(run(r, "@X = SQR(@A)"), -1);
    EXPECT_EQ(run(r, "@X = LOG(@A)"), -1);
    EXPECT_EQ(run(r, "@X = @A^0.5"), -1);
    EXPECT_EQ(run(r, "@X = 0^(0-1)"), -1);
    EXPECT_EQ(r.value(kX), 9.0f);
    EXPECT_EQ(run(r, "@X = @A^2"), 1);  // a negative base with a whole power is fine
    EXPECT_EQ(r.value(kX), 16.0f);
}

TEST(ExecuteAssignment, OverflowFailsAndStoresNothing) {
    test::Rig r;
    r.set(kX, 9);
    EXPECT_EQ(run(r, "@X = 10^39"), -1);      // beyond single precision
    EXPECT_EQ(run(r, "@X = EXP(1000)"), -1);  // beyond double precision
    EXPECT_EQ(run(r, "@X = 10^300*10^300/10^300"), -1);
    EXPECT_EQ(r.value(kX), 9.0f);
    EXPECT_EQ(run(r, "@X = 10^38"), 1);
    EXPECT_EQ(r.value(kX), 1e38f);
    EXPECT_EQ(run(r, "@X = 10^60/10^50"), 1);  // intermediate values may exceed single precision
    EXPECT_EQ(r.value(kX), 1e10f);
}

TEST(ExecuteAssignment, MissingTagsFail) {
    test::Rig r;
    r.set(kX, 9);
    EXPECT_EQ(ExecuteAssignment(r.st, "@NOSUCH,1,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,@NOSUCH,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,@NOSUCH,1,+,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,1,@NOSUCH,SIN,"), -1);
    EXPECT_EQ(r.value(kX), 9.0f);
}

TEST(ExecuteAssignment, CopiesATagValue) {
    test::Rig r;
    r.set(kA, 42.5f);
    EXPECT_EQ(run(r, "@X = @A"), 1);
    EXPECT_EQ(r.value(kX), 42.5f);
    r.st.tags[kTagTS].Value = 3600;
    EXPECT_EQ(run(r, "@X = @TS/60"), 1);
    EXPECT_EQ(r.value(kX), 60.0f);
}

TEST(ExecuteAssignment, CodesTheCompilerNeverWritesFail) {
    test::Rig r;
    EXPECT_EQ(ExecuteAssignment(r.st, ""), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,+,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,1,2,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "@X,1,SIN,"), -1);
    EXPECT_EQ(ExecuteAssignment(r.st, "X,1,"), -1);  // the first character is skipped: name ""
}

TEST(SetTagValue, AnalogVariableTakesAnyValue) {
    test::Rig r;
    EXPECT_EQ(SetTagValue(r.st, "@A", -123.25), 1);
    EXPECT_EQ(r.value(kA), -123.25f);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(SetTagValue(r.st, "@NOSUCH", 1), -1);
    EXPECT_EQ(SetTagValue(r.st, "@A", std::nan("")), -1);
    EXPECT_EQ(SetTagValue(r.st, "@A", 1e39), -1);
    EXPECT_EQ(SetTagValue(r.st, "@A", static_cast<double>(FLT_MAX)), 1);
}

TEST(SetTagValue, AnalogOutputIsScaledClampedAndRoundedHalfToEven) {
    test::Rig r;  // AO2: slope 1, offset 0, module 0..4095
    auto raw = [&] { return r.st.daq.AnalogOutputValues[2]; };
    EXPECT_EQ(SetTagValue(r.st, "@AO2", 4095.6), 1);
    EXPECT_EQ(raw(), 4095);
    EXPECT_EQ(r.value(kAo2), 4095.6f);  // the value is kept as assigned
    EXPECT_EQ(SetTagValue(r.st, "@AO2", -3), 1);
    EXPECT_EQ(raw(), 0);
    EXPECT_EQ(SetTagValue(r.st, "@AO2", 2.5), 1);
    EXPECT_EQ(raw(), 2);
    EXPECT_EQ(SetTagValue(r.st, "@AO2", 3.5), 1);
    EXPECT_EQ(raw(), 4);
    EXPECT_EQ(SetTagValue(r.st, "@AO2", 1e6), 1);
    EXPECT_EQ(raw(), 4095);
    // AO1: 0..100 over 0..4095.
    EXPECT_EQ(SetTagValue(r.st, "@AO1", 100), 1);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 4095);
    EXPECT_EQ(SetTagValue(r.st, "@AO1", 25), 1);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 1024);  // 1023.75
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
}

TEST(SetTagValue, AnalogOutputRaisesItsFlagOnlyWhenTheSlotChanges) {
    test::Rig r;
    EXPECT_EQ(run(r, "@AO2 = 100"), 1);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, -1);
    r.st.daq.Summary.AnalogOutputsPending = 0;
    EXPECT_EQ(run(r, "@AO2 = 100"), 1);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(run(r, "@AO2 = 100.2"), 1);  // the same raw count
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(r.value(kAo2), 100.2f);
    EXPECT_EQ(run(r, "@AO2 = 101"), 1);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, -1);
}

TEST(SetTagValue, AnalogOutputWithAZeroSlopeIsARunTimeFault) {
    test::Rig r;
    r.st.tags[kAo2].Slope = 0;
    EXPECT_THROW(SetTagValue(r.st, "@AO2", 5), Fault);
}

TEST(SetTagValue, DigitalOutputTakesOnlyZeroOrOneAndSetsItsBitOnce) {
    test::Rig r;
    EXPECT_EQ(run(r, "@DO1 = 2"), -1);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(r.value(kDo1), 0.0f);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);

    EXPECT_EQ(run(r, "@DO1 = 1"), 1);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0001);
    EXPECT_EQ(r.value(kDo1), 1.0f);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
    r.st.daq.Summary.DigitalOutputsPending = 0;
    EXPECT_EQ(run(r, "@DO1 = 1"), 1);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);

    EXPECT_EQ(run(r, "@PUMP = 1"), 1);  // DO-3: bit 2
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0005);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
    r.st.daq.Summary.DigitalOutputsPending = 0;
    EXPECT_EQ(run(r, "@DO1 = 0"), 1);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0004);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
    r.st.daq.Summary.DigitalOutputsPending = 0;
    EXPECT_EQ(run(r, "@DO1 = 0"), 1);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
    EXPECT_EQ(run(r, "@PUMP = 0.5+0.5"), 1);  // computed values count when exactly 1
    EXPECT_EQ(SetTagValue(r.st, "@PUMP", 0.9999), -1);
}

TEST(SetTagValue, DigitalOutputSixteenIsTheSignBit) {
    test::Rig r;
    r.digital(11, "D16", "DO-16");
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    EXPECT_EQ(SetTagValue(r.st, "@D16", 1), 1);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x8000);
}

TEST(SetTagValue, DigitalChannelZeroUsesTheFirstBit) {
    test::Rig r;
    r.st.tags[kPump].IONumber = 0;
    EXPECT_EQ(SetTagValue(r.st, "@PUMP", 1), 1);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0001);
}

TEST(SetTagValue, AnalogInputAcceptsOnlyZeroOrOne) {
    test::Rig r;
    r.set(kTank, 55);
    EXPECT_EQ(run(r, "@TANK1 = 5"), -1);
    EXPECT_EQ(r.value(kTank), 55.0f);
    EXPECT_EQ(run(r, "@TANK1 = 1"), 1);
    EXPECT_EQ(r.value(kTank), 1.0f);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    // System variables are analog tags without a channel: the same rule.
    EXPECT_EQ(run(r, "@SU = 1"), 1);
    EXPECT_EQ(run(r, "@TS = 7"), -1);
}

TEST(SetTagValue, DigitalInputsAndVariablesTakeOnlyZeroOrOne) {
    test::Rig r;
    EXPECT_EQ(run(r, "@DI1 = 1"), 1);
    EXPECT_EQ(r.value(kDi1), 1.0f);
    EXPECT_EQ(run(r, "@FLAG = 3"), -1);
    EXPECT_EQ(run(r, "@FLAG = 1"), 1);
    EXPECT_EQ(r.value(kFlag), 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(GetTagValue, ReadsByTheNameAfterTheFirstCharacter) {
    test::Rig r;
    r.set(kB, 12.5f);
    bool error = false;
    EXPECT_EQ(GetTagValue(r.st, "@B", error), 12.5);
    EXPECT_FALSE(error);
    r.st.tags[kTagMN].Value = 59;
    EXPECT_EQ(GetTagValue(r.st, "@MN", error), 59.0);
    EXPECT_FALSE(error);
    EXPECT_EQ(GetTagValue(r.st, "@NOSUCH", error), 0.0);
    EXPECT_TRUE(error);
    error = false;
    EXPECT_EQ(GetTagValue(r.st, "", error), 0.0);
    EXPECT_TRUE(error);
}

}  // namespace kova
