#include <QScopeGuard>

#include <cerrno>
#include <openssl/x509_vfy.h>
#include <set>

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
    qputenv("SSL_CERT_FILE", QFile::encodeName(folder.filePath(u"ca.pem"_s)));
    const auto restore = qScopeGuard([] { qunsetenv("SSL_CERT_FILE"); });
    struct Case {
        QString certificate;
        QStringList options;
        QString words;  ///< null for a server that is trusted
    };
    const Case cases[] = {
        {u"good"_s, {}, {}},
        {u"self"_s, {}, u"tự ký"_s},
        {u"expired"_s, {}, u"hết hạn"_s},
        {u"other"_s, {}, u"không thuộc về"_s},
        {u"good"_s, {u"-tls1"_s, u"-cipher"_s, u"ALL:@SECLEVEL=0"_s}, u"TLS đã lỗi thời"_s},
    };
    for (const auto& [certificate, options, words] : cases) {
        const TlsServer server(folder,
            QStringList{u"-cert"_s, certificate + u".pem"_s, u"-key"_s, certificate + u".key"_s} + options);
        settings.baseURL = server.url;
        if (words.isNull()) {
            const HttpResponse page = QCoro::waitFor(http.get({QUrl(server.url)}, 20s, {}));
            EXPECT_EQ(page.status, 200);
            continue;
        }
        const Outcome one = outcomeOf(translate());
        QCoro::Task<QString> second = testConnection();
        QCoro::Task<QString> third = testConnection();
        for (const QString& told :
            {one.text, outcomeOf(std::move(second)).text, outcomeOf(std::move(third)).text}) {
            EXPECT_TRUE(told.contains(words)) << certificate.toStdString() << ": " << told.toStdString();
            EXPECT_TRUE(told.contains(QUrl(server.url).authority())) << told.toStdString();
        }
    }
    RawServer plain([](RawServer::Connection& peer) { peer.send("HTTP/1.1 400 Bad Request\r\n\r\n"); });
    settings.baseURL = u"https://127.0.0.1:%1/v1"_s.arg(plain.port());
    EXPECT_TRUE(outcomeOf(translate()).text.contains(u"không dùng kết nối bảo mật"_s));
}

TEST_F(MisbehavingServerTest, certificates_that_stand_in_the_folder_by_their_hashes_are_trusted) {
    const QTemporaryDir folder;
    makeCertificates(folder);
    const QByteArray hash =
        runToEnd(u"openssl"_s, {u"x509"_s, u"-noout"_s, u"-hash"_s, u"-in"_s, folder.filePath(u"ca.pem"_s)})
            .trimmed();
    const QTemporaryDir trusted;
    ASSERT_TRUE(
        QFile::copy(folder.filePath(u"ca.pem"_s), trusted.filePath(QString::fromLatin1(hash + ".0"))));
    qputenv("SSL_CERT_DIR", QFile::encodeName(trusted.path()));
    const auto restore = qScopeGuard([] { qunsetenv("SSL_CERT_DIR"); });
    const TlsServer server(folder, {u"-cert"_s, u"good.pem"_s, u"-key"_s, u"good.key"_s});
    EXPECT_EQ(QCoro::waitFor(http.get({QUrl(server.url)}, 20s, {})).status, 200);
}

TEST_F(MisbehavingServerTest, an_unreadable_body_is_an_empty_answer_or_an_error_that_is_shown_as_it_is) {
    const QByteArray errorPage = "<html>" + QByteArray(300 * 1024, 'x');
    const QByteArray nested = R"({"choices":)" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + "}";
    for (const QByteArray& body : {errorPage, nested}) {
        standIn.replies(StandInReply::withBody(200, body));
        EXPECT_EQ(outcomeOf(translate()).aiError, AIError::emptyResponse());
        EXPECT_FALSE(outcomeOf(testConnection()).failed);
        standIn.replies(StandInReply::withBody(502, body));
        EXPECT_EQ(outcomeOf(translate()).aiError->statusCode(), 502);
    }
}

TEST(TransportWords, every_failure_is_described_and_names_what_failed) {
    std::set<std::string> descriptions;
    const auto has = [](const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    };
    const auto expectWords = [&](const TransferFailure& failure, const std::string& named) {
        const std::string words = failureWords(failure, "model.test:8443", AddressOrigin::enteredByUser);
        EXPECT_TRUE(has(words, named)) << words;
        EXPECT_TRUE(descriptions.insert(words).second) << words;
        for (const auto origin : {AddressOrigin::enteredByUser, AddressOrigin::programsOwn})
            EXPECT_EQ(has(failureWords(failure, "model.test:8443", origin), "Base URL"),
                has(words, "Base URL") && origin == AddressOrigin::enteredByUser)
                << words;
    };
    const std::string server = "model.test:8443";
    for (const long error : {ECONNREFUSED, ETIMEDOUT, ENETUNREACH})
        expectWords({.code = CURLE_COULDNT_CONNECT, .osError = error}, server);
    for (const CURLcode code : {CURLE_COULDNT_RESOLVE_HOST, CURLE_GOT_NOTHING, CURLE_RECV_ERROR,
             CURLE_WEIRD_SERVER_REPLY, CURLE_BAD_CONTENT_ENCODING, CURLE_OUT_OF_MEMORY})
        expectWords({.code = code}, server);
    for (const long problem : {X509_V_ERR_CERT_HAS_EXPIRED, X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT,
             X509_V_ERR_UNSPECIFIED, X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY})
        expectWords({.code = CURLE_PEER_FAILED_VERIFICATION, .verifyResult = problem}, server);
    for (const char* detail : {"", "tlsv1 alert protocol version", "wrong version number"})
        expectWords({.code = CURLE_SSL_CONNECT_ERROR, .detail = detail}, server);
    const std::string proxy = "proxy";
    expectWords({.code = CURLE_COULDNT_RESOLVE_PROXY}, proxy);
    for (const long error : {ECONNREFUSED, ETIMEDOUT})
        expectWords(
            {.code = CURLE_COULDNT_CONNECT, .osError = error, .usesProxy = true, .isProxysPart = true},
            proxy);
    for (const int status : {407, 502})
        expectWords({.code = CURLE_RECV_ERROR, .tunnelStatus = status, .usesProxy = true}, proxy);
}

}  // namespace
}  // namespace tralio
