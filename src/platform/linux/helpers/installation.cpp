#include "platform/linux/helpers/installation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tralio::installation {
namespace {

using namespace Qt::StringLiterals;

QString from(const QString& programFolder, const QString& path) {
    return QDir::cleanPath(programFolder + u'/' + path);
}

QString bundlesInfoPlist(const QString& programFolder) {
    return from(programFolder, u"../Info.plist"_s);
}

bool isInBundle(const QString& programFolder) {
    return QFileInfo::exists(bundlesInfoPlist(programFolder));
}

}  // namespace

QString helperFolder(const QString& programFolder) {
    return from(programFolder,
        isInBundle(programFolder) ? u"../Helpers"_s : QStringLiteral(TRALIO_HELPERS_FROM_PROGRAM));
}

QString helper(QStringView name) {
    return from(helperFolder(QCoreApplication::applicationDirPath()), name.toString());
}

QString infoPlist(const QString& programFolder) {
    return isInBundle(programFolder) ? bundlesInfoPlist(programFolder)
                                     : from(helperFolder(programFolder), u"Info.plist"_s);
}

}  // namespace tralio::installation
