#include "ocr/ocr_error.h"

#include <utility>

namespace tralio {

using namespace Qt::StringLiterals;

OCRError::OCRError(QString description, Kind kind) : LocalizedError(std::move(description)), m_kind(kind) {}

OCRError OCRError::recognitionFailed(const QString& reason) {
    return {u"Lỗi nhận diện chữ trong ảnh: "_s + reason, Kind::recognitionFailed};
}

OCRError OCRError::invalidImage() {
    return {u"Không thể phân tích dữ liệu hình ảnh."_s, Kind::invalidImage};
}

OCRError OCRError::noTextFound() {
    return {u"Không tìm thấy văn bản nào trong hình ảnh."_s, Kind::noTextFound};
}

bool OCRError::operator==(const OCRError& other) const {
    return m_kind == other.m_kind && errorDescription() == other.errorDescription();
}

}  // namespace tralio
