#include "links/web/web_users.h"

#include "core/atomic_file.h"

#include <sstream>
#include <vector>

namespace kova::web {

namespace {

constexpr std::size_t kMaxFileBytes = 1 << 20;
constexpr std::size_t kMaxUsers = 1000;

std::vector<std::string> splitColons(const std::string& line) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (;;) {
        const std::size_t at = line.find(':', from);
        parts.push_back(line.substr(from, at == std::string::npos ? std::string::npos : at - from));
        if (at == std::string::npos) return parts;
        from = at + 1;
    }
}

bool hashLooksRight(const std::string& h) {
    if (h.size() < 4 || h[0] != '$') return false;
    for (char c : h) {
        const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                        (c >= '0' && c <= '9') || c == '$' || c == '.' || c == '/';
        if (!ok) return false;
    }
    return true;
}

bool isSkipped(const std::string& line) {
    return line.empty() || line[0] == '#';
}

}  // namespace

const char* RoleName(Role role) {
    return role == Role::Operator ? "operator" : "viewer";
}

std::optional<Role> ParseRole(const std::string& text) {
    if (text == "viewer") return Role::Viewer;
    if (text == "operator") return Role::Operator;
    return std::nullopt;
}

bool ValidUserName(const std::string& name) {
    if (name.empty() || name.size() > 32) return false;
    for (char c : name) {
        const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                        (c >= '0' && c <= '9') || c == '_' || c == '.' || c == '-';
        if (!ok) return false;
    }
    return true;
}

bool WebUsers::load(const std::string& path, std::string& error) {
    std::string text;
    if (!ReadWholeFile(path, text, error, kMaxFileBytes)) {
        error = "the users file: " + error;
        return false;
    }
    return parse(text, path, error);
}

bool WebUsers::parse(const std::string& text, const std::string& path, std::string& error) {
    std::map<std::string, WebUser> users;
    std::istringstream lines(text);
    std::string line;
    int number = 0;
    const auto fail = [&](const std::string& what) {
        error = "the users file " + path + ", line " + std::to_string(number) + ": " + what;
        return false;
    };
    while (std::getline(lines, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (isSkipped(line)) continue;
        const std::vector<std::string> f = splitColons(line);
        if (f.size() != 3) return fail("expected name:role:hash");
        if (!ValidUserName(f[0]))
            return fail("a user name is 1 to 32 letters, digits, \"_\", \".\" or \"-\"");
        const std::optional<Role> role = ParseRole(f[1]);
        if (!role) return fail("the role must be viewer or operator");
        if (!hashLooksRight(f[2]))
            return fail("the password hash is not one kova-cli passwd makes");
        if (users.count(f[0])) return fail("user " + f[0] + " is named twice");
        if (users.size() >= kMaxUsers) return fail("more than 1000 users");
        users[f[0]] = {*role, f[2]};
    }
    users_ = std::move(users);
    return true;
}

const WebUser* WebUsers::find(const std::string& name) const {
    const auto it = users_.find(name);
    return it == users_.end() ? nullptr : &it->second;
}

std::string WebUsers::WithUser(const std::string& fileText, const std::string& name, Role role,
                               const std::string& hash) {
    const std::string entry = name + ":" + RoleName(role) + ":" + hash;
    std::istringstream lines(fileText);
    std::string line, out;
    bool replaced = false;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!isSkipped(line) && line.rfind(name + ":", 0) == 0) {
            if (!replaced) out += entry + "\n";
            replaced = true;
            continue;
        }
        out += line + "\n";
    }
    if (!replaced) out += entry + "\n";
    return out;
}

}  // namespace kova::web
