#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How the program and its helper processes talk over standard input and output: in frames of a mark, a size
/// and a payload. Neither side trusts the other's bytes.
namespace tralio::frames {

[[nodiscard]] std::string frame(std::string_view payload);

/// Cuts a stream of bytes into the payloads of its frames.
class Reader {
public:
    explicit Reader(size_t maximumSize) : m_maximumSize(maximumSize) {}

    void add(std::string_view bytes) { m_buffer += bytes; }
    /// Waits for more bytes from a file; false at its end.
    [[nodiscard]] bool readFrom(int file);

    /// The next payload, or nothing while it is incomplete.
    [[nodiscard]] std::optional<std::string> next();

    /// Whether what came is no frame; nothing can be made of what follows.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    size_t m_maximumSize;
    std::string m_buffer;
    bool m_isBroken = false;
};

/// What a helper process does with its output: takes the standard output for frames alone, so that nothing a
/// library prints there gets between them. The descriptor, or -1.
[[nodiscard]] int takeStandardOutput();

/// Writes everything, however long the other side takes to read; ends the process when nobody is there to.
void writeAll(int file, std::string_view bytes);

}  // namespace tralio::frames
