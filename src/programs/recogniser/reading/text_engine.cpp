#include "programs/recogniser/reading/text_engine.h"

#include <QScopeGuard>

#include <string>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>
#include <utility>
#include <vector>

namespace tralio {

TextEngine::TextEngine(const QString& packs, GoesOn goesOn, WorkBudget::Meter meter)
    : m_goesOn(std::move(goesOn)),
      m_meter(std::move(meter)),
      m_api(std::make_unique<tesseract::TessBaseAPI>()) {
    const std::vector<std::string> names{"debug_file"};
    const std::vector<std::string> values{"/dev/null"};
    m_isLoaded = m_api->Init(nullptr, packs.toUtf8().constData(), tesseract::OEM_LSTM_ONLY, nullptr, 0,
                     &names, &values, false) == 0;
}

TextEngine::~TextEngine() = default;

QStringList TextEngine::installedPacks() const {
    std::vector<std::string> packs;
    m_api->GetAvailableLanguagesAsVector(&packs);
    QStringList names;
    for (const std::string& pack : packs)
        names += QString::fromStdString(pack);
    return names;
}

Reading TextEngine::read(const Plane& picture, Layout layout) {
    using namespace tesseract;
    m_api->SetPageSegMode(layout == Layout::block ? PSM_SINGLE_BLOCK : PSM_SINGLE_LINE);
    m_api->SetImage(picture.pixels().data(), picture.width(), picture.height(), 1, picture.width());
    // Without a resolution the library guesses one, and tells the world on its standard error.
    m_api->SetSourceResolution(144);
    Reading reading;
    // Noise can keep the library busy without an end.
    constexpr double mostSeconds = 20;
    struct Watch {
        double until;
        const GoesOn& goesOn;
        const WorkBudget::Meter& meter;
    };
    Watch watch{m_meter() + mostSeconds, m_goesOn, m_meter};
    ETEXT_DESC monitor;
    monitor.cancel_this = &watch;
    monitor.cancel = [](void* context, int) {
        const auto& watch = *static_cast<Watch*>(context);
        if (watch.goesOn)
            watch.goesOn();
        return watch.meter() > watch.until;
    };
    const auto giveBack = qScopeGuard([this] { m_api->Clear(); });
    // Also when it was stopped there is what it had read by then; the lines after that are blanks.
    (void)m_api->Recognize(&monitor);
    const std::unique_ptr<ResultIterator> word(m_api->GetIterator());
    if (!word || word->Empty(RIL_WORD))
        return reading;
    bool startsLine = true;
    do {
        startsLine |= word->IsAtBeginningOf(RIL_TEXTLINE);
        const std::unique_ptr<const char[]> text(word->GetUTF8Text(RIL_WORD));
        if (QByteArrayView(text.get()).trimmed().isEmpty())
            continue;
        int left = 0, top = 0, right = 0, bottom = 0;
        if (std::exchange(startsLine, false)) {
            word->BoundingBox(RIL_TEXTLINE, &left, &top, &right, &bottom);
            reading.lines.push_back({{}, QRectF(QPointF(left, top), QPointF(right, bottom))});
        }
        word->BoundingBox(RIL_WORD, &left, &top, &right, &bottom);
        reading.lines.back().words.push_back({QString::fromUtf8(text.get()), word->Confidence(RIL_WORD),
            word->BlanksBeforeWord(), QString::fromUtf8(word->WordRecognitionLanguage()),
            QRectF(QPointF(left, top), QPointF(right, bottom))});
    } while (word->Next(RIL_WORD));
    return reading;
}

}  // namespace tralio
