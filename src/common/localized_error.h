#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace tralio {

/// A failure whose description is shown to the user unchanged.
class LocalizedError : public std::exception {
public:
    explicit LocalizedError(QString description);

    [[nodiscard]] const QString& errorDescription() const { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_description;
    QByteArray m_utf8;
};

}  // namespace tralio
