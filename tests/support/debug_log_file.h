#pragma once

#include "common/debug_log.h"
#include "support/testing.h"

namespace tralio {

/// A debug log for one test.
class DebugLogFile final {
public:
    DebugLogFile() { setDebugLogPath(path()); }

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("debug.log")); }

    [[nodiscard]] QByteArray content() const { return contentOf(path()); }

    /// The messages, without time stamps.
    [[nodiscard]] QStringList messages() const {
        QStringList messages;
        for (const QString& line : QString::fromUtf8(content()).split(u'\n', Qt::SkipEmptyParts))
            messages += line.section(QStringLiteral("] "), 1);
        return messages;
    }

    void clear() const { QFile::remove(path()); }

private:
    QTemporaryDir m_folder;
};

}  // namespace tralio
