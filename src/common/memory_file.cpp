#include "common/memory_file.h"

#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>

namespace tralio {

using namespace Qt::StringLiterals;

MemoryFile::MemoryFile() : m_file(memfd_create("tralio-picture", MFD_CLOEXEC)) {}

MemoryFile::MemoryFile(QByteArrayView content) : MemoryFile() {
    append(content);
}

MemoryFile::~MemoryFile() {
    if (m_file >= 0)
        close(m_file);
}

void MemoryFile::append(QByteArrayView bytes) {
    while (!bytes.isEmpty() && m_file >= 0) {
        const ssize_t written = write(m_file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written > 0) {
            m_size += written;
            bytes = bytes.sliced(written);
        } else if (errno != EINTR) {
            close(m_file);
            m_file = -1;
            m_size = 0;
        }
    }
}

QString MemoryFile::path() const {
    return m_file < 0 ? QString() : u"/proc/%1/fd/%2"_s.arg(getpid()).arg(m_file);
}

}  // namespace tralio
