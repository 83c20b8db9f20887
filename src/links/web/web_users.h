#pragma once
// The users of the web page, from the file given with --http-users: one line per user,
// "name:role:hash", the role "viewer" or "operator", the hash as `kova-cli passwd` makes it.
// Blank lines and lines starting with "#" are skipped.
#include <map>
#include <optional>
#include <string>

namespace kova::web {

enum class Role { Viewer, Operator };

const char* RoleName(Role role);
std::optional<Role> ParseRole(const std::string& text);

struct WebUser {
    Role role = Role::Viewer;
    std::string hash;
};

// User names: 1..32 of letters, digits, "_", "." and "-".
bool ValidUserName(const std::string& name);

class WebUsers {
  public:
    // Reads the file; false with `error` naming the file, the line and what is wrong.
    bool load(const std::string& path, std::string& error);
    // Reads file text (the same checks; `path` only names it in errors).
    bool parse(const std::string& text, const std::string& path, std::string& error);

    const WebUser* find(const std::string& name) const;
    std::size_t size() const { return users_.size(); }

    // The file text with this user's line added or replaced; the other lines, comments
    // included, stay as they were.
    static std::string WithUser(const std::string& fileText, const std::string& name, Role role,
                                const std::string& hash);

  private:
    std::map<std::string, WebUser> users_;
};

}  // namespace kova::web
