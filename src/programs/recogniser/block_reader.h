#pragma once

#include <QStringList>

#include <map>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/engine_pool.h"
#include "programs/recogniser/reading/picture_languages.h"
#include "programs/recogniser/reading/reading.h"
#include "programs/recogniser/reading/work_budget.h"
#include "programs/recogniser/vain_looks.h"

namespace tralio {

enum class Effort { oneLook, untilConfident };

/// Reads one block of text: starts with the likeliest languages and the plainest picture of it, and goes on
/// to other engines and pictures only while a line inspires no confidence.
class BlockReader final {
public:
    /// `packs` are those of the languages that the text may be in, `vain` is what another reader has learnt
    /// of the picture. Everything else outlives the reader.
    BlockReader(EnginePool& engines, const QStringList& packs, const BlockPainter& painter,
        WorkBudget& budget, VainLooks vain = {});

    /// The lines, boxes in pixels of the image, without what is more likely dirt than text.
    [[nodiscard]] Reading read(const TextBlock& block, Effort effort);

    /// What a reading gains by what is known of the picture's languages.
    void readAgain(const TextBlock& block, const PictureLanguages& languages, Reading& reading);

    [[nodiscard]] const VainLooks& vainLooks() const { return m_vain; }

    /// The packs of the engine that every reading starts with.
    [[nodiscard]] static QString leadingEngine(const QStringList& packs);

    /// The engines that may follow, in the order in which they are tried.
    [[nodiscard]] static QStringList otherEngines(const QStringList& packs);

private:
    struct Look {
        Reading reading;
        QString engine;
        double confidence = 0;
    };

    [[nodiscard]] bool isCertain() const;
    [[nodiscard]] bool isWorthwhile() const;
    [[nodiscard]] bool hasTime() const {
        return m_budget.allowsFurtherLooks(m_furtherSince, m_block->isShaded);
    }
    void lookFurther();
    [[nodiscard]] Look look(const QString& engine, TextMarks::Kind kind);
    /// The lines of the best reading that are below that confidence, as another engine reads them.
    [[nodiscard]] Look lookAtLines(const QString& engine, TextMarks::Kind kind, double below);
    [[nodiscard]] const BlockPicture& picture(TextMarks::Kind kind);
    void tryOtherScripts(TextMarks::Kind kind);
    void takeBetterLines(const Look& other);
    [[nodiscard]] Reading readPart(TextEngine& engine, const BlockPicture& part) const;
    void tryOtherLanguages();
    void tryOtherPictures();
    void restoreMarks(Reading& reading, const BlockPicture& picture);
    void keepIfBetter(Look other, double margin);

    EnginePool& m_engines;
    QStringList m_packs;
    const BlockPainter& m_painter;
    WorkBudget& m_budget;
    VainLooks m_vain;
    QString m_usualScript;  ///< that of the last block that was in another one than Latin
    const TextBlock* m_block = nullptr;
    double m_furtherSince = 0;
    std::map<TextMarks::Kind, BlockPicture> m_pictures;
    Look m_best;
};

}  // namespace tralio
