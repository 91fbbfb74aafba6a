#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <openssl/evp.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

// Checks a file's Ed25519 signature. A process of its own, since the file is untrusted and may be large.
//
// Usage: tralio-verify FILE SIGNATURE PUBLIC_KEY, the last two in hexadecimal digits. Exits with 0 if the
// signature is valid, with 1 if it is not, and with 2 if it could not be checked.

namespace {

constexpr size_t signatureSize = 64;
constexpr size_t keySize = 32;

using Bytes = std::vector<unsigned char>;

struct FreeKey {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

/// Empty unless the text has exactly `size` bytes in hexadecimal digits.
Bytes fromHex(std::string_view digits, size_t size) {
    Bytes bytes;
    for (size_t at = 0; at + 1 < digits.size(); at += 2) {
        const std::string pair(digits.substr(at, 2));
        char* end = nullptr;
        bytes.push_back(static_cast<unsigned char>(std::strtoul(pair.c_str(), &end, 16)));
        if (*end != '\0')
            return {};
    }
    return digits.size() == 2 * size ? bytes : Bytes();
}

/// A file mapped into memory for its lifetime: Ed25519 verification needs the whole text at once.
class MappedFile final {
public:
    explicit MappedFile(const char* path) {
        const int file = open(path, O_RDONLY | O_CLOEXEC);
        struct stat status {};
        if (file >= 0 && fstat(file, &status) == 0 && status.st_size > 0) {
            m_size = static_cast<size_t>(status.st_size);
            m_data = mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, file, 0);
        }
        if (file >= 0)
            close(file);
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile() {
        if (isOpen())
            munmap(m_data, m_size);
    }

    [[nodiscard]] bool isOpen() const { return m_data != MAP_FAILED; }
    [[nodiscard]] const unsigned char* data() const { return static_cast<const unsigned char*>(m_data); }
    [[nodiscard]] size_t size() const { return m_size; }

private:
    void* m_data = MAP_FAILED;
    size_t m_size = 0;
};

}  // namespace

int main(int argc, char** argv) {
    constexpr int cannotTell = 2;
    if (argc != 4) {
        std::fputs("Usage: tralio-verify FILE SIGNATURE PUBLIC_KEY\n", stderr);
        return cannotTell;
    }
    const Bytes publicKey = fromHex(argv[3], keySize);
    const MappedFile file(argv[1]);
    if (publicKey.empty() || !file.isOpen())
        return cannotTell;
    const std::unique_ptr<EVP_PKEY, FreeKey> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, publicKey.data(), publicKey.size()));
    const std::unique_ptr<EVP_MD_CTX, FreeKey> context(EVP_MD_CTX_new());
    if (!key || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return cannotTell;
    const Bytes signature = fromHex(argv[2], signatureSize);
    const bool isGenuine = !signature.empty() &&
        EVP_DigestVerify(context.get(), signature.data(), signature.size(), file.data(), file.size()) == 1;
    return isGenuine ? EXIT_SUCCESS : EXIT_FAILURE;
}
