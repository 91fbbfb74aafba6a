#include "engine/transport_error.h"

namespace tralio {

using namespace Qt::StringLiterals;

QString serverName(const QUrl& url) {
    if (url.host().isEmpty())
        return u"máy chủ"_s;
    return url.authority(QUrl::FullyDecoded | QUrl::RemoveUserInfo);
}

TransportError TransportError::cancelled() {
    return TransportError(u"Yêu cầu đã bị hủy."_s);
}

TransportError TransportError::foreignScheme() {
    return TransportError(u"Địa chỉ tải về không bắt đầu bằng http:// hoặc https://."_s);
}

TransportError TransportError::timedOut(const QUrl& url, std::chrono::milliseconds silence) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(silence).count();
    return TransportError(u"%1 không phản hồi trong %2 giây. Vui lòng thử lại sau."_s.arg(
        serverName(url), QString::number(seconds)));
}

TransportError TransportError::replyTooLarge(const QUrl& url, qsizetype limitInBytes) {
    return TransportError(u"Phản hồi của %1 quá lớn (hơn %2 MB), yêu cầu đã bị dừng."_s.arg(
        serverName(url), QString::number(limitInBytes / (1024 * 1024))));
}

}  // namespace tralio
