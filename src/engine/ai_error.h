#pragma once

#include <QString>

#include "common/localized_error.h"

namespace tralio {

/// Why a translation or a connection test failed, with the description that the user is shown.
class AIError final : public LocalizedError {
public:
    enum class Kind { httpError, decodingError, networkError, missingApiKey, invalidURL, emptyResponse };

    /// The message is shown only for status codes without a text of their own.
    [[nodiscard]] static AIError httpError(int statusCode, const QString& message);
    [[nodiscard]] static AIError decodingError(const QString& message);
    [[nodiscard]] static AIError networkError(const QString& message);
    [[nodiscard]] static AIError missingApiKey();
    [[nodiscard]] static AIError invalidURL();
    [[nodiscard]] static AIError emptyResponse();

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] int statusCode() const { return m_statusCode; }       ///< 0 unless the kind is `httpError`
    [[nodiscard]] const QString& message() const { return m_message; }  ///< empty for kinds without a payload

    bool operator==(const AIError& other) const;

private:
    AIError(QString description, Kind kind, int statusCode = 0, QString message = {});

    Kind m_kind;
    int m_statusCode;
    QString m_message;
};

}  // namespace tralio
