#pragma once

#include <QByteArrayView>
#include <QString>

namespace tralio {

/// Bytes in an anonymous in-memory file (memfd). Another process of the user can open them by `path()`
/// without a copy; they are freed with this object. May be filled on any thread, but by one at a time.
class MemoryFile final {
public:
    MemoryFile();
    explicit MemoryFile(QByteArrayView content);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    /// If there is no memory left, the file becomes broken and empty.
    void append(QByteArrayView bytes);

    [[nodiscard]] qint64 size() const { return m_size; }
    /// The path by which other processes can open it while this object lives.
    [[nodiscard]] QString path() const;

private:
    int m_file;
    qint64 m_size = 0;
};

}  // namespace tralio
