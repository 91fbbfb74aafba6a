#include "engine/ai_error.h"

#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString httpDescription(int statusCode, const QString& message) {
    switch (statusCode) {
        case 401:
            return u"Lỗi xác thực (401): API Key không đúng hoặc đã hết hạn."_s;
        case 404:
            return u"Lỗi đường dẫn (404): Endpoint API không tồn tại. Vui lòng kiểm tra lại Base URL."_s;
        case 429:
            return u"Lỗi giới hạn (429): Tài khoản API bị hết quota hoặc quá số lượng request."_s;
        default:
            return u"Lỗi máy chủ ("_s + QString::number(statusCode) + u"): "_s + message;
    }
}

}  // namespace

AIError::AIError(QString description, Kind kind, int statusCode, QString message)
    : LocalizedError(std::move(description)),
      m_kind(kind),
      m_statusCode(statusCode),
      m_message(std::move(message)) {}

AIError AIError::httpError(int statusCode, const QString& message) {
    return {httpDescription(statusCode, message), Kind::httpError, statusCode, message};
}

AIError AIError::decodingError(const QString& message) {
    return {u"Không thể đọc phản hồi từ AI: "_s + message, Kind::decodingError, 0, message};
}

AIError AIError::networkError(const QString& message) {
    return {u"Lỗi kết nối mạng: "_s + message, Kind::networkError, 0, message};
}

AIError AIError::missingApiKey() {
    return {u"Chưa có API Key. Vui lòng vào tab Cài đặt để nhập API Key."_s, Kind::missingApiKey};
}

AIError AIError::invalidURL() {
    return {u"Địa chỉ API Base URL không hợp lệ."_s, Kind::invalidURL};
}

AIError AIError::emptyResponse() {
    return {u"Mô hình AI trả về nội dung rỗng. Vui lòng thử lại."_s, Kind::emptyResponse};
}

bool AIError::operator==(const AIError& other) const {
    return m_kind == other.m_kind && m_statusCode == other.m_statusCode && m_message == other.m_message;
}

}  // namespace tralio
