#include "update/installer_script.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

QString installerScript(const QString& zipPath) {
    const QString unpack =
        uR"(#!/bin/bash
sleep 1.2
TMP_DIR=$(mktemp -d)
unzip -q ")"_s;
    const QString replace =
        uR"(" -d "$TMP_DIR"

TARGET_APP=$(find "$TMP_DIR" -maxdepth 1 -name "*.app" | head -n 1)

if [ -n "$TARGET_APP" ] && [ -d "$TARGET_APP" ]; then
    killall TralioApp 2>/dev/null || true
    sleep 0.5
    rm -rf "/Applications/Tralio.app"
    cp -R "$TARGET_APP" "/Applications/Tralio.app"
    xattr -cr "/Applications/Tralio.app" 2>/dev/null || true
    open "/Applications/Tralio.app"
fi

rm -rf "$TMP_DIR"
rm -f ")"_s;
    return unpack + zipPath + replace + zipPath + u'"';
}

}  // namespace tralio
