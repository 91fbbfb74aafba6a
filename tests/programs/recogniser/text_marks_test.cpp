#include <algorithm>
#include <array>

#include "programs/recogniser/sheet.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Letters as they are drawn for a display whose pixels are stripes of red, green and blue, or in the grey
/// that those are together.
QImage forStripes(const Sheet& sheet, bool inGrey) {
    const QImage& fine = sheet.image();
    const auto stripe = [&](int channel, int x, int y) {
        int sum = 0;
        for (int i = -1; i <= 1; ++i)
            sum += fine.pixelColor(std::clamp(3 * x + channel + i, 0, fine.width() - 1), y).value();
        return sum / 3;
    };
    QImage image(fine.width() / 3, fine.height(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const std::array<int, 3> colour{stripe(0, x, y), stripe(1, x, y), stripe(2, x, y)};
            const int grey = (colour[0] + colour[1] + colour[2]) / 3;
            image.setPixel(x, y, inGrey ? qRgb(grey, grey, grey) : qRgb(colour[0], colour[1], colour[2]));
        }
    return image;
}

TEST(TextMarks, coloured_fringes_make_letters_no_bolder_and_a_colour_makes_them_no_fainter) {
    const QRect all(0, 0, 100, 60);
    Sheet fine(300, 60);
    for (int letter = 0; letter < 8; ++letter)
        fine.fill({40 + letter * 25, 20, 4, 18}, Qt::black).fill({40 + letter * 25, 20, 14, 2}, Qt::black);
    const Plane grey = TextMarks(forStripes(fine, true)).strengths(TextMarks::Kind::difference, all);
    const Plane striped = TextMarks(forStripes(fine, false)).strengths(TextMarks::Kind::difference, all);
    for (size_t i = 0; i < grey.pixels().size(); ++i)
        ASSERT_NEAR(grey.pixels()[i], striped.pixels()[i], 2) << i;
    const Sheet red = Sheet(100, 60).type({10, 20}, 6, 14, QColor(255, 0, 0));
    EXPECT_EQ(
        std::ranges::max(TextMarks(red.image()).strengths(TextMarks::Kind::difference, all).pixels()), 255);
}

}  // namespace
}  // namespace tralio
