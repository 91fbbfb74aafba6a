#include "app/popover_placement.h"

#include "support/testing.h"

namespace tralio {
namespace {

constexpr QSize popover{530, 585};

TEST(PopoverPlacement, is_at_the_anchor_and_within_the_screen_without_its_panels) {
    const auto expect = [](const char* situation, const QRect& available, const std::optional<QRect>& anchor,
                            std::pair<int, int> corner) {
        const QRect place = popoverPlace(popover, available, anchor);
        EXPECT_EQ(std::pair(place.left(), place.top()), corner) << situation;
        EXPECT_EQ(place.size(), popover) << situation;
    };
    constexpr QRect belowTopPanel{0, 30, 1920, 1050};
    constexpr QRect aboveBottomPanel{0, 0, 1920, 1040};
    expect("centred below an item of a top panel", belowTopPanel, QRect{1200, 3, 24, 24}, {947, 36});
    expect("below an item that hangs into the screen", belowTopPanel, QRect{1200, 10, 24, 40}, {947, 56});
    expect("above an item of a bottom panel", aboveBottomPanel, QRect{1200, 1048, 24, 24}, {947, 449});
    expect(
        "above an item that stands in the screen", aboveBottomPanel, QRect{1200, 1000, 24, 24}, {947, 409});
    expect("pushed in from the right edge", belowTopPanel, QRect{1890, 3, 24, 24}, {1384, 36});
    expect("pushed in from the left edge", belowTopPanel, QRect{0, 3, 24, 24}, {6, 36});
    expect("beside a left panel, upper half", {48, 0, 1872, 1080}, QRect{12, 200, 24, 24}, {54, 230});
    expect("beside a right panel, lower half", {0, 0, 1872, 1080}, QRect{1884, 900, 24, 24}, {1336, 309});
    expect(
        "no room below an anchor of the upper half", {0, 0, 1024, 700}, QRect{500, 300, 24, 24}, {247, 109});
    expect("top right without an anchor", belowTopPanel, std::nullopt, {1384, 36});
    expect("the beginning on a small screen", {0, 0, 480, 400}, QRect{400, 0, 20, 20}, {6, 6});
    expect("a small screen without an anchor", {100, 50, 480, 400}, std::nullopt, {106, 56});
    expect("a screen on the left", {-1280, -170, 1280, 994}, QRect{-60, -195, 24, 24}, {-536, -164});
    expect("a bottom panel on a screen above", {0, -1080, 1920, 1040}, QRect{1000, -32, 24, 24}, {747, -631});
}

TEST(PopoverPlacement, a_low_screen_has_a_lower_popover_down_to_what_its_panels_need) {
    constexpr int wanted = 585;
    for (const auto& [screen, height] : {std::pair(1080, 585), std::pair(597, 585), std::pair(596, 584),
             std::pair(546, 534), std::pair(400, 400)})
        EXPECT_EQ(popoverHeight(wanted, {0, 30, 1024, screen}), height);
}

}  // namespace
}  // namespace tralio
