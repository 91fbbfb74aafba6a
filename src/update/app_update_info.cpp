#include "update/app_update_info.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "common/localized_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr QStringView versionKey = u"version";
constexpr QStringView releaseNotesKey = u"releaseNotes";
constexpr QStringView downloadUrlKey = u"downloadUrl";
constexpr QStringView pubDateKey = u"pubDate";

/// Nothing if the key is absent or null.
std::optional<QString> optionalText(const QJsonObject& manifest, QStringView key) {
    const QJsonValue value = manifest.value(key);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    if (!value.isString())
        throw LocalizedError(
            u"Giá trị của khóa “%1” trong bản kê phiên bản không phải là chuỗi ký tự."_s.arg(key));
    return value.toString();
}

QString requiredText(const QJsonObject& manifest, QStringView key) {
    if (auto text = optionalText(manifest, key))
        return *std::move(text);
    throw LocalizedError(u"Bản kê phiên bản của máy chủ thiếu khóa “%1”."_s.arg(key));
}

}  // namespace

AppUpdateInfo AppUpdateInfo::fromJson(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        throw LocalizedError(u"Bản kê phiên bản của máy chủ không phải là một đối tượng JSON hợp lệ."_s);
    const QJsonObject manifest = document.object();
    return {.version = requiredText(manifest, versionKey),
        .releaseNotes = requiredText(manifest, releaseNotesKey),
        .downloadUrl = requiredText(manifest, downloadUrlKey),
        .pubDate = optionalText(manifest, pubDateKey)};
}

QByteArray AppUpdateInfo::toJson() const {
    QJsonObject manifest{{versionKey.toString(), version}, {releaseNotesKey.toString(), releaseNotes},
        {downloadUrlKey.toString(), downloadUrl}};
    if (pubDate)
        manifest.insert(pubDateKey, *pubDate);
    return QJsonDocument(manifest).toJson(QJsonDocument::Compact);
}

}  // namespace tralio
