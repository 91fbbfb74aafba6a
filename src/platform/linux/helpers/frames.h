#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The framing between the program and its helper processes on standard input and output: a mark, a size and
/// a payload. Neither side trusts the other's bytes.
namespace tralio::frames {

[[nodiscard]] std::string frame(std::string_view payload);

/// Splits a stream of bytes into the payloads of its frames.
class Reader {
public:
    explicit Reader(size_t maximumSize) : m_maximumSize(maximumSize) {}

    void add(std::string_view bytes) { m_buffer += bytes; }
    /// Waits for bytes from a file descriptor and adds them; false at its end.
    [[nodiscard]] bool readFrom(int file);

    /// The next payload, or nothing while it is incomplete.
    [[nodiscard]] std::optional<std::string> next();

    /// Whether something other than a frame has arrived; the rest of the stream cannot be read.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    size_t m_maximumSize;
    std::string m_buffer;
    bool m_isBroken = false;
};

/// Called by a helper process at start: reserves the standard output for frames, so that nothing a library
/// prints gets between them. Returns the descriptor to write frames to, or -1.
[[nodiscard]] int takeStandardOutput();

/// Writes all bytes, however long the reader takes; ends the process if the reader has gone.
void writeAll(int file, std::string_view bytes);

}  // namespace tralio::frames
