// Two versions, of which the server chose one.

#include <QList>

#include "fuzz/fuzz.h"
#include "update/version_order.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    const QList<QByteArray> lines = fuzz::bytes(data, size).split('\n');
    const QString left = QString::fromUtf8(lines.value(0));
    const QString right = QString::fromUtf8(lines.value(1));
    const auto order = compareVersions(left, right);
    fuzz::require(compareVersions(right, left) == 0 <=> order, "the order is the same from both sides");
    fuzz::require(compareVersions(left, left) == 0, "a version is itself");
    return 0;
}
