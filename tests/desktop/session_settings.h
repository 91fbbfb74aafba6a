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
    [[nodiscard]] QString forSway() const {
        QString lines = QStringLiteral("output * scale %1\n").arg(scale);
        if (focus == Focus::byClick)
            lines += QStringLiteral("focus_follows_mouse no\n");
        if (!hasFrames)
            lines += QStringLiteral("default_border none\n");
        if (hasBackground)
            lines += QStringLiteral("output * background #D5DBE3 solid_color\n");
        return lines;
    }
};

}  // namespace tralio
