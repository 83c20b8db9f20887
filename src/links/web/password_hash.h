#pragma once
// Passwords of the web page's users are kept as salted yescrypt hashes made by the system's
// crypt library (libxcrypt), the same scheme as the system's own password file.
#include <string>

namespace kova::web {

// A new salted hash of the password ("$y$..."); "" when the system cannot make one.
std::string HashPassword(const std::string& password);

// True when the password gives the stored hash. Takes the same time whether the first or
// the last character differs; a hash that is not one of crypt's is never matched.
bool VerifyPassword(const std::string& password, const std::string& storedHash);

// A hash to check against when the user name is unknown, so that a login for a name that
// does not exist takes as long as one for a name that does.
const std::string& DummyHash();

}  // namespace kova::web
