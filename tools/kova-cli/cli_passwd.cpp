// kova-cli passwd USERS-FILE NAME [--role viewer|operator]: adds a user of the station's web
// page to the users file, or gives one a new password or role. The password is read from
// standard input (asked for twice, without echo, on a terminal), hashed with a new salt,
// and the file is replaced atomically, readable by its owner only.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "core/atomic_file.h"
#ifdef KOVA_WITH_WEB
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "links/web/password_hash.h"
#include "links/web/web_users.h"
#endif

namespace kova::cli {

namespace {

struct PasswdOptions {
    std::string file;
    std::string user;
    std::string role = "operator";
};

#ifdef KOVA_WITH_WEB
constexpr std::size_t kMinPassword = 8;
constexpr std::size_t kMaxPassword = 1024;

// One line of standard input; on a terminal asked for with `prompt` and not echoed.
bool readSecretLine(const char* prompt, std::string& line) {
    const bool tty = isatty(STDIN_FILENO) != 0;
    termios saved{};
    if (tty) {
        std::fprintf(stderr, "%s", prompt);
        std::fflush(stderr);
        tcgetattr(STDIN_FILENO, &saved);
        termios quiet = saved;
        quiet.c_lflag &= static_cast<tcflag_t>(~ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    const bool got = static_cast<bool>(std::getline(std::cin, line));
    if (tty) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
        std::fprintf(stderr, "\n");
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return got;
}

int runPasswd(const PasswdOptions& o) {
    if (!web::ValidUserName(o.user))
        return Fail(
            "passwd: a user name is 1 to 32 letters, digits, \"_\", \".\" or \"-\", not \"" +
            o.user + "\"");
    const std::optional<web::Role> role = web::ParseRole(o.role);
    if (!role) return Fail("passwd: --role takes viewer or operator, not \"" + o.role + "\"");
    std::string text, error;
    std::error_code ec;
    if (std::filesystem::exists(o.file, ec)) {
        web::WebUsers users;
        if (!ReadWholeFile(o.file, text, error, 1u << 20) || !users.parse(text, o.file, error))
            return Fail("passwd: " + error);
    }
    std::string password, again;
    if (!readSecretLine("Password: ", password)) return Fail("passwd: no password was given");
    if (isatty(STDIN_FILENO) && (!readSecretLine("Again: ", again) || again != password))
        return Fail("passwd: the two passwords differ; nothing was changed");
    if (password.size() < kMinPassword || password.size() > kMaxPassword)
        return Fail("passwd: a password has 8 to 1024 characters");
    const std::string hash = web::HashPassword(password);
    if (hash.empty()) return Fail("passwd: the system could not hash the password");
    try {
        // Only the owner may read the hashes: the new file is made so from the start.
        const mode_t before = umask(077);
        WriteFileAtomically(o.file, web::WebUsers::WithUser(text, o.user, *role, hash));
        umask(before);
    } catch (const std::exception& e) {
        return Fail(std::string("passwd: ") + e.what());
    }
    std::fprintf(stderr, "kova-cli: passwd: %s is a%s %s in %s\n", o.user.c_str(),
                 *role == web::Role::Operator ? "n" : "", web::RoleName(*role), o.file.c_str());
    return 0;
}
#else
int runPasswd(const PasswdOptions&) {
    return Fail("passwd: this kova-cli was built without the web page (civetweb)");
}
#endif

}  // namespace

void AddPasswdCommand(CLI::App& app, CommandRun& run) {
    auto o = std::make_shared<PasswdOptions>();
    CLI::App* cmd = app.add_subcommand(
        "passwd",
        "Adds a user of the station's web page to a users file, or sets a user's password and "
        "role; the password is read from standard input");
    cmd->add_option("USERS-FILE", o->file, "The users file (--http-users of kova-cli run)")
        ->required();
    cmd->add_option("NAME", o->user, "The user's name")->required();
    cmd->add_option("--role", o->role,
                    "viewer (reads only) or operator (may write); operator "
                    "when not given")
        ->type_name("ROLE");
    cmd->callback([o, &run] { run = [o] { return runPasswd(*o); }; });
}

}  // namespace kova::cli
