#include "core/setup_file.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <string_view>

#include "core/atomic_file.h"
#include "core/fault.h"
#include "core/text_encoding.h"

namespace kova {

namespace {

constexpr std::size_t kRecord = kSetupRecordLength;
// A setup file is 46464 bytes; anything far larger is not one.
constexpr std::size_t kLargestSetupFile = 1u << 20;

std::string where(int record, const RecordLabel& label, const std::string& field) {
    const std::string name = label.text();
    std::string s = "record " + std::to_string(record) + " (" + name + ")";
    if (!field.empty() && field != name) s += ", " + field;
    return s;
}

bool integral(double x, double low, double high) {
    return std::isfinite(x) && x == std::trunc(x) && x >= low && x <= high;
}

// Writes the items; collects what cannot be stored instead of stopping at the first.
class Writer {
  public:
    Writer() { out.reserve(kSetupFileLength); }
    std::string out;
    std::vector<std::string> problems;

    template <class F>
    void array(const char*, int count, F fn) {
        for (int i = 1; i <= count; ++i) fn(i);
    }
    template <class F>
    void object(const char*, F fn) {
        fn();
    }
    template <class F>
    void record(const RecordLabel& label, F fn) {
        ++record_;
        label_ = label;
        const std::size_t start = out.size();
        fn();
        const std::size_t used = out.size() - start;
        if (used > kRecord) {
            problems.push_back(where(record_, label_, "") + ": needs " + std::to_string(used) +
                               " bytes, more than the " + std::to_string(kRecord) + " of a record");
            out.resize(start + kRecord);
        } else {
            out.append(kRecord - used, '\0');
        }
    }

    void i16(const char*, std::int16_t v) { put(static_cast<std::uint16_t>(v), 2); }
    void i32(const char*, std::int32_t v) { put(static_cast<std::uint32_t>(v), 4); }
    void f32(const char*, float v) { put(std::bit_cast<std::uint32_t>(v), 4); }
    void f64(double v) { put(std::bit_cast<std::uint64_t>(v), 8); }

    void text(const char* name, const std::string& utf8) {
        auto bytes = Utf8ToCp1252(utf8);
        if (!bytes) {
            problem(name, "holds a character that Windows-1252 cannot represent");
            bytes.emplace();
        }
        // A text too long for the length field is far too long for its record as well,
        // which the record check reports.
        put(static_cast<std::uint16_t>(bytes->size()), 2);
        out += *bytes;
    }

    void variant(const char* name, const Variant& v) {
        i16(name, v.type);
        switch (v.type) {
            case kVarEmpty:
            case kVarNull:
                break;
            case kVarInteger:
            case kVarBoolean: {
                const bool ok = integral(v.number, -32768.0, 32767.0);
                if (!ok) bad(name, v, "a 16-bit integer");
                i16(name, static_cast<std::int16_t>(ok ? v.number : 0));
                break;
            }
            case kVarLong: {
                const bool ok = integral(v.number, -2147483648.0, 2147483647.0);
                if (!ok) bad(name, v, "a 32-bit integer");
                i32(name, static_cast<std::int32_t>(ok ? v.number : 0));
                break;
            }
            case kVarSingle: {
                const bool ok = !std::isfinite(v.number) ||
                                std::fabs(v.number) <= std::numeric_limits<float>::max();
                if (!ok) bad(name, v, "a single float");
                f32(name, ok ? static_cast<float>(v.number) : 0.0f);
                break;
            }
            case kVarDouble:
            case kVarDate:
                f64(v.number);
                break;
            case kVarString:
                text(name, v.text);
                break;
            default:
                problem(name, "has the unknown variant type " + std::to_string(v.type));
        }
    }

  private:
    void put(std::uint64_t v, int bytes) {
        for (int i = 0; i < bytes; ++i) out += static_cast<char>((v >> (8 * i)) & 0xFF);
    }
    void problem(const char* field, const std::string& what) {
        problems.push_back(where(record_, label_, field) + ": " + what);
    }
    void bad(const char* field, const Variant& v, const char* type) {
        char buf[40];
        const auto end =
            std::to_chars(buf, buf + sizeof buf, v.number, std::chars_format::general, 17).ptr;
        problem(field, "the value " + std::string(buf, end) + " is not " + type);
    }

    int record_ = 0;
    RecordLabel label_{""};
};

// The writer's bytes with the values that move by themselves while the station runs left
// out: a tag's Value (every scan), an alarm's State and LastText (every alarm check), a
// control line's LastResult (every control pass) and a screen line's Editing flag (the
// cursor in a readings screen). A control line's codes are left out too: they are compiled
// from its texts (the control window compiles them again whenever it checks a line, an
// empty IF becoming ","), so they change only when the texts do. A jump target the screen set-up
// window shows as an empty box counts as the 0 it stores again, and a variant counts by its value,
// not its type. What the file could not hold (a record too long, a character outside Windows-1252)
// is kept whole, so that no change is lost in comparing.
class Fingerprint : public Writer {
  public:
    explicit Fingerprint(const Station& st) : st_(st) {}

    template <class F>
    void record(const RecordLabel& label, F fn) {
        if (label.isScreenHeader()) ++screen_;
        const std::size_t start = out.size();
        fn();
        const std::size_t used = out.size() - start;
        if (used < kRecord) out.append(kRecord - used, '\0');
    }
    void i16(const char* name, std::int16_t v) {
        const std::string_view field = name;
        if (field == "State" || field == "LastResult" || field == "Editing") return;
        if (field == "JumpTo" && screen_ == st_.screens.JumpShownEmpty && v == 1) v = 0;
        Writer::i16(name, v);
    }
    void f32(const char* name, float v) {
        if (std::string_view(name) == "Value") return;
        Writer::f32(name, v);
    }
    void text(const char* name, const std::string& utf8) {
        const std::string_view field = name;
        if (field == "LastText" || field == "IfCode" || field == "ThenCode" || field == "ElseCode")
            return;
        Writer::i32(name, static_cast<std::int32_t>(utf8.size()));
        out += utf8;
    }
    // A number compares by its value, whatever type carries it: a window that stores the
    // 0 it showed as a double where the file had an integer has changed nothing.
    void variant(const char* name, const Variant& v) {
        if (v.type == kVarString) {
            Writer::i16(name, 1);
            text(name, v.text);
        } else if (v.type == kVarEmpty || v.type == kVarNull) {
            Writer::i16(name, 0);
        } else {
            Writer::i16(name, 2);
            f64(v.number);
        }
    }

  private:
    const Station& st_;
    int screen_ = 0;
};

// Reads the items. Every record starts at a fixed place, so after a bad record the reader
// goes on with the next one; once the file has ended it stops.
class Reader {
  public:
    explicit Reader(const std::string& bytes) : bytes_(bytes) {}
    std::vector<std::string> problems;

    template <class F>
    void array(const char*, int count, F fn) {
        for (int i = 1; i <= count; ++i) fn(i);
    }
    template <class F>
    void object(const char*, F fn) {
        fn();
    }
    template <class F>
    void record(const RecordLabel& label, F fn) {
        ++record_;
        if (ended_) return;
        label_ = label;
        start_ = static_cast<std::size_t>(record_ - 1) * kRecord;
        if (start_ >= bytes_.size()) {
            ended_ = true;
            problems.push_back(where(record_, label_, "") + ": missing, the file ends at byte " +
                               std::to_string(bytes_.size()) + " (a setup file has " +
                               std::to_string(kSetupRecordCount) + " records)");
            return;
        }
        pos_ = start_;
        limit_ = std::min(start_ + kRecord, bytes_.size());
        failed_ = false;
        fn();
    }

    void i16(const char* name, std::int16_t& v) {
        std::uint64_t raw;
        if (take(name, 2, raw)) v = static_cast<std::int16_t>(static_cast<std::uint16_t>(raw));
    }
    void i32(const char* name, std::int32_t& v) {
        std::uint64_t raw;
        if (take(name, 4, raw)) v = static_cast<std::int32_t>(static_cast<std::uint32_t>(raw));
    }
    void f32(const char* name, float& v) {
        std::uint64_t raw;
        if (take(name, 4, raw)) v = std::bit_cast<float>(static_cast<std::uint32_t>(raw));
    }
    void text(const char* name, std::string& v) {
        std::uint64_t length;
        if (!take(name, 2, length)) return;
        if (length > limit_ - pos_) {
            fail(name, "the length " + std::to_string(length) + " runs past the end of " +
                           (limit_ == bytes_.size() && limit_ < start_ + kRecord
                                ? std::string("the file")
                                : std::string("its record")));
            return;
        }
        v = Cp1252ToUtf8(std::string_view(bytes_).substr(pos_, length));
        pos_ += length;
    }
    void variant(const char* name, Variant& v) {
        std::int16_t type = 0;
        i16(name, type);
        if (failed_) return;
        Variant value;
        value.type = type;
        std::uint64_t raw = 0;
        switch (type) {
            case kVarEmpty:
            case kVarNull:
                break;
            case kVarInteger:
            case kVarBoolean:
                if (!take(name, 2, raw)) return;
                value.number = static_cast<std::int16_t>(static_cast<std::uint16_t>(raw));
                break;
            case kVarLong:
                if (!take(name, 4, raw)) return;
                value.number = static_cast<std::int32_t>(static_cast<std::uint32_t>(raw));
                break;
            case kVarSingle:
                if (!take(name, 4, raw)) return;
                value.number = std::bit_cast<float>(static_cast<std::uint32_t>(raw));
                break;
            case kVarDouble:
            case kVarDate:
                if (!take(name, 8, raw)) return;
                value.number = std::bit_cast<double>(raw);
                break;
            case kVarString:
                text(name, value.text);
                if (failed_) return;
                break;
            default:
                fail(name, "unknown variant type " + std::to_string(type));
                return;
        }
        v = std::move(value);
    }

  private:
    // Takes `size` bytes as a little-endian number; false (and a problem) when they are
    // not all there.
    bool take(const char* name, std::size_t size, std::uint64_t& value) {
        if (failed_) return false;
        if (size > limit_ - pos_) {
            if (limit_ == bytes_.size() && limit_ < start_ + kRecord)
                fail(name, "the file ends at byte " + std::to_string(bytes_.size()) +
                               ", before the end of this item");
            else
                fail(name, "the item runs past the end of its record");
            return false;
        }
        value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[pos_ + i]))
                     << (8 * i);
        pos_ += size;
        return true;
    }
    void fail(const char* field, const std::string& what) {
        failed_ = true;
        problems.push_back(where(record_, label_, field) + ": " + what);
        // Once the file has run out there is nothing more to read.
        if (limit_ == bytes_.size() && limit_ < start_ + kRecord) ended_ = true;
    }

    const std::string& bytes_;
    int record_ = 0;
    RecordLabel label_{""};
    std::size_t start_ = 0, pos_ = 0, limit_ = 0;
    bool failed_ = false;
    bool ended_ = false;
};

}  // namespace

std::vector<std::string> FindUnsavableItems(const Station& st) {
    Writer w;
    VisitSetupItems(st, w);
    return std::move(w.problems);
}

std::string EncodeSetupFile(const Station& st) {
    Writer w;
    VisitSetupItems(st, w);
    if (!w.problems.empty()) throw Fault(FaultKind::File, "cannot save: " + w.problems.front());
    return std::move(w.out);
}

std::string ConfigurationFingerprint(const Station& st) {
    Fingerprint f(st);
    VisitSetupItems(st, f);
    return std::move(f.out);
}

std::vector<std::string> FindSetupFileProblems(const std::string& bytes) {
    // Read into a scratch station so the caller's stays as it was.
    auto scratch = std::make_unique<Station>();
    Reader r(bytes);
    VisitSetupItems(*scratch, r);
    return std::move(r.problems);
}

bool DecodeSetupFile(Station& st, const std::string& bytes, std::string& error) {
    const auto problems = FindSetupFileProblems(bytes);
    if (!problems.empty()) {
        error = problems.front();
        if (problems.size() > 1)
            error += " (and " + std::to_string(problems.size() - 1) + " more problem" +
                     (problems.size() > 2 ? "s" : "") + ")";
        return false;
    }
    Reader r(bytes);
    VisitSetupItems(st, r);
    return true;
}

void SaveSetupFile(const Station& st, const std::filesystem::path& file) {
    Writer w;
    VisitSetupItems(st, w);
    if (!w.problems.empty())
        throw Fault(FaultKind::File, file.string() + ": cannot save: " + w.problems.front());
    WriteFileAtomically(file, w.out);
}

LoadOutcome LoadSetupFile(Station& st, const std::filesystem::path& file) {
    LoadOutcome outcome;
    std::string bytes;
    if (!ReadWholeFile(file, bytes, outcome.error, kLargestSetupFile)) return outcome;
    std::string error;
    if (!DecodeSetupFile(st, bytes, error)) {
        outcome.error = file.string() + ": " + error;
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

}  // namespace kova
