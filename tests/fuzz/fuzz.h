#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace tralio::fuzz {

/// One input for one reader: each of these programs has its own.
void readInput(const QByteArray& input);

/// Ends the process, as a crash does, when something does not hold that must.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// The path of a file in memory with these bytes, the same one each time.
[[nodiscard]] inline QString fileOf(const QByteArray& bytes) {
    static const int file = memfd_create("fuzz", MFD_CLOEXEC);
    require(file >= 0 && ftruncate(file, 0) == 0, "there is a file in memory");
    require(pwrite(file, bytes.constData(), static_cast<size_t>(bytes.size()), 0) == bytes.size(),
        "it is written");
    return QStringLiteral("/proc/self/fd/%1").arg(file);
}

}  // namespace tralio::fuzz

/// What libFuzzer calls, and our driver.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tralio::fuzz::readInput({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    return 0;
}
