#pragma once

#include <QStringList>

namespace tralio {

/// The packs that have a tag, installed or not.
[[nodiscard]] QStringList knownPacks();

/// The language tags of installed packs. Packs that are not known are left out.
[[nodiscard]] QStringList tagsOfPacks(const QStringList& packs);

/// The packs, of the installed ones, for the wanted tags.
[[nodiscard]] QStringList packsOfTags(const QStringList& tags, const QStringList& installed);

}  // namespace tralio
