#include "control/compiler.h"

#include <array>
#include <charconv>
#include <cmath>

#include "control/compiled_code.h"
#include "tags/tag_name_index.h"

namespace kova {

namespace {

// The operator stack holds at most 30 entries, its bottom "#" included.
constexpr int kMaxStack = 30;

enum class Mode { If, Assignment };

enum class Sym {
    End,  // "#": the end marker and the bottom of the stack
    LParen,
    RParen,
    Operand,   // number or tag reference
    Function,  // SIN, COS, ...
    Binary,    // comparison, logic or arithmetic operator
};

struct Token {
    Sym sym = Sym::End;
    std::string_view text;  // as it goes to the output
    int level = 0;          // binding level of an operator: higher binds tighter
};

// Binding levels. IF: "&" and "|" one level, the comparisons above them. Arithmetic: "+" and
// "-", then "*" and "/", then "^"; a function binds tightest, to its parenthesised argument.
constexpr int kLevelLogic = 1;
constexpr int kLevelCompare = 2;
constexpr int kLevelAdd = 1;
constexpr int kLevelMul = 2;
constexpr int kLevelPow = 3;
constexpr int kLevelFunction = 4;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

class Parser {
  public:
    Parser(const Station& st, std::string_view text, Mode mode)
        : st_(st), text_(text), mode_(mode) {}

    // Parses the whole text; on success out_ holds the postfix tokens.
    std::int16_t run(std::string& token) {
        stack_[0] = Token{Sym::End, "#", 0};
        depth_ = 1;
        bool expectOperand = true;
        bool needParen = false;
        bool anyToken = false;
        for (;;) {
            Token tok;
            const std::int16_t r = next(tok, token);
            if (r != kCodeOk) return r;
            if (needParen && tok.sym != Sym::LParen) return kCodeSyntaxError;
            needParen = false;
            switch (tok.sym) {
                case Sym::Operand:
                    if (!expectOperand) return kCodeSyntaxError;
                    if (!emit(tok.text)) return kCodeSyntaxError;
                    expectOperand = false;
                    break;
                case Sym::Function:
                    if (!expectOperand) return kCodeSyntaxError;
                    if (!emit("1")) return kCodeSyntaxError;  // the dummy left operand
                    if (!push(tok)) return kCodeSyntaxError;
                    needParen = true;
                    break;
                case Sym::LParen:
                    if (!expectOperand) return kCodeSyntaxError;
                    if (!push(tok)) return kCodeSyntaxError;
                    break;
                case Sym::RParen:
                    if (expectOperand) return kCodeSyntaxError;
                    while (top().sym != Sym::LParen) {
                        if (top().sym == Sym::End) return kCodeSyntaxError;
                        if (!reduce()) return kCodeSyntaxError;
                    }
                    --depth_;  // match: both parentheses are dropped
                    break;
                case Sym::Binary:
                    if (expectOperand) return kCodeSyntaxError;
                    while (top().sym == Sym::Function || top().sym == Sym::Binary) {
                        if (top().level < tok.level) break;
                        if (!reduce()) return kCodeSyntaxError;
                    }
                    if (!push(tok)) return kCodeSyntaxError;
                    expectOperand = true;
                    break;
                case Sym::End:
                    if (expectOperand && (anyToken || mode_ == Mode::Assignment))
                        return kCodeSyntaxError;
                    while (top().sym != Sym::End) {
                        if (top().sym == Sym::LParen) return kCodeSyntaxError;
                        if (!reduce()) return kCodeSyntaxError;
                    }
                    return kCodeOk;  // accept
            }
            anyToken = true;
        }
    }

    int outputCount() const { return outCount_; }
    std::string_view output(int i) const { return out_[static_cast<std::size_t>(i)]; }

  private:
    const Token& top() const { return stack_[static_cast<std::size_t>(depth_ - 1)]; }

    bool push(const Token& t) {
        if (depth_ >= kMaxStack) return false;
        stack_[static_cast<std::size_t>(depth_++)] = t;
        return true;
    }

    bool emit(std::string_view t) {
        if (outCount_ >= kMaxCodeTokens) return false;
        out_[static_cast<std::size_t>(outCount_++)] = t;
        return true;
    }

    bool reduce() {
        const Token t = top();
        --depth_;
        return emit(t.text);
    }

    // Reads the next token. Returns 1, or -1 / -2 (token set) for a bad token.
    std::int16_t next(Token& tok, std::string& badToken) {
        while (pos_ < text_.size() && isBlank(text_[pos_])) ++pos_;
        if (pos_ >= text_.size()) {
            tok = Token{Sym::End, "#", 0};
            return kCodeOk;
        }
        const std::size_t start = pos_;
        const char c = text_[pos_];

        if (isDigit(c) || c == '.') {
            while (pos_ < text_.size() && (isDigit(text_[pos_]) || text_[pos_] == '.')) ++pos_;
            const std::string_view number = text_.substr(start, pos_ - start);
            double value = 0;
            if (!ReadCodeNumber(number, value)) return kCodeSyntaxError;  // "1.2.3", "."
            tok = Token{Sym::Operand, number, 0};
            return kCodeOk;
        }
        if (c == '@') {
            ++pos_;
            while (pos_ < text_.size() && (isUpper(text_[pos_]) || isDigit(text_[pos_]))) ++pos_;
            const std::string_view ref = text_.substr(start, pos_ - start);
            if (FindTag(st_.nameIndex, std::string(ref.substr(1))) == 0) {
                badToken = std::string(ref);
                return kCodeUnknownToken;
            }
            tok = Token{Sym::Operand, ref, 0};
            return kCodeOk;
        }
        if (isUpper(c)) {
            while (pos_ < text_.size() && isUpper(text_[pos_])) ++pos_;
            const std::string_view word = text_.substr(start, pos_ - start);
            if (mode_ == Mode::Assignment && IsFunctionName(word)) {
                tok = Token{Sym::Function, word, kLevelFunction};
                return kCodeOk;
            }
            badToken = std::string(word);
            return kCodeUnknownToken;
        }
        ++pos_;
        if (c == '(') {
            tok = Token{Sym::LParen, "(", 0};
            return kCodeOk;
        }
        if (c == ')') {
            tok = Token{Sym::RParen, ")", 0};
            return kCodeOk;
        }
        if (mode_ == Mode::If) {
            if (c == '<' || c == '>') {
                if (pos_ < text_.size() && (text_[pos_] == '=' || (c == '<' && text_[pos_] == '>')))
                    ++pos_;
                tok = Token{Sym::Binary, text_.substr(start, pos_ - start), kLevelCompare};
                return kCodeOk;
            }
            if (c == '=') {
                tok = Token{Sym::Binary, "=", kLevelCompare};
                return kCodeOk;
            }
            if (c == '&' || c == '|') {
                tok = Token{Sym::Binary, text_.substr(start, 1), kLevelLogic};
                return kCodeOk;
            }
        } else {
            switch (c) {
                case '+':
                case '-':
                    tok = Token{Sym::Binary, text_.substr(start, 1), kLevelAdd};
                    return kCodeOk;
                case '*':
                case '/':
                    tok = Token{Sym::Binary, text_.substr(start, 1), kLevelMul};
                    return kCodeOk;
                case '^':
                    tok = Token{Sym::Binary, "^", kLevelPow};
                    return kCodeOk;
                case '=':
                    return kCodeSyntaxError;  // a second assignment sign
                default:
                    break;
            }
        }
        // Anything else is an unknown token; a character of several UTF-8 bytes is reported whole.
        if (static_cast<unsigned char>(c) >= 0xC0)
            while (pos_ < text_.size() && (static_cast<unsigned char>(text_[pos_]) & 0xC0) == 0x80)
                ++pos_;
        badToken = std::string(text_.substr(start, pos_ - start));
        return kCodeUnknownToken;
    }

    const Station& st_;
    std::string_view text_;
    Mode mode_;
    std::size_t pos_ = 0;
    std::array<Token, kMaxStack> stack_{};
    int depth_ = 0;
    std::array<std::string_view, kMaxCodeTokens> out_{};
    int outCount_ = 0;
};

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

}  // namespace

bool IsFunctionName(std::string_view name) {
    static constexpr std::string_view kNames[] = {"SIN", "COS", "TAN", "ATN",
                                                  "LOG", "ABS", "EXP", "SQR"};
    for (std::string_view n : kNames)
        if (n == name) return true;
    return false;
}

bool ReadCodeNumber(std::string_view entry, double& value) {
    int digits = 0;
    int dots = 0;
    for (char c : entry) {
        if (isDigit(c))
            ++digits;
        else if (c == '.')
            ++dots;
        else
            return false;
    }
    if (digits == 0 || dots > 1) return false;
    double v = 0;
    const auto [end, ec] = std::from_chars(entry.data(), entry.data() + entry.size(), v);
    if (ec != std::errc{} || end != entry.data() + entry.size() || !std::isfinite(v)) return false;
    value = v;
    return true;
}

std::int16_t CompileIf(const Station& st, const std::string& text, std::string& code,
                       std::string& token) {
    code.clear();
    Parser p(st, text, Mode::If);
    const std::int16_t r = p.run(token);
    if (r != kCodeOk) return r;
    if (p.outputCount() == 0) {
        code.assign(1, ',');  // an empty IF: always true
        return kCodeOk;
    }
    for (int i = 0; i < p.outputCount(); ++i) {
        code += p.output(i);
        code += ',';
    }
    return kCodeOk;
}

std::int16_t CompileAssignment(const Station& st, const std::string& text, std::string& code,
                               std::string& token) {
    code.clear();
    const std::size_t eq = text.find('=');
    if (eq == std::string::npos) return kCodeSyntaxError;
    // The left side must be "@" and a known tag; an empty one is no tag either (-2, token "").
    const std::string_view target = trimmed(std::string_view(text).substr(0, eq));
    bool validName = target.size() > 1 && target[0] == '@';
    for (std::size_t i = 1; validName && i < target.size(); ++i)
        validName = isUpper(target[i]) || isDigit(target[i]);
    if (!validName || FindTag(st.nameIndex, std::string(target.substr(1))) == 0) {
        token = std::string(target);
        return kCodeUnknownToken;
    }
    Parser p(st, std::string_view(text).substr(eq + 1), Mode::Assignment);
    const std::int16_t r = p.run(token);
    if (r != kCodeOk) return r;
    code.assign(target);
    code += ',';
    for (int i = 0; i < p.outputCount(); ++i) {
        code += p.output(i);
        code += ',';
    }
    return kCodeOk;
}

}  // namespace kova
