#include "control/evaluator.h"

#include <array>
#include <cfloat>
#include <cmath>
#include <string_view>

#include "control/compiler.h"
#include "core/fault.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

struct OpName {
    std::string_view text;
    CodeOp op;
};

constexpr OpName kIfOps[] = {{"=", CodeOp::Eq},  {"<>", CodeOp::Ne}, {"<", CodeOp::Lt},
                             {">", CodeOp::Gt},  {"<=", CodeOp::Le}, {">=", CodeOp::Ge},
                             {"&", CodeOp::And}, {"|", CodeOp::Or}};

constexpr OpName kArithmeticOps[] = {
    {"+", CodeOp::Add},   {"-", CodeOp::Sub},   {"*", CodeOp::Mul},   {"/", CodeOp::Div},
    {"^", CodeOp::Pow},   {"SIN", CodeOp::Sin}, {"COS", CodeOp::Cos}, {"TAN", CodeOp::Tan},
    {"ATN", CodeOp::Atn}, {"ABS", CodeOp::Abs}, {"LOG", CodeOp::Log}, {"EXP", CodeOp::Exp},
    {"SQR", CodeOp::Sqr}};

template <std::size_t N>
bool findOp(const OpName (&ops)[N], std::string_view entry, CodeOp& op) {
    for (const OpName& o : ops)
        if (o.text == entry) {
            op = o.op;
            return true;
        }
    return false;
}

// Digits and dots only, at least one digit, at most one dot: what the compiler writes.
bool looksNumeric(std::string_view entry) {
    int digits = 0;
    int dots = 0;
    for (char c : entry) {
        if (c >= '0' && c <= '9')
            ++digits;
        else if (c == '.')
            ++dots;
        else
            return false;
    }
    return digits > 0 && dots <= 1;
}

// Decodes a postfix list (entries separated by ","; the first empty entry ends it).
template <std::size_t N>
void decodeList(std::string_view list, const OpName (&ops)[N], CompiledExpression& out) {
    out.items.clear();
    out.wellFormed = true;
    std::size_t pos = 0;
    while (pos < list.size()) {
        std::size_t comma = list.find(',', pos);
        if (comma == std::string_view::npos) comma = list.size();
        const std::string_view entry = list.substr(pos, comma - pos);
        if (entry.empty()) break;  // the end of the list
        if (out.items.size() >= static_cast<std::size_t>(kMaxCodeTokens)) {
            out.wellFormed = false;
            out.items.clear();
            return;
        }
        CodeItem item;
        if (findOp(ops, entry, item.op)) {
        } else if (ReadCodeNumber(entry, item.number)) {
            item.op = CodeOp::Number;
        } else if (looksNumeric(entry)) {
            out.wellFormed = false;  // a number no double can hold
            out.items.clear();
            return;
        } else {
            item.op = CodeOp::TagRef;
            item.name.assign(entry.substr(1));
        }
        out.items.push_back(std::move(item));
        pos = comma + 1;
    }
}

// A stack entry: a value, or a tag reference not read yet.
struct Operand {
    double value;
    const CodeItem* ref;
};

const Tag* findTagByName(const Station& st, const std::string& name) {
    const int n = FindTag(st.nameIndex, name);
    return n == 0 ? nullptr : &st.tags[n];
}

double readOperand(const Station& st, const Operand& o, bool& error) {
    if (o.ref == nullptr) return o.value;
    const Tag* t = findTagByName(st, o.ref->name);
    if (t == nullptr) {
        error = true;
        return 0;
    }
    return t->Value;
}

double compare(CodeOp op, double a, double b) {
    switch (op) {
        case CodeOp::Eq:
            return a == b ? 1 : 0;
        case CodeOp::Ne:
            return a != b ? 1 : 0;
        case CodeOp::Lt:
            return a < b ? 1 : 0;
        case CodeOp::Gt:
            return a > b ? 1 : 0;
        case CodeOp::Le:
            return a <= b ? 1 : 0;
        case CodeOp::Ge:
            return a >= b ? 1 : 0;
        case CodeOp::And:
            return a == 1 && b == 1 ? 1 : 0;
        case CodeOp::Or:
            return a == 1 || b == 1 ? 1 : 0;
        default:
            return 0;
    }
}

// One arithmetic step. False when it has no real, finite result.
bool arithmetic(CodeOp op, double a, double b, double& r) {
    switch (op) {
        case CodeOp::Add:
            r = a + b;
            break;
        case CodeOp::Sub:
            r = a - b;
            break;
        case CodeOp::Mul:
            r = a * b;
            break;
        case CodeOp::Div:
            r = b == 0 ? 0 : a / b;
            break;
        case CodeOp::Pow:
            r = std::pow(a, b);
            break;
        case CodeOp::Sin:
            r = std::sin(b);
            break;
        case CodeOp::Cos:
            r = std::cos(b);
            break;
        case CodeOp::Tan:
            r = std::tan(b);
            break;
        case CodeOp::Atn:
            r = std::atan(b);
            break;
        case CodeOp::Abs:
            r = std::fabs(b);
            break;
        case CodeOp::Log:
            if (b < 0) return false;
            r = b == 0 ? 0 : std::log(b);
            break;
        case CodeOp::Exp:
            r = std::exp(b);
            break;
        case CodeOp::Sqr:
            if (b < 0) return false;
            r = std::sqrt(b);
            break;
        default:
            return false;
    }
    return std::isfinite(r);
}

bool isFunction(CodeOp op) {
    return op >= CodeOp::Sin;
}

std::int16_t setTagValueByName(Station& st, const std::string& name, double v) {
    const int n = FindTag(st.nameIndex, name);
    if (n == 0) return -1;
    // A value no tag can hold (beyond the single-precision range, or not a number) is refused.
    if (!std::isfinite(v) || std::fabs(v) > static_cast<double>(FLT_MAX)) return -1;
    Tag& t = st.tags[n];
    if (t.Kind == kAnalog && t.Direction != kInput) {
        t.Value = static_cast<float>(v);
        if (t.Direction != kOutput) return 1;
        const std::int16_t raw = ScaleOutput(t, v, st.profile.RawMin, st.profile.RawMax);
        std::int16_t& slot = st.daq.AnalogOutputValues[OutputSlot(t)];
        if (slot == raw) return 1;
        slot = raw;
        st.daq.Summary.AnalogOutputsPending = -1;
        return 1;
    }
    // Digital tags, and analog inputs too, take only the truth values.
    if (v != 0 && v != 1) return -1;
    t.Value = static_cast<float>(v);
    if (t.Direction != kOutput) return 1;
    if (t.IONumber > 16) throwBounds("digital output bit", t.IONumber, 1, 16);
    const std::uint16_t mask =
        t.IONumber <= 1 ? 1 : static_cast<std::uint16_t>(1u << (t.IONumber - 1));
    std::uint16_t& image = st.daq.DigitalOutputImage;
    if (v == 0 && (image & mask) != 0) {
        image = static_cast<std::uint16_t>(image & ~mask);
        st.daq.Summary.DigitalOutputsPending = -1;
    } else if (v == 1 && (image & mask) == 0) {
        image = static_cast<std::uint16_t>(image | mask);
        st.daq.Summary.DigitalOutputsPending = -1;
    }
    return 1;
}

}  // namespace

void DecodeIfCode(const std::string& code, CompiledExpression& out) {
    out.alwaysTrue = code == ",";
    decodeList(code, kIfOps, out);
}

void DecodeAssignment(const std::string& code, CompiledAssignment& out) {
    const std::string_view text(code);
    const std::size_t comma = text.find(',');
    const std::string_view target = text.substr(0, comma);
    out.targetName.assign(target.empty() ? std::string_view() : target.substr(1));
    out.expr.alwaysTrue = false;
    decodeList(comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1),
               kArithmeticOps, out.expr);
}

void DecodeAssignmentList(const std::string& code, std::vector<CompiledAssignment>& out) {
    out.clear();
    std::size_t pos = 0;
    while (pos < code.size()) {
        std::size_t bang = code.find('!', pos);
        if (bang == std::string::npos) bang = code.size();
        if (bang > pos) {
            out.emplace_back();
            DecodeAssignment(code.substr(pos, bang - pos), out.back());
        }
        pos = bang + 1;
    }
}

namespace {
using OperandStack = std::array<Operand, kMaxCodeTokens>;

// Runs a postfix list: operands are pushed, and each operator replaces the two entries
// before it by its result. apply(item, left, right, result) returns false to stop; so does
// an operator without two operands.
template <typename Apply>
bool reducePostfix(const CompiledExpression& expr, OperandStack& stack, std::size_t& n,
                   Apply apply) {
    for (const CodeItem& item : expr.items) {
        if (item.op == CodeOp::Number) {
            stack[n++] = {item.number, nullptr};
        } else if (item.op == CodeOp::TagRef) {
            stack[n++] = {0, &item};
        } else {
            if (n < 2) return false;
            const Operand b = stack[--n];
            double r = 0;
            if (!apply(item, stack[n - 1], b, r)) return false;
            stack[n - 1] = {r, nullptr};
        }
    }
    return true;
}
}  // namespace

std::int16_t EvaluateCompiledIf(const Station& st, const CompiledExpression& expr) {
    if (expr.alwaysTrue) return 1;
    if (!expr.wellFormed) return -1;
    OperandStack stack;
    std::size_t n = 0;
    bool error = false;  // a missing tag: the reduction goes on, the result is -2
    const bool reduced = reducePostfix(
        expr, stack, n, [&](const CodeItem& item, const Operand& a, const Operand& b, double& r) {
            const double av = readOperand(st, a, error);
            const double bv = readOperand(st, b, error);
            r = compare(item.op, av, bv);
            return true;
        });
    if (!reduced) return -1;
    if (error) return -2;
    if (n != 1 || stack[0].ref != nullptr) return -1;  // a bare tag is not a truth value
    const double v = stack[0].value;
    if (v == 0) return 0;
    if (v == 1) return 1;
    return -1;
}

std::int16_t ExecuteCompiledAssignment(Station& st, const CompiledAssignment& assignment) {
    const CompiledExpression& expr = assignment.expr;
    if (!expr.wellFormed) return -1;
    OperandStack stack;
    std::size_t n = 0;
    bool error = false;
    const bool reduced = reducePostfix(
        expr, stack, n, [&](const CodeItem& item, const Operand& a, const Operand& b, double& r) {
            // A function uses only its right operand; the left one is the compiler's dummy "1".
            const double av = isFunction(item.op) ? 0 : readOperand(st, a, error);
            const double bv = readOperand(st, b, error);
            return !error && arithmetic(item.op, av, bv, r);
        });
    if (!reduced || n != 1) return -1;
    const double v = readOperand(st, stack[0], error);
    if (error) return -1;
    return setTagValueByName(st, assignment.targetName, v) == 1 ? 1 : -1;
}

std::int16_t EvaluateIf(const Station& st, const std::string& code) {
    CompiledExpression expr;
    DecodeIfCode(code, expr);
    return EvaluateCompiledIf(st, expr);
}

std::int16_t ExecuteAssignment(Station& st, const std::string& code) {
    CompiledAssignment a;
    DecodeAssignment(code, a);
    return ExecuteCompiledAssignment(st, a);
}

double GetTagValue(const Station& st, const std::string& reference, bool& error) {
    const Tag* t = findTagByName(st, reference.empty() ? std::string() : reference.substr(1));
    if (t == nullptr) {
        error = true;
        return 0;
    }
    return t->Value;
}

std::int16_t SetTagValue(Station& st, const std::string& reference, double v) {
    return setTagValueByName(st, reference.empty() ? std::string() : reference.substr(1), v);
}

}  // namespace kova
