#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace tralio {

/// One channel of a picture, 0 to 255, row by row from the top.
class Plane {
public:
    Plane() = default;
    Plane(int width, int height, quint8 value = 0)
        : m_width(width),
          m_height(height),
          m_pixels(static_cast<size_t>(width) * static_cast<size_t>(height), value) {}

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

    [[nodiscard]] quint8* row(int y) { return m_pixels.data() + offset(y); }
    [[nodiscard]] const quint8* row(int y) const { return m_pixels.data() + offset(y); }

    [[nodiscard]] std::vector<quint8>& pixels() { return m_pixels; }
    [[nodiscard]] const std::vector<quint8>& pixels() const { return m_pixels; }

    bool operator==(const Plane&) const = default;

private:
    [[nodiscard]] size_t offset(int y) const { return static_cast<size_t>(y) * static_cast<size_t>(m_width); }

    int m_width = 0;
    int m_height = 0;
    std::vector<quint8> m_pixels;
};

}  // namespace tralio
