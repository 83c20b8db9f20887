#pragma once
// The compiled form of a line's stored codes, kept beside the control table so that the
// scan never splits code text on a tick. The stored codes stay the textual postfix lists
// ("@A,1,>,"); this is only their decoded image, rebuilt when a code text changes.
#include <cstdint>
#include <string>
#include <vector>

namespace kova {

// At most 30 tokens in one compiled expression (and so on the evaluation stack).
inline constexpr int kMaxCodeTokens = 30;

enum class CodeOp : std::uint8_t {
    Number,  // a literal operand
    TagRef,  // an operand read from a tag when an operator needs it
    // IF operators
    Eq,
    Ne,
    Lt,
    Gt,
    Le,
    Ge,
    And,
    Or,
    // arithmetic operators of THEN / ELSE
    Add,
    Sub,
    Mul,
    Div,
    Pow,
    // functions: binary in the code, the left operand is the dummy "1"
    Sin,
    Cos,
    Tan,
    Atn,
    Abs,
    Log,
    Exp,
    Sqr,
};

struct CodeItem {
    CodeOp op = CodeOp::Number;
    double number = 0;  // Number
    std::string name;   // TagRef: the text after the entry's first character
};

// One postfix list. wellFormed is false when the code could not have come from the
// compiler (too many entries, a number out of range); such a code evaluates to -1.
struct CompiledExpression {
    bool alwaysTrue = false;  // the IF code "," (an empty IF)
    bool wellFormed = false;
    std::vector<CodeItem> items;
};

struct CompiledAssignment {
    std::string targetName;  // the target entry without its first character
    CompiledExpression expr;
};

// The decoded codes of one control line and the code texts they were decoded from.
struct CompiledLine {
    bool ifBuilt = false;
    bool thenBuilt = false;
    bool elseBuilt = false;
    std::string ifSource;
    std::string thenSource;
    std::string elseSource;
    CompiledExpression ifExpr;
    std::vector<CompiledAssignment> thenParts;
    std::vector<CompiledAssignment> elseParts;
};

}  // namespace kova
