// Random well-formed statements over random tag values, compiled and run by the control
// language, against a straightforward recursive-descent evaluation of the same source text
// in double precision (stored in single precision).
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>

#include "control/compiler.h"
#include "control/evaluator.h"
#include "control/run_controls.h"
#include "control_rig.h"

namespace kova {

namespace {

// ---- the independent evaluator ------------------------------------------------------------

struct Value {
    double v = 0;
    bool bareRef = false;  // a tag reference that no operator has used
};

class Reference {
  public:
    Reference(const Station& st, const std::string& text) : st_(st), s_(text) {}

    // Arithmetic: nullopt when the statement must fail.
    std::optional<double> arithmetic() {
        ok_ = true;
        const double v = sum();
        skip();
        if (pos_ != s_.size()) ADD_FAILURE() << "reference parser stopped early in " << s_;
        if (!ok_) return std::nullopt;
        return v;
    }

    // Condition: 1, 0 or -1 as an IF would give.
    int condition() {
        ok_ = true;
        skip();
        if (pos_ == s_.size()) return 1;
        const Value v = logic();
        if (!ok_) ADD_FAILURE() << "a tag of the rig is missing in " << s_;
        if (v.bareRef) return -1;
        if (v.v == 0) return 0;
        if (v.v == 1) return 1;
        return -1;
    }

    // Tokens the compiled form holds: operands, operators and two for each function.
    int tokens() const {
        int n = 0;
        for (std::size_t i = 0; i < s_.size();) {
            const char c = s_[i];
            if (c == ' ' || c == '(' || c == ')') {
                ++i;
            } else if (std::isdigit(static_cast<unsigned char>(c)) || c == '.') {
                while (i < s_.size() &&
                       (std::isdigit(static_cast<unsigned char>(s_[i])) || s_[i] == '.'))
                    ++i;
                ++n;
            } else if (c == '@') {
                ++i;
                while (i < s_.size() && std::isalnum(static_cast<unsigned char>(s_[i]))) ++i;
                ++n;
            } else if (std::isupper(static_cast<unsigned char>(c))) {
                while (i < s_.size() && std::isupper(static_cast<unsigned char>(s_[i]))) ++i;
                n += 2;
            } else if ((c == '<' || c == '>') && i + 1 < s_.size() &&
                       (s_[i + 1] == '=' || s_[i + 1] == '>')) {
                i += 2;
                ++n;
            } else {
                ++i;
                ++n;
            }
        }
        return n;
    }

  private:
    void skip() {
        while (pos_ < s_.size() && s_[pos_] == ' ') ++pos_;
    }
    bool eat(const char* t) {
        skip();
        const std::size_t n = std::strlen(t);
        if (s_.compare(pos_, n, t) == 0) {
            pos_ += n;
            return true;
        }
        return false;
    }
    double check(double r) {
        if (!std::isfinite(r)) ok_ = false;
        return r;
    }

    double sum() {
        double v = product();
        for (;;) {
            if (eat("+"))
                v = check(v + product());
            else if (eat("-"))
                v = check(v - product());
            else
                return v;
        }
    }
    double product() {
        double v = power();
        for (;;) {
            if (eat("*")) {
                v = check(v * power());
            } else if (eat("/")) {
                const double d = power();
                v = check(d == 0 ? 0 : v / d);
            } else {
                return v;
            }
        }
    }
    double power() {
        double v = primary();
        while (eat("^")) {
            const double e = primary();
            v = check(std::pow(v, e));
        }
        return v;
    }
    double primary() {
        skip();
        if (eat("(")) {
            const double v = sum();
            EXPECT_TRUE(eat(")"));
            return v;
        }
        if (s_[pos_] == '@') return tag().v;
        if (std::isupper(static_cast<unsigned char>(s_[pos_]))) {
            const std::string fn = s_.substr(pos_, 3);
            pos_ += 3;
            EXPECT_TRUE(eat("("));
            const double a = sum();
            EXPECT_TRUE(eat(")"));
            if (fn == "SIN") return check(std::sin(a));
            if (fn == "COS") return check(std::cos(a));
            if (fn == "TAN") return check(std::tan(a));
            if (fn == "ATN") return check(std::atan(a));
            if (fn == "ABS") return check(std::fabs(a));
            if (fn == "EXP") return check(std::exp(a));
            if (fn == "SQR") {
                if (a < 0) ok_ = false;
                return a < 0 ? 0 : std::sqrt(a);
            }
            if (fn == "LOG") {
                if (a < 0) ok_ = false;
                return a <= 0 ? 0 : check(std::log(a));
            }
            ADD_FAILURE() << "unknown function " << fn;
            return 0;
        }
        return number();
    }
    double number() {
        skip();
        const std::size_t start = pos_;
        while (pos_ < s_.size() &&
               (std::isdigit(static_cast<unsigned char>(s_[pos_])) || s_[pos_] == '.'))
            ++pos_;
        return std::strtod(s_.substr(start, pos_ - start).c_str(), nullptr);
    }
    Value tag() {
        skip();
        const std::size_t start = ++pos_;
        while (pos_ < s_.size() && std::isalnum(static_cast<unsigned char>(s_[pos_]))) ++pos_;
        const int n = FindTag(st_.nameIndex, s_.substr(start, pos_ - start));
        if (n == 0) {
            ok_ = false;
            return {};
        }
        return {st_.tags[n].Value, true};
    }

    // IF grammar: "&" and "|" one level below the comparisons, both from the left.
    Value logic() {
        Value v = relation();
        for (;;) {
            if (eat("&")) {
                const Value b = relation();
                v = {v.v == 1 && b.v == 1 ? 1.0 : 0.0, false};
            } else if (eat("|")) {
                const Value b = relation();
                v = {v.v == 1 || b.v == 1 ? 1.0 : 0.0, false};
            } else {
                return v;
            }
        }
    }
    Value relation() {
        Value v = atom();
        for (;;) {
            double r;
            if (eat("<=")) {
                const double b = atom().v;
                r = v.v <= b;
            } else if (eat(">=")) {
                const double b = atom().v;
                r = v.v >= b;
            } else if (eat("<>")) {
                const double b = atom().v;
                r = v.v != b;
            } else if (eat("<")) {
                const double b = atom().v;
                r = v.v < b;
            } else if (eat(">")) {
                const double b = atom().v;
                r = v.v > b;
            } else if (eat("=")) {
                const double b = atom().v;
                r = v.v == b;
            } else {
                return v;
            }
            v = {r, false};
        }
    }
    Value atom() {
        skip();
        if (eat("(")) {
            const Value v = logic();
            EXPECT_TRUE(eat(")"));
            return v;
        }
        if (s_[pos_] == '@') return tag();
        return {number(), false};
    }

    const Station& st_;
    std::string s_;
    std::size_t pos_ = 0;
    bool ok_ = true;
};

// ---- random statements --------------------------------------------------------------------

class Generator {
  public:
    explicit Generator(unsigned seed) : rng_(seed) {}

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

    std::string blank() { return pick(3) == 0 ? " " : ""; }

    std::string number() {
        char buf[32];
        switch (pick(5)) {
            case 0:
                return std::to_string(pick(4));
            case 1:
                return std::to_string(pick(100));
            case 2:
                std::snprintf(buf, sizeof buf, "%d.%d", pick(10), pick(100));
                return buf;
            case 3:
                std::snprintf(buf, sizeof buf, ".%d", pick(1000));
                return buf;
            default:
                std::snprintf(buf, sizeof buf, "%d.5", pick(40));
                return buf;
        }
    }

    std::string ref() {
        static const char* const refs[] = {"@A",   "@B",  "@X",  "@TANK1",
                                           "@AO2", "@TS", "@SU", "@FLAG"};
        return refs[pick(8)];
    }

    std::string arithmetic(int depth) {
        std::string s = item(depth);
        const int n = pick(3);
        static const char* const ops[] = {"+", "-", "*", "/", "^"};
        for (int i = 0; i < n; ++i) s += blank() + ops[pick(5)] + blank() + item(depth);
        return s;
    }

    std::string condition(int depth) {
        std::string s = relation(depth);
        const int n = pick(3);
        for (int i = 0; i < n; ++i)
            s += blank() + (pick(2) ? "&" : "|") + blank() + relation(depth);
        return s;
    }

    void randomiseTags(Station& st) {
        static const int tags[] = {test::kA,   test::kB, test::kX, test::kTank,
                                   test::kAo2, kTagTS,   kTagSU,   test::kFlag};
        for (int n : tags) {
            float v;
            switch (pick(6)) {
                case 0:
                    v = 0;
                    break;
                case 1:
                    v = 1;
                    break;
                case 2:
                    v = static_cast<float>(pick(7)) - 3;
                    break;
                case 3:
                    v = std::uniform_real_distribution<float>(-100, 100)(rng_);
                    break;
                case 4:
                    v = std::uniform_real_distribution<float>(0, 2)(rng_);
                    break;
                default:
                    v = static_cast<float>(pick(100)) / 4;
            }
            st.tags[n].Value = v;
        }
    }

  private:
    std::string item(int depth) {
        const int k = depth > 0 ? pick(5) : pick(2);
        static const char* const fns[] = {"SIN", "COS", "TAN", "ATN", "LOG", "ABS", "EXP", "SQR"};
        switch (k) {
            case 0:
                return number();
            case 1:
                return ref();
            case 2:
                return std::string(fns[pick(8)]) + blank() + "(" + arithmetic(depth - 1) + ")";
            default:
                return "(" + blank() + arithmetic(depth - 1) + blank() + ")";
        }
    }

    std::string atom(int depth) {
        const int k = depth > 0 ? pick(5) : pick(2);
        if (k == 0) return number();
        if (k == 1 || k == 2) return ref();
        return "(" + condition(depth - 1) + ")";
    }

    std::string relation(int depth) {
        static const char* const ops[] = {"=", "<>", "<", ">", "<=", ">="};
        std::string s = atom(depth);
        const int n = pick(4) == 0 ? 0 : 1 + pick(2);  // up to two comparisons in a row
        for (int i = 0; i < n; ++i) s += blank() + ops[pick(6)] + blank() + atom(depth);
        return s;
    }

    std::mt19937 rng_;
};

}  // namespace

TEST(ControlLanguageDifferential, AssignmentsAgreeWithADoublePrecisionReference) {
    test::Rig r;
    Generator g(20240611);
    int compiled = 0;
    int stored = 0;
    for (int i = 0; i < 20000; ++i) {
        g.randomiseTags(r.st);
        const std::string rhs = g.arithmetic(3);
        const bool toOutput = g.pick(4) == 0;
        const std::string target = toOutput ? "@AO2" : "@X";
        const std::string text = target + " = " + rhs;

        Reference ref(r.st, rhs);
        std::string code;
        std::string token;
        const std::int16_t c = CompileAssignment(r.st, text, code, token);
        if (ref.tokens() > kMaxCodeTokens) {
            EXPECT_EQ(c, -1) << text;
            continue;
        }
        ASSERT_EQ(c, 1) << text;
        ++compiled;

        const std::optional<double> expected = ref.arithmetic();
        const bool fits = expected && std::fabs(*expected) <= static_cast<double>(FLT_MAX);
        const int tagNo = toOutput ? test::kAo2 : test::kX;
        const float before = r.value(tagNo);
        r.st.daq.AnalogOutputValues[2] = -1;  // a raw count the output never takes

        const std::int16_t result = ExecuteAssignment(r.st, code);
        ASSERT_EQ(result, fits ? 1 : -1) << text << " code " << code;
        if (!fits) {
            ASSERT_EQ(r.value(tagNo), before) << text;
            ASSERT_EQ(r.st.daq.AnalogOutputValues[2], -1) << text;
            continue;
        }
        ++stored;
        const float want = static_cast<float>(*expected);
        ASSERT_EQ(std::memcmp(&r.st.tags[tagNo].Value, &want, sizeof want), 0)
            << text << " gave " << r.value(tagNo) << " expected " << want;
        if (toOutput) {  // slope 1, offset 0: the value itself, clamped to 0..4095, half to even
            const double raw = std::nearbyint(std::min(4095.0, std::max(0.0, *expected)));
            ASSERT_EQ(r.st.daq.AnalogOutputValues[2], static_cast<std::int16_t>(raw)) << text;
        }

        // The scan's pass, with its cached image of the line, gives the same value.
        r.st.tags[tagNo].Value = before;
        ControlLine& line = r.st.control.Lines[1];
        line.IfCode = ",";
        line.ThenText = text;
        line.ThenCode = code + "!";
        r.st.control.ControlCount = 1;
        r.st.switches.ControlsEnabled = 1;
        RunControls(r.st);
        ASSERT_EQ(std::memcmp(&r.st.tags[tagNo].Value, &want, sizeof want), 0) << "pass: " << text;
    }
    // The statements exercised both outcomes in quantity.
    EXPECT_GT(compiled, 15000);
    EXPECT_GT(stored, compiled / 2);
    EXPECT_GT(compiled - stored, 300);
}

TEST(ControlLanguageDifferential, ConditionsAgreeWithADoublePrecisionReference) {
    test::Rig r;
    Generator g(77);
    int outcomes[3] = {0, 0, 0};
    for (int i = 0; i < 20000; ++i) {
        g.randomiseTags(r.st);
        const std::string text = g.condition(2);
        Reference ref(r.st, text);
        std::string code;
        std::string token;
        const std::int16_t c = CompileIf(r.st, text, code, token);
        if (ref.tokens() > kMaxCodeTokens) {
            EXPECT_EQ(c, -1) << text;
            continue;
        }
        ASSERT_EQ(c, 1) << text;
        const int expected = ref.condition();
        ASSERT_EQ(EvaluateIf(r.st, code), expected) << text << " code " << code;
        ++outcomes[expected + 1];

        ControlLine& line = r.st.control.Lines[1];
        line.IfCode = code;
        line.ThenText.clear();
        line.ElseText.clear();
        r.st.control.ControlCount = 1;
        r.st.switches.ControlsEnabled = 1;
        RunControls(r.st);
        ASSERT_EQ(line.LastResult, expected) << "pass: " << text;
    }
    EXPECT_GT(outcomes[0], 500);   // -1
    EXPECT_GT(outcomes[1], 2000);  // false
    EXPECT_GT(outcomes[2], 2000);  // true
}

}  // namespace kova
