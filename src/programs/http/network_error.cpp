#include "programs/http/network_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString whatToDo(AddressOrigin origin) {
    return origin == AddressOrigin::enteredByUser ? u"Vui lòng kiểm tra lại Base URL."_s
                                                  : u"Vui lòng thử lại sau."_s;
}

QString certificateDescription(const QString& server, const QList<QSslError>& errors, AddressOrigin origin) {
    for (const QSslError& error : errors) {
        switch (error.error()) {
            case QSslError::CertificateExpired:
            case QSslError::CertificateNotYetValid:
                return u"Chứng chỉ bảo mật của %1 đã hết hạn hoặc chưa có hiệu lực. "
                       u"Vui lòng kiểm tra lại ngày giờ của máy."_s.arg(server);
            case QSslError::HostNameMismatch:
                return u"Chứng chỉ bảo mật không thuộc về %1. %2"_s.arg(server, whatToDo(origin));
            default:
                break;
        }
    }
    return u"Chứng chỉ bảo mật của %1 không đáng tin cậy, yêu cầu đã không được gửi đi."_s.arg(server);
}

QString proxyDescription(QNetworkReply::NetworkError error) {
    switch (error) {
        case QNetworkReply::ProxyConnectionRefusedError:
            return u"Máy chủ proxy từ chối kết nối. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
        case QNetworkReply::ProxyConnectionClosedError:
            return u"Máy chủ proxy đã ngắt kết nối. Vui lòng thử lại."_s;
        case QNetworkReply::ProxyNotFoundError:
            return u"Không tìm thấy máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
        case QNetworkReply::ProxyTimeoutError:
            return u"Máy chủ proxy không phản hồi. Vui lòng thử lại sau."_s;
        case QNetworkReply::ProxyAuthenticationRequiredError:
            return u"Máy chủ proxy yêu cầu đăng nhập. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
        default:
            return u"Không thể kết nối qua máy chủ proxy. Vui lòng kiểm tra lại cài đặt proxy của máy."_s;
    }
}

/// What is told otherwise, or of less use, when the address is none of the user's; null for all else.
QString ownAddressDescription(QNetworkReply::NetworkError error, const QString& server) {
    switch (error) {
        case QNetworkReply::ConnectionRefusedError:
            return u"Không thể kết nối tới %1: kết nối bị từ chối. Vui lòng thử lại sau."_s.arg(server);
        case QNetworkReply::HostNotFoundError:
            return u"Không tìm thấy máy chủ %1. Vui lòng kiểm tra kết nối Internet."_s.arg(server);
        case QNetworkReply::InsecureRedirectError:
            return u"%1 chuyển hướng sang một địa chỉ không an toàn, nên yêu cầu đã bị dừng."_s.arg(server);
        case QNetworkReply::ProtocolUnknownError:
            return u"Địa chỉ tải về không bắt đầu bằng http:// hoặc https://."_s;
        default:
            return {};
    }
}

QString description(QNetworkReply::NetworkError error, const QUrl& url, const QList<QSslError>& sslErrors,
    AddressOrigin origin) {
    const QString server = serverName(url);
    if (origin == AddressOrigin::programsOwn) {
        if (QString own = ownAddressDescription(error, server); !own.isNull())
            return own;
    }
    switch (error) {
        case QNetworkReply::ConnectionRefusedError:
            return u"Không thể kết nối tới %1: kết nối bị từ chối. Vui lòng kiểm tra lại Base URL "
                   u"và máy chủ có đang chạy không."_s.arg(server);
        case QNetworkReply::RemoteHostClosedError:
            return u"Kết nối tới %1 bị ngắt giữa chừng. Vui lòng thử lại."_s.arg(server);
        case QNetworkReply::HostNotFoundError:
            return u"Không tìm thấy máy chủ %1. Vui lòng kiểm tra kết nối Internet và Base URL."_s.arg(
                server);
        case QNetworkReply::TimeoutError:
            return u"Kết nối tới %1 đã hết thời gian chờ. Vui lòng thử lại sau."_s.arg(server);
        case QNetworkReply::OperationCanceledError:
            return TransportError::cancelled().errorDescription();
        case QNetworkReply::SslHandshakeFailedError:
            if (!sslErrors.isEmpty())
                return certificateDescription(server, sslErrors, origin);
            return u"Không thể thiết lập kết nối bảo mật (TLS) tới %1. %2"_s.arg(server, whatToDo(origin));
        case QNetworkReply::TemporaryNetworkFailureError:
        case QNetworkReply::NetworkSessionFailedError:
            return u"Mất kết nối mạng khi đang gửi yêu cầu. Vui lòng kiểm tra kết nối Internet và thử lại."_s;
        case QNetworkReply::TooManyRedirectsError:
            return u"%1 chuyển hướng quá nhiều lần. %2"_s.arg(server, whatToDo(origin));
        case QNetworkReply::InsecureRedirectError:
            return u"%1 chuyển hướng sang một địa chỉ khác, nên yêu cầu đã bị dừng để bảo vệ API Key. Vui lòng kiểm tra lại Base URL."_s
                .arg(server);
        case QNetworkReply::ProxyConnectionRefusedError:
        case QNetworkReply::ProxyConnectionClosedError:
        case QNetworkReply::ProxyNotFoundError:
        case QNetworkReply::ProxyTimeoutError:
        case QNetworkReply::ProxyAuthenticationRequiredError:
        case QNetworkReply::UnknownProxyError:
            return proxyDescription(error);
        case QNetworkReply::ProtocolUnknownError:
            return u"Base URL phải bắt đầu bằng http:// hoặc https://."_s;
        case QNetworkReply::ProtocolInvalidOperationError:
        case QNetworkReply::ProtocolFailure:
            return u"%1 trả lời không đúng giao thức HTTP. %2"_s.arg(server, whatToDo(origin));
        case QNetworkReply::UnknownContentError:
            return u"Không giải mã được nội dung phản hồi của %1."_s.arg(server);
        case QNetworkReply::UnknownNetworkError:
            return u"Không thể kết nối tới %1. Vui lòng kiểm tra kết nối Internet."_s.arg(server);
        default:
            return u"Kết nối tới %1 gặp lỗi không xác định (mã %2)."_s.arg(server, QString::number(error));
    }
}

}  // namespace

TransportError networkError(QNetworkReply::NetworkError error, const QUrl& url,
    const QList<QSslError>& sslErrors, AddressOrigin origin) {
    return TransportError(description(error, url, sslErrors, origin));
}

}  // namespace tralio
