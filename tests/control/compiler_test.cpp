#include "control/compiler.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "control_rig.h"

namespace kova {

namespace {

struct Compiled {
    std::int16_t result;
    std::string code;
    std::string token;
};

Compiled ifCode(const Station& st, const std::string& text) {
    Compiled c{};
    c.result = CompileIf(st, text, c.code, c.token);
    return c;
}

Compiled assignment(const Station& st, const std::string& text) {
    Compiled c{};
    c.result = CompileAssignment(st, text, c.code, c.token);
    return c;
}

// n operands joined by "+": 2n - 1 tokens.
std::string sumOf(int n) {
    std::string s = "1";
    for (int i = 1; i < n; ++i) s += "+1";
    return s;
}

}  // namespace

TEST(CompileIf, ComparisonsBindTighterThanLogic) {
    test::Rig r;
    const Compiled c = ifCode(r.st, "@A>1&@B<2");
    EXPECT_EQ(c.result, 1);
    EXPECT_EQ(c.code, "@A,1,>,@B,2,<,&,");
}

TEST(CompileIf, ATagReferenceKeepsItsAt) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@TANK1>50").code, "@TANK1,50,>,");
    EXPECT_EQ(ifCode(r.st, "@TANK1>1.").code, "@TANK1,1.,>,");
}

TEST(CompileIf, EmptyTextCompilesToAComma) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "").code, ",");
    EXPECT_EQ(ifCode(r.st, "").result, 1);
    EXPECT_EQ(ifCode(r.st, "   ").code, ",");
}

TEST(CompileIf, UnknownTagGivesMinusTwoWithTheReference) {
    test::Rig r;
    const Compiled c = ifCode(r.st, "@NOSUCH > 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "@NOSUCH");
    EXPECT_EQ(c.code, "");
}

TEST(CompileIf, TwoCharacterComparisonsAreSingleTokens) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@A<=1").code, "@A,1,<=,");
    EXPECT_EQ(ifCode(r.st, "@A>=1").code, "@A,1,>=,");
    EXPECT_EQ(ifCode(r.st, "@A<>1").code, "@A,1,<>,");
    // Only when the second character follows at once.
    EXPECT_EQ(ifCode(r.st, "@A< =1").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A> =1").result, -1);
}

TEST(CompileIf, UnbalancedParenthesesAreSyntaxErrors) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "(@A>1").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A>1)").result, -1);
    EXPECT_EQ(ifCode(r.st, "()").result, -1);
    EXPECT_EQ(ifCode(r.st, "(@A>1)&(@B<2)").code, "@A,1,>,@B,2,<,&,");
}

TEST(CompileIf, ParenthesesRegroup) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@A>1&(@B<2|@X=3)").code, "@A,1,>,@B,2,<,@X,3,=,|,&,");
    EXPECT_EQ(ifCode(r.st, "(@A>1&@B<2)|@X=3").code, "@A,1,>,@B,2,<,&,@X,3,=,|,");
}

TEST(CompileIf, BothLevelsGroupFromTheLeft) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@A>1|@B<2&@X=3").code, "@A,1,>,@B,2,<,|,@X,3,=,&,");
    EXPECT_EQ(ifCode(r.st, "@A=@B=1").code, "@A,@B,=,1,=,");
}

TEST(CompileIf, MissingOperandsAndOperatorsAreSyntaxErrors) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@A 1 >").result, -1);
    EXPECT_EQ(ifCode(r.st, "=<").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A >").result, -1);
    EXPECT_EQ(ifCode(r.st, "> 1").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A > > 1").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A (1)").result, -1);
    EXPECT_EQ(ifCode(r.st, "1 @A").result, -1);
}

TEST(CompileIf, UnknownCharactersAndWordsAreUnknownTokens) {
    test::Rig r;
    Compiled c = ifCode(r.st, "@A > 1 AND @B < 2");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "AND");
    c = ifCode(r.st, "@A + 1 > 2");  // arithmetic belongs to THEN and ELSE
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "+");
    c = ifCode(r.st, "SIN(@A) > 0");  // and so do functions
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "SIN");
    c = ifCode(r.st, "@A > 1 # 2");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "#");
    c = ifCode(r.st, "@A > \xC3\xA9");  // e acute: reported whole
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "\xC3\xA9");
    c = ifCode(r.st, "@ > 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "@");
}

TEST(CompileIf, TheFirstProblemFromTheLeftDecides) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "> @NOSUCH").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A > @NOSUCH >").result, -2);
}

TEST(CompileIf, SystemVariablesAreTags) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@SU=0").code, "@SU,0,=,");
    EXPECT_EQ(ifCode(r.st, "@TS>3600&@DW<>1").code, "@TS,3600,>,@DW,1,<>,&,");
}

TEST(CompileIf, NumbersKeepTheirTextAndMustBeWellFormed) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, "@A>.5").code, "@A,.5,>,");
    EXPECT_EQ(ifCode(r.st, "@A>007.50").code, "@A,007.50,>,");
    EXPECT_EQ(ifCode(r.st, "@A>1.2.3").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A>.").result, -1);
    EXPECT_EQ(ifCode(r.st, "@A>" + std::string(400, '9')).result, -1);  // beyond any double
}

TEST(CompileIf, BlanksBetweenTokensAreIgnored) {
    test::Rig r;
    EXPECT_EQ(ifCode(r.st, " @A  >\t1 & @B<2 ").code, ifCode(r.st, "@A>1&@B<2").code);
}

TEST(CompileIf, ThirtyTokensAtMost) {
    test::Rig r;
    // Postfix lists of binary operators have an odd length: 29 is the longest that fits.
    // Seven comparisons and a 1, joined by seven "&": 21 + 1 + 7 = 29 tokens.
    const Compiled ok = ifCode(r.st, "@A=1&@A=1&@A=1&@A=1&@A=1&@A=1&@A=1&1");
    EXPECT_EQ(ok.result, 1);
    EXPECT_EQ(std::count(ok.code.begin(), ok.code.end(), ','), 29);
    // Eight comparisons joined by seven "&": 24 + 7 = 31 tokens.
    EXPECT_EQ(ifCode(r.st, "@A=1&@A=1&@A=1&@A=1&@A=1&@A=1&@A=1&@A=1").result, -1);
}

TEST(CompileIf, OperatorStackHoldsThirtyEntriesWithItsBottom) {
    test::Rig r;
    // "#" and 29 open parentheses fill the stack.
    EXPECT_EQ(ifCode(r.st, std::string(29, '(') + "1" + std::string(29, ')')).code, "1,");
    EXPECT_EQ(ifCode(r.st, std::string(30, '(') + "1" + std::string(30, ')')).result, -1);
    // The operators inside the parentheses need room as well.
    EXPECT_EQ(ifCode(r.st, std::string(28, '(') + "@A>1" + std::string(28, ')')).code, "@A,1,>,");
    EXPECT_EQ(ifCode(r.st, std::string(29, '(') + "@A>1" + std::string(29, ')')).result, -1);
    // Far beyond the limits: still only -1.
    EXPECT_EQ(ifCode(r.st, std::string(5000, '(') + "1").result, -1);
    EXPECT_EQ(ifCode(r.st, sumOf(3000)).result, -2);  // "+" is no IF operator
}

TEST(CompileIf, ChangesNothing) {
    test::Rig r;
    r.set(test::kA, 7);
    const TagTable before = r.st.tags;
    std::string code;
    std::string token;
    CompileIf(r.st, "@A>1&@NOSUCH<2", code, token);
    EXPECT_EQ(r.st.tags, before);
}

TEST(CompileAssignment, FunctionGetsTheDummyOperandOne) {
    test::Rig r;
    const Compiled c = assignment(r.st, "@X = SIN(0)");
    EXPECT_EQ(c.result, 1);
    EXPECT_EQ(c.code, "@X,1,0,SIN,");
    EXPECT_EQ(assignment(r.st, "@X = SIN(@A)").code, "@X,1,@A,SIN,");
}

TEST(CompileAssignment, PrecedenceAndGrouping) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = 1-2-3").code, "@X,1,2,-,3,-,");
    EXPECT_EQ(assignment(r.st, "@X = 1-2*3").code, "@X,1,2,3,*,-,");
    EXPECT_EQ(assignment(r.st, "@X = 8/4/2").code, "@X,8,4,/,2,/,");
    EXPECT_EQ(assignment(r.st, "@X = 2*3+4").code, "@X,2,3,*,4,+,");
    EXPECT_EQ(assignment(r.st, "@X = (1+2)*3").code, "@X,1,2,+,3,*,");
    // "^" binds tighter than "*" and "/" and groups from the left.
    EXPECT_EQ(assignment(r.st, "@X = 2*3^2").code, "@X,2,3,2,^,*,");
    EXPECT_EQ(assignment(r.st, "@X = 2^3*2").code, "@X,2,3,^,2,*,");
    EXPECT_EQ(assignment(r.st, "@X = 2^3^2").code, "@X,2,3,^,2,^,");
    // A function applies to its parenthesised argument before any operator.
    EXPECT_EQ(assignment(r.st, "@X = SIN(@A)^2").code, "@X,1,@A,SIN,2,^,");
    EXPECT_EQ(assignment(r.st, "@X = 2^SQR(4)").code, "@X,2,1,4,SQR,^,");
    EXPECT_EQ(assignment(r.st, "@X = ABS(@A-@B)*2").code, "@X,1,@A,@B,-,ABS,2,*,");
    EXPECT_EQ(assignment(r.st, "@X = EXP(LOG(@A))").code, "@X,1,1,@A,LOG,EXP,");
    EXPECT_EQ(assignment(r.st, "@X = (SIN(1))").code, "@X,1,1,SIN,");
}

TEST(CompileAssignment, PlainValuesAndCopies) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@PUMP = 1").code, "@PUMP,1,");
    EXPECT_EQ(assignment(r.st, "@X=@A").code, "@X,@A,");
    EXPECT_EQ(assignment(r.st, "  @X   =   ( @A )  ").code, "@X,@A,");
}

TEST(CompileAssignment, LeadingMinusIsASyntaxError) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = -1").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 2*-1").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = (-@A)").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 0-1").code, "@X,0,1,-,");
}

TEST(CompileAssignment, MissingOperandsAndOperatorsAreSyntaxErrors) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = ").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 1 +").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 1 2").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = @A @B").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = (1)(2)").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 2(3)").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = * 2").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = ()").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = (1+)").result, -1);
}

TEST(CompileAssignment, AFunctionNeedsItsParenthesisedArgument) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = SIN 1").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = SIN").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = SIN()").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = 1 SIN(2)").result, -1);
    EXPECT_EQ(assignment(r.st, "@X = SIN (1)").code, "@X,1,1,SIN,");
}

TEST(CompileAssignment, TargetMustBeAKnownTag) {
    test::Rig r;
    Compiled c = assignment(r.st, "@NOSUCH = 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "@NOSUCH");
    c = assignment(r.st, "PUMP = 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "PUMP");
    c = assignment(r.st, "@A B = 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "@A B");
    EXPECT_EQ(assignment(r.st, "@PUMP 1").result, -1);  // no "="
    c = assignment(r.st, "= 1");  // nothing to assign to: the target is an unknown token
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "");
    EXPECT_EQ(assignment(r.st, "@SU = 1").code, "@SU,1,");
}

TEST(CompileAssignment, OneAssignmentSignOnly) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = @A = 1").result, -1);
}

TEST(CompileAssignment, UnknownTokens) {
    test::Rig r;
    Compiled c = assignment(r.st, "@X = FOO(1)");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "FOO");
    c = assignment(r.st, "@X = 1 % 2");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "%");
    c = assignment(r.st, "@X = 1 > 2");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, ">");
    c = assignment(r.st, "@X = @NOSUCH + 1");
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "@NOSUCH");
    c = assignment(r.st, "@AO1 = 1E6");  // no exponents in the language
    EXPECT_EQ(c.result, -2);
    EXPECT_EQ(c.token, "E");
}

TEST(CompileAssignment, ThirtyTokensAndThirtyStackEntriesAtMost) {
    test::Rig r;
    EXPECT_EQ(assignment(r.st, "@X = " + sumOf(15)).result, 1);   // 29 tokens
    EXPECT_EQ(assignment(r.st, "@X = " + sumOf(16)).result, -1);  // 31 tokens
    EXPECT_EQ(assignment(r.st, "@X = " + sumOf(5000)).result, -1);
    // Each function adds two tokens: the dummy "1" and itself.
    EXPECT_EQ(assignment(r.st, "@X = SIN(" + sumOf(14) + ")").result, 1);   // 27 + 2
    EXPECT_EQ(assignment(r.st, "@X = SIN(" + sumOf(15) + ")").result, -1);  // 29 + 2
    EXPECT_EQ(assignment(r.st, "@X = " + std::string(29, '(') + "1" + std::string(29, ')')).code,
              "@X,1,");
    EXPECT_EQ(assignment(r.st, "@X = " + std::string(30, '(') + "1" + std::string(30, ')')).result,
              -1);
    // "^" over "*" over "+" stacks up without reducing.
    EXPECT_EQ(assignment(r.st, "@X = 1+2*3^4").code, "@X,1,2,3,4,^,*,+,");
}

TEST(IsFunctionName, ExactlyTheEightNames) {
    for (const char* n : {"SIN", "COS", "TAN", "ATN", "LOG", "ABS", "EXP", "SQR"})
        EXPECT_TRUE(IsFunctionName(n)) << n;
    for (const char* n : {"", "sin", "SINE", "SI", "ATAN", "LN", "SQRT", "INT"})
        EXPECT_FALSE(IsFunctionName(n)) << n;
}

}  // namespace kova
