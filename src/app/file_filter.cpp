#include "app/file_filter.h"

#include <vector>

namespace kova::app {

namespace {
std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> parts;
    std::string cur;
    for (char c : s) {
        if (c == sep) {
            parts.push_back(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    parts.push_back(cur);
    return parts;
}

std::string trim(const std::string& s) {
    const auto b = s.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    return s.substr(b, s.find_last_not_of(' ') - b + 1);
}
}  // namespace

std::string QtFileFilter(const std::string& filter) {
    const auto parts = split(filter, '|');
    std::string out;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        std::string description = trim(parts[i]);
        std::string patterns = i + 1 < parts.size() ? trim(parts[i + 1]) : std::string();
        if (description.empty() && patterns.empty()) continue;
        for (char& c : patterns)
            if (c == ';') c = ' ';
        if (patterns.empty()) {
            // A description alone keeps its own parenthesised patterns.
            const auto open = description.find('(');
            const auto close = description.rfind(')');
            if (open != std::string::npos && close != std::string::npos && close > open)
                patterns = trim(description.substr(open + 1, close - open - 1));
            if (patterns.empty()) patterns.assign(1, '*');
        }
        const auto open = description.find('(');
        if (open != std::string::npos) description = trim(description.substr(0, open));
        if (description.empty()) description = patterns;
        if (!out.empty()) out += ";;";
        out += description + " (" + patterns + ")";
    }
    return out;
}

std::string DefaultSuffix(const std::string& filter) {
    const auto parts = split(filter, '|');
    if (parts.size() < 2) return {};
    std::string first = trim(parts[1]);
    const auto end = first.find_first_of("; ");
    if (end != std::string::npos) first = first.substr(0, end);
    const auto dot = first.rfind('.');
    if (dot == std::string::npos) return {};
    const std::string ext = first.substr(dot + 1);
    if (ext.empty() || ext.find_first_of("*?") != std::string::npos) return {};
    return ext;
}

}  // namespace kova::app
