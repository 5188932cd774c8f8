#include "Secrets.h"

#include <sodium.h>

#include <array>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace navorin::demo {

namespace {

constexpr std::uint32_t codeCount = 1'000'000;

void prepare()
{
    static const int result = sodium_init();
    if (result < 0)
        throw std::runtime_error("libsodium did not start");
}

std::mutex &hashing()
{
    static std::mutex mutex;
    return mutex;
}

std::string hexadecimal(const std::vector<unsigned char> &bytes)
{
    std::string text(bytes.size() * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
    text.pop_back();
    return text;
}

} // namespace

std::string hashPassword(const std::string &password)
{
    prepare();
    const std::lock_guard lock(hashing());
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (crypto_pwhash_str(hash.data(), password.data(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        throw std::runtime_error("not enough memory to hash a password");
    return hash.data();
}

bool passwordMatches(const std::string &password, const std::string &hash)
{
    prepare();
    const std::lock_guard lock(hashing());
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

std::string randomToken(std::size_t bytes)
{
    prepare();
    std::vector<unsigned char> random(bytes);
    randombytes_buf(random.data(), random.size());
    return hexadecimal(random);
}

std::string randomCode()
{
    prepare();
    const std::string digits = std::to_string(randombytes_uniform(codeCount) + codeCount);
    return digits.substr(1);
}

std::string tokenHash(const std::string &token)
{
    std::vector<unsigned char> hash(crypto_hash_sha256_BYTES);
    crypto_hash_sha256(hash.data(), reinterpret_cast<const unsigned char *>(token.data()), token.size());
    return hexadecimal(hash);
}

} // namespace navorin::demo
