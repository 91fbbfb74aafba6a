#pragma once

namespace tralio {

/// Owns a file descriptor, or none (-1).
class FileDescriptor final {
public:
    explicit FileDescriptor(int number = -1) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    /// Another number for the same open file.
    [[nodiscard]] static FileDescriptor duplicateOf(int number);

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }
    /// Leaves it to somebody else.
    [[nodiscard]] int release();

private:
    int m_number;
};

}  // namespace tralio
