#pragma once

#include <QImage>
#include <QStringList>

#include <ctime>

#include "programs/recogniser/engine_pool.h"
#include "programs/recogniser/reading.h"
#include "programs/recogniser/text_pictures.h"

namespace tralio {

/// Reads one region of a screen: starts with the likeliest languages and the plainest picture of it, and goes
/// on to other engines and pictures only while what was read inspires no confidence.
class RegionReader final {
public:
    enum class Effort { oneLook, untilConfident };

    /// `packs` are those of the languages that the text may be in.
    RegionReader(EnginePool& engines, const QStringList& packs, const QImage& image);

    [[nodiscard]] Reading read(Effort effort);

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
    [[nodiscard]] bool hasTimeLeft() const;
    [[nodiscard]] Look look(const QString& engine, TextPictures::Kind kind);
    void tryOtherScripts(TextPictures::Kind kind);
    void takeBetterLines(const Look& other);
    void tryOtherLanguages();
    void tryOtherPictures();
    void restoreMarks(Reading& reading, const Plane& picture);
    void keepIfBetter(Look other, double margin);

    EnginePool& m_engines;
    QStringList m_packs;
    TextPictures m_pictures;
    Plane m_plain;
    Look m_best;
    std::clock_t m_started = 0;
};

}  // namespace tralio
