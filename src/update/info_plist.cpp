#include "update/info_plist.h"

#include <QFile>
#include <QXmlStreamReader>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The text under `key` in the dictionary that `xml` has just entered. Keys and values alternate there.
std::optional<QString> textInDictionary(QXmlStreamReader& xml, QStringView key) {
    while (xml.readNextStartElement()) {
        const bool isWanted = xml.name() == u"key" && xml.readElementText() == key;
        if (!xml.readNextStartElement())
            return std::nullopt;
        if (isWanted)
            return xml.name() == u"string" ? std::optional(xml.readElementText()) : std::nullopt;
        xml.skipCurrentElement();
    }
    return std::nullopt;
}

}  // namespace

std::optional<QString> infoPlistText(const QString& path, QStringView key) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QXmlStreamReader xml(&file);
    const bool hasDictionary = xml.readNextStartElement() && xml.name() == u"plist" &&
        xml.readNextStartElement() && xml.name() == u"dict";
    if (!hasDictionary)
        return std::nullopt;
    std::optional<QString> text = textInDictionary(xml, key);
    return xml.hasError() ? std::nullopt : text;
}

QString bundleVersion(const QString& path) {
    return infoPlistText(path, u"CFBundleShortVersionString").value_or(u"1.0.9"_s);
}

}  // namespace tralio
