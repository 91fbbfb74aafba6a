#pragma once

#include <QRect>

#include <cstddef>
#include <numeric>
#include <vector>

namespace tralio {

/// The connected groups of a picture's pixels: every pixel bears the number of its group, counted from 0, or
/// `none`.
struct Labels {
    static constexpr int none = -1;

    int width = 0;
    int height = 0;
    std::vector<int> of;  ///< row by row from the top
    int count = 0;

    [[nodiscard]] int at(int x, int y) const { return of[index(x, y)]; }
    [[nodiscard]] size_t index(int x, int y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
    }
};

/// Where a group lies, and how many pixels it has.
struct Extent {
    QRect box;
    int area = 0;
};
[[nodiscard]] std::vector<Extent> extentsOf(const Labels& labels);

/// The side of the largest square that fits into each group: how thick it is.
[[nodiscard]] std::vector<int> largestSquaresOf(const Labels& groups);

enum class Neighbours { four, eight };

/// Groups the pixels for which `belongs(index)` holds: neighbours for which `connects(index, index)` holds
/// are of one group.
template <typename Belongs, typename Connects>
[[nodiscard]] Labels connect(
    int width, int height, Neighbours neighbours, Belongs belongs, Connects connects);

// Implementation.

/// Trees of pixels; the root of each stands for its group.
class PixelForest {
public:
    explicit PixelForest(size_t count) : m_parents(count) {
        std::iota(m_parents.begin(), m_parents.end(), 0);
    }

    [[nodiscard]] int root(int pixel) {
        while (parent(pixel) != pixel)
            pixel = parent(pixel) = parent(parent(pixel));
        return pixel;
    }

    void join(int a, int b) {
        a = root(a);
        b = root(b);
        // The earlier pixel is the root, so that a pass from the front meets roots first.
        if (a < b)
            parent(b) = a;
        else
            parent(a) = b;
    }

private:
    [[nodiscard]] int& parent(int pixel) { return m_parents[static_cast<size_t>(pixel)]; }

    std::vector<int> m_parents;
};

template <typename Belongs, typename Connects>
Labels connect(int width, int height, Neighbours neighbours, Belongs belongs, Connects connects) {
    Labels labels{width, height, {}, 0};
    labels.of.assign(static_cast<size_t>(width) * static_cast<size_t>(height), Labels::none);
    PixelForest forest(labels.of.size());
    const auto tie = [&](int pixel, int other) {
        if (belongs(static_cast<size_t>(other)) &&
            connects(static_cast<size_t>(pixel), static_cast<size_t>(other)))
            forest.join(pixel, other);
    };
    int pixel = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, ++pixel) {
            if (!belongs(static_cast<size_t>(pixel)))
                continue;
            if (x > 0)
                tie(pixel, pixel - 1);
            if (y > 0)
                tie(pixel, pixel - width);
            if (neighbours == Neighbours::four || y == 0)
                continue;
            if (x > 0)
                tie(pixel, pixel - width - 1);
            if (x + 1 < width)
                tie(pixel, pixel - width + 1);
        }
    }
    for (pixel = 0; pixel < static_cast<int>(labels.of.size()); ++pixel) {
        if (!belongs(static_cast<size_t>(pixel)))
            continue;
        const int root = forest.root(pixel);
        labels.of[static_cast<size_t>(pixel)] =
            root == pixel ? labels.count++ : labels.of[static_cast<size_t>(root)];
    }
    return labels;
}

}  // namespace tralio
