#pragma once

#include <QString>

#include "common/localized_error.h"

namespace tralio {

/// Why no text came out of an image, described in the words that the user is shown.
class OCRError final : public LocalizedError {
public:
    enum class Kind { recognitionFailed, invalidImage, noTextFound };

    /// The reason is the recogniser's own description of its failure.
    [[nodiscard]] static OCRError recognitionFailed(const QString& reason);
    [[nodiscard]] static OCRError invalidImage();
    [[nodiscard]] static OCRError noTextFound();

    [[nodiscard]] Kind kind() const { return m_kind; }

    bool operator==(const OCRError& other) const;

private:
    OCRError(QString description, Kind kind);

    Kind m_kind;
};

}  // namespace tralio
