// Two versions, of which the server chose one.

#include <QList>

#include "fuzz/fuzz.h"
#include "update/version_order.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    const QList<QByteArray> lines = input.split('\n');
    const QString left = QString::fromUtf8(lines.value(0));
    const QString right = QString::fromUtf8(lines.value(1));
    const auto order = compareVersions(left, right);
    require(compareVersions(right, left) == 0 <=> order, "the order is the same from both sides");
    require(compareVersions(left, left) == 0, "a version is itself");
}
