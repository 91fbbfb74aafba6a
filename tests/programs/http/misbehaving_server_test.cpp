#include <openssl/x509_vfy.h>

#include "engine/engine_test_support.h"
#include "programs/http/transport_words.h"
#include "support/raw_server.h"
#include "support/tls_server.h"

namespace tralio {
namespace {

using MisbehavingServerTest = EngineTest;

TEST_F(MisbehavingServerTest, a_server_that_nobody_vouches_for_gets_neither_text_nor_key_and_is_told_why) {
    const QTemporaryDir folder;
    makeCertificates(folder);
    const QString authority = folder.filePath(u"ca.pem"_s);
    const QByteArray hash =
        runToEnd(u"openssl"_s, {u"x509"_s, u"-noout"_s, u"-hash"_s, u"-in"_s, authority}).trimmed();
    const QTemporaryDir byHash;
    ASSERT_TRUE(QFile::copy(authority, byHash.filePath(QString::fromLatin1(hash + ".0"))));
    const TlsServer good(folder, {u"-cert"_s, u"good.pem"_s, u"-key"_s, u"good.key"_s});
    const auto isTrustedBy = [&](const char* variable, const QString& place) {
        qputenv(variable, QFile::encodeName(place));
        HelperHttpClient client(QStringLiteral(HTTP_PROGRAM), clock);
        return QCoro::waitFor(client.get({QUrl(good.url)}, 20s, {})).status == 200;
    };
    EXPECT_TRUE(isTrustedBy("SSL_CERT_DIR", byHash.path()));
    qunsetenv("SSL_CERT_DIR");
    EXPECT_TRUE(isTrustedBy("SSL_CERT_FILE", authority));

    const std::tuple<QString, QStringList, QString> cases[] = {{u"self"_s, {}, u"tự ký"_s},
        {u"expired"_s, {}, u"hết hạn"_s}, {u"other"_s, {}, u"không thuộc về"_s},
        {u"good"_s, {u"-tls1"_s, u"-cipher"_s, u"ALL:@SECLEVEL=0"_s}, u"TLS đã lỗi thời"_s}};
    for (const auto& [certificate, options, words] : cases) {
        const TlsServer server(folder,
            QStringList{u"-cert"_s, certificate + u".pem"_s, u"-key"_s, certificate + u".key"_s} + options);
        settings.baseURL = server.url;
        QCoro::Task<QString> second = testConnection();
        for (const QString& told : {wordsOf(translate()), wordsOf(std::move(second))}) {
            EXPECT_TRUE(told.contains(words)) << certificate.toStdString() << ": " << told.toStdString();
            EXPECT_TRUE(told.contains(QUrl(server.url).authority())) << told.toStdString();
        }
    }
    RawServer plain([](RawServer::Connection& peer) { peer.send("HTTP/1.1 400 Bad Request\r\n\r\n"); });
    settings.baseURL = u"https://127.0.0.1:%1/v1"_s.arg(plain.port());
    EXPECT_TRUE(wordsOf(translate()).contains(u"không dùng kết nối bảo mật"_s));
    qunsetenv("SSL_CERT_FILE");
}

TEST(TransportWords, tell_what_no_server_of_the_tests_does_and_of_the_base_url_only_who_entered_it) {
    const std::pair<TransferFailure, const char*> cases[] = {
        {{.code = CURLE_COULDNT_CONNECT, .osError = ETIMEDOUT}, "hết thời gian chờ"},
        {{.code = CURLE_COULDNT_CONNECT, .osError = ENETUNREACH}, "kiểm tra kết nối Internet"},
        {{.code = CURLE_GOT_NOTHING}, "mà không trả lời"}, {{.code = CURLE_RECV_ERROR}, "ngắt giữa chừng"},
        {{.code = CURLE_WEIRD_SERVER_REPLY}, "không đúng giao thức HTTP"},
        {{.code = CURLE_BAD_CONTENT_ENCODING}, "Không giải mã"}, {{.code = CURLE_OUT_OF_MEMORY}, "mã 27"},
        {{.code = CURLE_PEER_FAILED_VERIFICATION,
             .verifyResult = X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY},
            "không đáng tin cậy"},
        {{.code = CURLE_SSL_CONNECT_ERROR}, "(TLS)"}};
    for (const auto& [failure, part] : cases) {
        EXPECT_THAT(failureWords(failure, "model.test:8443", AddressOrigin::enteredByUser),
            testing::AllOf(testing::HasSubstr(part), testing::HasSubstr("model.test:8443")));
        EXPECT_THAT(failureWords(failure, "model.test:8443", AddressOrigin::programsOwn),
            testing::Not(testing::HasSubstr("Base URL")));
    }
}

}  // namespace
}  // namespace tralio
