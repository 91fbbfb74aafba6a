#pragma once

#include <QString>

namespace tralio {

/// How the desktop of a test is set. By default it is what suits most tests: the focus goes where one clicks,
/// and windows have no frames; `asShipped` is what a user finds who has changed nothing.
struct SessionSettings {
    enum class Focus { byClick, followsPointer };

    [[nodiscard]] static SessionSettings asShipped() {
        return {.focus = Focus::followsPointer, .hasFrames = true, .hasBackground = false};
    }

    Focus focus = Focus::byClick;
    bool hasFrames = false;
    bool hasBackground = true;  ///< a plain colour, of which pictures are taken
    int outputs = 1;
    double scale = 1;

    /// As lines of sway's configuration, whose own defaults are what is shipped.
    [[nodiscard]] QString forSway() const;
    /// As openbox' configuration file.
    [[nodiscard]] QString forOpenbox() const;
};

}  // namespace tralio
