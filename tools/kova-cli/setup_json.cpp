#include "setup_json.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "core/setup_items.h"
#include "core/variant.h"

namespace kova::cli {

namespace {

constexpr const char* kNaN = "NaN";
constexpr const char* kInfinity = "Infinity";
constexpr const char* kMinusInfinity = "-Infinity";

// The double nearest to the shortest decimal of a float: printed as the shortest double it
// gives that same decimal back.
double ShortestAsDouble(float f) {
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, f);
    double d = 0;
    std::from_chars(buf, r.ptr, d);
    return d;
}

Json NonFinite(double d) {
    if (std::isnan(d)) return kNaN;
    return d > 0 ? kInfinity : kMinusInfinity;
}

Json SingleJson(float f) {
    if (!std::isfinite(f)) return NonFinite(f);
    return ShortestAsDouble(f);
}

Json DoubleJson(double d) {
    if (!std::isfinite(d)) return NonFinite(d);
    return d;
}

Json VariantJson(const Variant& v) {
    Json j = Json::object();
    j["type"] = v.type;
    switch (v.type) {
        case kVarInteger:
        case kVarBoolean:
        case kVarLong:
            j["value"] = static_cast<std::int64_t>(v.number);
            break;
        case kVarSingle:
            j["value"] = SingleJson(static_cast<float>(v.number));
            break;
        case kVarDouble:
        case kVarDate:
            j["value"] = DoubleJson(v.number);
            break;
        case kVarString:
            j["value"] = v.text;
            break;
        default:
            j["value"] = nullptr;
    }
    return j;
}

// Builds the JSON tree while the items are visited.
class ToJson {
  public:
    explicit ToJson(Json& root) { stack_.push_back(&root); }

    template <class F>
    void array(const char* name, int count, F fn) {
        Json& node = put(name, Json::array());
        stack_.push_back(&node);
        for (int i = 1; i <= count; ++i) fn(i);
        stack_.pop_back();
    }
    template <class F>
    void object(const char* name, F fn) {
        Json& node = put(name, Json::object());
        stack_.push_back(&node);
        fn();
        stack_.pop_back();
    }
    template <class F>
    void record(const RecordLabel&, F fn) {
        fn();
    }
    void i16(const char* name, std::int16_t v) { put(name, v); }
    void i32(const char* name, std::int32_t v) { put(name, v); }
    void f32(const char* name, float v) { put(name, SingleJson(v)); }
    void text(const char* name, const std::string& v) { put(name, v); }
    void variant(const char* name, const Variant& v) { put(name, VariantJson(v)); }

  private:
    Json& put(const char* name, Json value) {
        Json& top = *stack_.back();
        if (top.is_array()) {
            top.push_back(std::move(value));
            return top.back();
        }
        top[name] = std::move(value);
        return top[name];
    }
    std::vector<Json*> stack_;
};

// Reads the stored items from the JSON tree, checking every key and type.
class FromJson {
  public:
    explicit FromJson(const Json& root) {
        if (!root.is_object()) throw JsonKeyError("the top level: expected an object");
        stack_.push_back({&root, "", 0, {}});
    }

    template <class F>
    void array(const char* name, int count, F fn) {
        std::string path;
        const Json& node = child(name, path);
        if (!node.is_array() || node.size() != static_cast<std::size_t>(count))
            throw error(path, "expected an array of " + std::to_string(count));
        stack_.push_back({&node, path, 0, {}});
        for (int i = 1; i <= count; ++i) fn(i);
        stack_.pop_back();
    }
    template <class F>
    void object(const char* name, F fn) {
        std::string path;
        const Json& node = child(name, path);
        if (!node.is_object()) throw error(path, "expected an object");
        stack_.push_back({&node, path, 0, {}});
        fn();
        finishObject();
        stack_.pop_back();
    }
    template <class F>
    void record(const RecordLabel&, F fn) {
        fn();
    }

    void i16(const char* name, std::int16_t& v) {
        std::string path;
        v = static_cast<std::int16_t>(
            integer(child(name, path), path, -32768, 32767, "a 16-bit integer"));
    }
    void i32(const char* name, std::int32_t& v) {
        std::string path;
        v = static_cast<std::int32_t>(
            integer(child(name, path), path, -2147483648LL, 2147483647LL, "a 32-bit integer"));
    }
    void f32(const char* name, float& v) {
        std::string path;
        v = single(child(name, path), path);
    }
    void text(const char* name, std::string& v) {
        std::string path;
        const Json& node = child(name, path);
        if (!node.is_string()) throw error(path, "expected a string");
        v = node.get<std::string>();
    }
    void variant(const char* name, Variant& v) {
        std::string path;
        const Json& node = child(name, path);
        if (!node.is_object())
            throw error(path, "expected an object {\"type\": ..., \"value\": ...}");
        stack_.push_back({&node, path, 0, {}});
        std::string typePath;
        const Json& typeNode = child("type", typePath);
        const auto type = static_cast<std::int16_t>(
            integer(typeNode, typePath, -32768, 32767, "a variant type code"));
        Variant out;
        out.type = type;
        std::string valuePath;
        switch (type) {
            case kVarEmpty:
            case kVarNull: {
                const Json& top = *stack_.back().node;
                if (top.contains("value")) {
                    const Json& value = child("value", valuePath);
                    if (!value.is_null())
                        throw error(valuePath, "expected null for this variant type");
                }
                break;
            }
            case kVarInteger:
            case kVarBoolean: {
                const Json& value = child("value", valuePath);
                if (type == kVarBoolean && value.is_boolean())
                    out.number = value.get<bool>() ? -1 : 0;
                else
                    out.number = static_cast<double>(
                        integer(value, valuePath, -32768, 32767, "a 16-bit integer"));
                break;
            }
            case kVarLong:
                out.number =
                    static_cast<double>(integer(child("value", valuePath), valuePath, -2147483648LL,
                                                2147483647LL, "a 32-bit integer"));
                break;
            case kVarSingle:
                out.number = single(child("value", valuePath), valuePath);
                break;
            case kVarDouble:
            case kVarDate:
                out.number = real(child("value", valuePath), valuePath);
                break;
            case kVarString: {
                const Json& value = child("value", valuePath);
                if (!value.is_string()) throw error(valuePath, "expected a string");
                out.text = value.get<std::string>();
                break;
            }
            default:
                throw error(typePath, "unknown variant type " + std::to_string(type) +
                                          " (known: 0, 1, 2, 3, 4, 5, 7, 8, 11)");
        }
        finishObject();
        stack_.pop_back();
        v = std::move(out);
    }

    void finish() { finishObject(); }

  private:
    struct Frame {
        const Json* node;
        std::string path;
        std::size_t next;             // next element of an array
        std::set<std::string> taken;  // keys of an object already read
    };

    static JsonKeyError error(const std::string& path, const std::string& what) {
        return JsonKeyError("key " + path + ": " + what);
    }

    const Json& child(const char* name, std::string& path) {
        Frame& top = stack_.back();
        if (top.node->is_array()) {
            const std::size_t i = top.next++;
            path = top.path + "[" + std::to_string(i) + "]";
            return (*top.node)[i];
        }
        path = top.path.empty() ? std::string(name) : top.path + "." + name;
        const auto it = top.node->find(name);
        if (it == top.node->end()) throw JsonKeyError("key " + path + " is missing");
        top.taken.insert(name);
        return *it;
    }

    void finishObject() {
        const Frame& top = stack_.back();
        for (const auto& item : top.node->items())
            if (!top.taken.count(item.key()))
                throw JsonKeyError("key " +
                                   (top.path.empty() ? item.key() : top.path + "." + item.key()) +
                                   " is not a setup file item");
    }

    static long long integer(const Json& node, const std::string& path, long long low,
                             long long high, const char* what) {
        bool ok = false;
        long long v = 0;
        if (node.is_number_unsigned()) {
            const auto u = node.get<std::uint64_t>();
            ok = u <= static_cast<std::uint64_t>(high);
            v = static_cast<long long>(ok ? u : 0);
        } else if (node.is_number_integer()) {
            v = node.get<std::int64_t>();
            ok = v >= low && v <= high;
        }
        if (!ok) throw error(path, std::string("expected ") + what);
        return v;
    }

    static double nonFinite(const Json& node, bool& found) {
        found = node.is_string();
        if (!found) return 0;
        const auto s = node.get<std::string>();
        if (s == kNaN) return std::numeric_limits<double>::quiet_NaN();
        if (s == kInfinity) return std::numeric_limits<double>::infinity();
        if (s == kMinusInfinity) return -std::numeric_limits<double>::infinity();
        found = false;
        return 0;
    }

    static double real(const Json& node, const std::string& path) {
        bool special = false;
        const double d = nonFinite(node, special);
        if (special) return d;
        if (!node.is_number()) throw error(path, "expected a number");
        return node.get<double>();
    }

    // The float whose shortest decimal this number is; for other decimals the nearest float.
    static float single(const Json& node, const std::string& path) {
        bool special = false;
        const double special_value = nonFinite(node, special);
        if (special) return static_cast<float>(special_value);
        if (!node.is_number()) throw error(path, "expected a number");
        const double d = node.get<double>();
        if (!std::isfinite(d) || std::fabs(d) > std::numeric_limits<float>::max())
            throw error(path, "expected a number that fits a single float");
        const float f = static_cast<float>(d);
        if (ShortestAsDouble(f) == d) return f;
        for (float near : {std::nextafter(f, -std::numeric_limits<float>::infinity()),
                           std::nextafter(f, std::numeric_limits<float>::infinity())})
            if (std::isfinite(near) && ShortestAsDouble(near) == d) return near;
        return f;
    }

    std::vector<Frame> stack_;
};

bool IsScalar(const Json& j) {
    return !j.is_structured();
}

// Small groups of plain values (a variant, a screen line, the pens of a trend) on one line.
bool FitsOnOneLine(const Json& j) {
    if (!j.is_structured()) return true;
    if (j.size() > 4) return false;
    for (const auto& item : j) {
        if (!IsScalar(item)) return false;
    }
    return true;
}

void WriteNumber(std::string& out, double d) {
    if (d == 0 && std::signbit(d)) {
        out += "-0.0";  // "-0" would read back as the integer 0
        return;
    }
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, d);
    out.append(buf, r.ptr);
}

void Write(std::string& out, const Json& j, int indent) {
    switch (j.type()) {
        case Json::value_t::object:
        case Json::value_t::array: {
            const bool isObject = j.is_object();
            const char open = isObject ? '{' : '[';
            const char close = isObject ? '}' : ']';
            if (j.empty()) {
                out += open;
                out += close;
                return;
            }
            const bool oneLine = FitsOnOneLine(j);
            const std::string pad(static_cast<std::size_t>(indent + 2), ' ');
            out += open;
            bool first = true;
            auto element = [&](const std::string* key, const Json& value) {
                if (!first) out += oneLine ? ", " : ",";
                if (!oneLine) {
                    out += '\n';
                    out += pad;
                }
                first = false;
                if (key) {
                    out += Json(*key).dump();
                    out += ": ";
                }
                Write(out, value, indent + 2);
            };
            if (isObject) {
                for (const auto& item : j.items()) element(&item.key(), item.value());
            } else {
                for (const auto& item : j) element(nullptr, item);
            }
            if (!oneLine) {
                out += '\n';
                out.append(static_cast<std::size_t>(indent), ' ');
            }
            out += close;
            return;
        }
        case Json::value_t::number_float:
            WriteNumber(out, j.get<double>());
            return;
        default:
            out += j.dump();
            return;
    }
}

// The line (from 1) of each key of the text, in the order the parser meets them: a string
// followed by ":" outside any other string is a key.
std::vector<int> KeyLines(const std::string& text) {
    std::vector<int> lines;
    int line = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n') ++line;
        if (c != '"') continue;
        const int at = line;
        for (++i; i < text.size() && text[i] != '"'; ++i) {
            if (text[i] == '\\') ++i;  // an escaped character, a quote among them
        }
        std::size_t j = i + 1;
        while (j < text.size() &&
               (text[j] == ' ' || text[j] == '\t' || text[j] == '\r' || text[j] == '\n'))
            ++j;
        if (j < text.size() && text[j] == ':') lines.push_back(at);
    }
    return lines;
}

}  // namespace

Json ParseSetupJson(const std::string& text) {
    struct Duplicate {
        std::string key;
        std::size_t first = 0;  // ordinals of the two keys among all keys of the text
        std::size_t second = 0;
    };
    // The keys of every object being parsed, innermost last, each with its ordinal.
    std::vector<std::map<std::string, std::size_t>> open;
    std::size_t keys = 0;
    std::optional<Duplicate> duplicate;
    Json json = Json::parse(text, [&](int, Json::parse_event_t event, Json& parsed) {
        switch (event) {
            case Json::parse_event_t::object_start:
                open.emplace_back();
                break;
            case Json::parse_event_t::object_end:
                if (!open.empty()) open.pop_back();
                break;
            case Json::parse_event_t::key: {
                const std::string key = parsed.get<std::string>();
                const std::size_t ordinal = keys++;
                if (open.empty()) break;
                const auto [at, isNew] = open.back().emplace(key, ordinal);
                if (!isNew && !duplicate) duplicate = Duplicate{key, at->second, ordinal};
                break;
            }
            default:
                break;
        }
        return true;
    });
    if (duplicate) {
        const std::vector<int> lines = KeyLines(text);
        auto lineOf = [&](std::size_t ordinal) {
            return ordinal < lines.size() ? std::to_string(lines[ordinal]) : std::string("?");
        };
        throw JsonKeyError("key " + Json(duplicate->key).dump() +
                           " appears twice in one object, on lines " + lineOf(duplicate->first) +
                           " and " + lineOf(duplicate->second) + ": each key may be given once");
    }
    return json;
}

Json SetupToJson(const Station& st) {
    Json root = Json::object();
    ToJson visitor(root);
    VisitSetupItems(st, visitor);
    return root;
}

void SetupFromJson(const Json& json, Station& st) {
    FromJson visitor(json);
    VisitSetupItems(st, visitor);
    visitor.finish();
}

std::string WriteJson(const Json& json) {
    std::string out;
    Write(out, json, 0);
    out += '\n';
    return out;
}

}  // namespace kova::cli
