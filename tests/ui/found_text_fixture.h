#pragma once

#include "common/background.h"
#include "ui/translate_panel_support.h"

namespace tralio {

/// Text that the panel finds elsewhere than under the user's fingers: on the clipboard, in pictures, in
/// files.
struct FoundText : TranslatePanel {
    FoundText() { input->text = QStringLiteral("typed"); }

    static Picture picture() { return std::make_shared<MemoryFile>("not looked at by the panel"); }
    [[nodiscard]] QUrl file(const QString& name, const QByteArray& content) const {
        return QUrl::fromLocalFile(writeFile(folder.filePath(name), content));
    }
    bool recognitionEnds() {
        return eventually([this] { return !panel->isRecognizing(); });
    }
    /// Lets everything happen that a drop may lead to on other threads.
    bool settles() { return eventually(&background::isIdle) && nextTurn() && recognitionEnds(); }

    QTemporaryDir folder;
};

}  // namespace tralio
