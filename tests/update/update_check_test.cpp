#include "update/update_test_support.h"
#include "update/version_order.h"

namespace tralio {
namespace {

using Delivery = StandInReply::Delivery;

using UpdateCheckTest = UpdateTest;

TEST_F(UpdateCheckTest, a_newer_version_is_asked_for_past_every_cache_and_offered_also_unasked) {
    offers(u" 1.0.10\n"_s);
    EXPECT_EQ(check(false), u"Đã có bản cập nhật mới: v1.0.10"_s);
    EXPECT_TRUE(service->isUpdateAvailable());
    EXPECT_EQ(service->updateInfo(), offer(u" 1.0.10\n"_s));
    EXPECT_EQ(service->lastCheckTime(), now);

    const StandInModel::Request& request = server.requests().last();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.target, "/version.json?t=1795000000");
    EXPECT_EQ(request.header("Cache-Control"), "no-cache");
    EXPECT_THAT(noted.limits, ElementsAre(10s));
}

TEST_F(UpdateCheckTest, only_who_asked_hears_that_there_is_nothing_new) {
    for (const QString& version : {u"1.0.9"_s, u"1.0.8"_s}) {
        service->updateInfo = offer(u"1.0.10"_s);
        service->isUpdateAvailable = true;
        service->statusMessage = std::nullopt;
        offers(version);
        EXPECT_EQ(check(false), std::nullopt);
        EXPECT_FALSE(service->isUpdateAvailable());
        EXPECT_EQ(service->updateInfo(), std::nullopt);
        service->checkForUpdates(true);
        EXPECT_EQ(service->statusMessage(), u"Đang kiểm tra bản cập nhật..."_s);
        EXPECT_EQ(check(true), u"Bạn đang dùng phiên bản mới nhất (v1.0.9)."_s);
    }
}

TEST_F(UpdateCheckTest, only_who_asked_hears_of_a_failure_and_an_earlier_offer_stands) {
    const QString noServer = u"Không thể kết nối đến máy chủ cập nhật."_s;
    const QString failed = u"Lỗi khi kiểm tra: "_s;
    const std::pair<StandInReply, QString> failures[] = {
        {StandInReply::withBody(201, offer(u"2"_s).toJson()), noServer},
        {StandInReply::withBody(302, "nowhere told"), noServer},
        {StandInReply::withBody(0, "hello\n").delivered(Delivery::withoutStatus), noServer},
        {StandInReply::withBody(200, R"({"version":"2","downloadUrl":"u"})"), failed},
        {StandInReply::withBody(200, offer(u"2"_s).toJson() + QByteArray(5'000'000, ' ')), failed},
        {StandInReply::redirect(302, "/version.json"), failed},  // followed without end
    };
    service->updateInfo = offer(u"1.0.10"_s);
    service->isUpdateAvailable = true;
    for (const auto& [reply, text] : failures) {
        server.replies(reply);
        service->statusMessage = std::nullopt;
        EXPECT_EQ(check(false), std::nullopt) << qPrintable(text);
        EXPECT_TRUE(check(true).value_or(QString()).startsWith(text)) << reply.status;
        EXPECT_FALSE(service->statusMessage()->contains(u"Base URL"));
    }
    server.refuseConnections();
    EXPECT_TRUE(check(true).value_or(QString()).startsWith(failed));

    EXPECT_EQ(service->updateInfo(), offer(u"1.0.10"_s));
    EXPECT_TRUE(service->isUpdateAvailable());
    EXPECT_EQ(service->lastCheckTime(), std::nullopt);
}

TEST_F(UpdateCheckTest, a_second_check_changes_nothing_while_one_runs_and_the_services_end_ends_it) {
    server.replies(StandInReply::withBody(200, {}).delivered(Delivery::held));
    service->checkForUpdates(false);
    service->checkForUpdates(true);
    EXPECT_EQ(service->statusMessage(), std::nullopt);
    ASSERT_TRUE(eventually([this] { return !server.requests().isEmpty(); }));
    service.reset();
    EXPECT_TRUE(eventually([this] { return server.openConnections() == 0; }));

    restart([](auto& host) { host.manifest = QUrl(); });
    service->checkForUpdates(true);
    EXPECT_FALSE(service->isChecking()) << "an address that is none ends it at once";
    EXPECT_EQ(server.requests().size(), 1);
}

TEST(AppUpdateInfoTest, every_member_is_read_and_what_does_not_decode_is_told_with_the_key_at_fault) {
    const QByteArray manifest =
        R"({"version":"2","releaseNotes":"a\nb","downloadUrl":"u","pubDate":"2026-11-16","minimumSystem":13})";
    EXPECT_EQ(AppUpdateInfo::fromJson(manifest), (AppUpdateInfo{u"2"_s, u"a\nb"_s, u"u"_s, u"2026-11-16"_s}));
    EXPECT_EQ(AppUpdateInfo::fromJson(QByteArray(manifest).replace("\"2026-11-16\"", "null")).pubDate,
        std::nullopt);

    const std::pair<QByteArray, QString> faults[] = {
        {R"({"releaseNotes":"n","downloadUrl":"u"})", u"“version”"_s},
        {R"({"version":"2","downloadUrl":"u"})", u"“releaseNotes”"_s},
        {R"({"version":"2","releaseNotes":"n","downloadUrl":null})", u"“downloadUrl”"_s},
        {R"({"version":2,"releaseNotes":"n","downloadUrl":"u"})", u"“version”"_s},
        {R"({"version":"2","releaseNotes":"n","downloadUrl":"u","pubDate":20261116})", u"“pubDate”"_s},
        {R"([{"version":"2","releaseNotes":"n","downloadUrl":"u"}])", u"JSON"_s},
        {R"({"version":"2","releaseNotes":"n","downloadUrl":"u")", u"JSON"_s},
    };
    for (const auto& [json, culprit] : faults) {
        try {
            std::ignore = AppUpdateInfo::fromJson(json);
            ADD_FAILURE() << "decoded: " << json.constData();
        } catch (const LocalizedError& error) {
            EXPECT_TRUE(error.errorDescription().contains(culprit)) << error.what();
        }
    }
}

TEST(VersionOrderTest, numbers_count_by_value_without_leading_zeros_and_the_rest_by_character_code) {
    const QString hundredNines(100, u'9');
    const QString googol = u'1' + QString(100, u'0');
    const std::pair<QString, QString> ascending[] = {{u"1.0.9"_s, u"1.0.10"_s}, {u"1.1"_s, u"1.1.0"_s},
        {u"1.99"_s, u"2.0"_s}, {u"1.007b"_s, u"1.7c"_s}, {u""_s, u"0"_s}, {u"1.0"_s, u"1.0b"_s},
        {u"1.0B"_s, u"1.0a"_s}, {u"1.-"_s, u"1.0"_s}, {hundredNines, googol},
        {u"000"_s + hundredNines + u".1"_s, hundredNines + u".2"_s}, {u"1\uFF5E"_s, u"1\U0001F600"_s},
        {u"9"_s, u"\u0661"_s}};
    for (const auto& [smaller, greater] : ascending) {
        EXPECT_TRUE(compareVersions(smaller, greater) < 0) << qPrintable(smaller + u" < "_s + greater);
        EXPECT_TRUE(compareVersions(greater, smaller) > 0) << qPrintable(greater + u" > "_s + smaller);
    }
    EXPECT_TRUE(compareVersions(u"1.01"_s, u"1.1"_s) == 0);
    EXPECT_TRUE(compareVersions(u"0"_s, u"000"_s) == 0);
}

}  // namespace
}  // namespace tralio
