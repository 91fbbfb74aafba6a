#pragma once

#include <QObject>
#include <QString>

namespace tralio {

/// What this program last put on the clipboard, also when the user copied in one of its windows.
class OwnCopies final : public QObject {
public:
    OwnCopies();

    [[nodiscard]] QString text() const { return m_text; }
    /// For texts that were put on the clipboard without Qt.
    void note(const QString& text) { m_text = text; }

private:
    QString m_text;
};

}  // namespace tralio
