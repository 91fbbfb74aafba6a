#pragma once

#include <QStringList>

#include <functional>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// What the words that are read well tell of the languages of a picture. A word alone in a cell, a menu or a
/// button tells little of its own, but is in the language of the others.
class PictureLanguages final {
public:
    explicit PictureLanguages(const std::vector<Reading>& readings);

    /// The packs that a block's reading is worth another look for.
    [[nodiscard]] QStringList worthTrying(const TextBlock& block, const Reading& reading) const;

    /// Takes from another look what is better for the language that it was made for.
    void adopt(const QString& pack, Reading& reading, Reading other) const;

    /// Gives words the marks that stand above their letters and were not read, if an engine sees them.
    using Look = std::function<Reading(const QString& pack)>;
    void restoreMarks(const TextBlock& block, Reading& reading, const Look& look) const;

    /// Writes the sign of the rouble, which no engine knows, for the one of East Asia that it is taken for.
    void writeRoubles(Reading& reading) const;

private:
    QString m_script;        ///< the pack of that of many words, if it is another one than Latin
    bool m_isPlain = false;  ///< and most words are in it
    QString m_language;      ///< the pack of a Latin one beside Vietnamese and English
    bool m_isVietnamese = false;
};

}  // namespace tralio
