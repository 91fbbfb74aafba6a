#include "common/localized_error.h"

#include <utility>

namespace tralio {

LocalizedError::LocalizedError(QString description)
    : m_description(std::move(description)), m_utf8(m_description.toUtf8()) {}

}  // namespace tralio
