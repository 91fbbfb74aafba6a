#include "update/app_update_info.h"

#include "common/localized_error.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(AppUpdateInfoTest, a_manifest_reads_as_it_was_written_and_a_null_date_and_unknown_keys_are_no_matter) {
    const AppUpdateInfo dated{
        u"1.0.10"_s, u"Nhanh hơn\nGọn hơn"_s, u"https://update.test/a.zip"_s, u"2026-11-16"_s};
    AppUpdateInfo undated = dated;
    undated.pubDate = std::nullopt;
    for (const AppUpdateInfo& info : {dated, undated})
        EXPECT_EQ(AppUpdateInfo::fromJson(info.toJson()), info);
    const auto odd = AppUpdateInfo::fromJson(
        R"({"version":"2","releaseNotes":"","downloadUrl":"u","pubDate":null,"minimumSystem":13})");
    EXPECT_EQ(odd, (AppUpdateInfo{u"2"_s, u""_s, u"u"_s, std::nullopt}));
}

TEST(AppUpdateInfoTest, what_does_not_decode_is_told_with_the_key_at_fault) {
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

}  // namespace
}  // namespace tralio
