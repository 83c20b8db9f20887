#include "links/web/password_hash.h"

#include <crypt.h>

#include <cstring>
#include <memory>

namespace kova::web {

namespace {
constexpr std::size_t kMaxPasswordBytes = 1024;
}  // namespace

std::string HashPassword(const std::string& password) {
    if (password.size() > kMaxPasswordBytes || password.find('\0') != std::string::npos) return {};
    char salt[CRYPT_GENSALT_OUTPUT_SIZE];
    // "$y$" with the library's default cost; the random salt comes from the system.
    if (!crypt_gensalt_rn("$y$", 0, nullptr, 0, salt, sizeof salt)) return {};
    auto data = std::make_unique<crypt_data>();
    const char* out = crypt_rn(password.c_str(), salt, data.get(), sizeof(crypt_data));
    if (!out || out[0] == '*') return {};
    return out;
}

bool VerifyPassword(const std::string& password, const std::string& storedHash) {
    if (password.size() > kMaxPasswordBytes || storedHash.size() < 4 || storedHash[0] != '$')
        return false;
    auto data = std::make_unique<crypt_data>();
    const char* out =
        crypt_rn(password.c_str(), storedHash.c_str(), data.get(), sizeof(crypt_data));
    if (!out || out[0] == '*') return false;
    const std::size_t n = std::strlen(out);
    if (n != storedHash.size()) return false;
    unsigned char differ = 0;
    for (std::size_t i = 0; i < n; ++i)
        differ |= static_cast<unsigned char>(out[i] ^ storedHash[i]);
    return differ == 0;
}

const std::string& DummyHash() {
    static const std::string hash = HashPassword("no user has this password");
    return hash;
}

}  // namespace kova::web
