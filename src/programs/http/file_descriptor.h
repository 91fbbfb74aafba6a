#pragma once

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tralio {

/// Owns a file descriptor; -1 means none.
class FileDescriptor final {
public:
    explicit FileDescriptor(int number = -1) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() {
        if (m_number >= 0)
            close(m_number);
    }

    /// A duplicate of a descriptor.
    [[nodiscard]] static FileDescriptor duplicateOf(int number) {
        return FileDescriptor(fcntl(number, F_DUPFD_CLOEXEC, 3));
    }

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }
    /// Gives up ownership.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

}  // namespace tralio
