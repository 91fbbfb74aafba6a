#include "platform/linux/ocr/helper_session.h"

#include <algorithm>
#include <utility>

#include "platform/linux/ocr/image_decoder.h"
#include "platform/linux/ocr/language_packs.h"
#include "platform/linux/ocr/region_reader.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace helper_protocol;

namespace {

/// The engine that nearly every image needs, and the one whose loading tells where packs are installed.
constexpr QStringView usualPacks = u"vie+eng";

NormalizedRect normalized(const QRectF& box, const QSize& size) {
    const double left = std::clamp(box.left() / size.width(), 0.0, 1.0);
    const double right = std::clamp(box.right() / size.width(), 0.0, 1.0);
    const double top = std::clamp(box.top() / size.height(), 0.0, 1.0);
    const double bottom = std::clamp(box.bottom() / size.height(), 0.0, 1.0);
    return {left, 1 - bottom, right - left, bottom - top};
}

}  // namespace

HelperSession::HelperSession(Send send) : m_send(std::move(send)) {}

void HelperSession::handle(const Request& request) {
    std::visit([this](const auto& alternative) { answer(alternative); }, request);
}

bool HelperSession::prepareFurther() {
    if (!m_isPreparing)
        return false;
    for (const QString& packs : RegionReader::otherEngines(installedPacks())) {
        if (engines(true).holds(packs))
            continue;
        (void)engines(true).engine(packs);
        return true;
    }
    m_isPreparing = false;
    return false;
}

void HelperSession::answer(const PrepareRequest&) {
    m_isPreparing = true;
    (void)installedPacks();
}

void HelperSession::answer(const LanguagesRequest&) {
    m_send(LanguagesReply{tagsOfPacks(installedPacks())});
}

void HelperSession::answer(const RecognizeRequest& request) {
    const DecodedImage decoded = decodeImage(request.image);
    if (std::holds_alternative<UndecodableImage>(decoded)) {
        m_send(NoImageReply{});
        return;
    }
    if (const auto* oversized = std::get_if<OversizedImage>(&decoded)) {
        m_send(FailureReply{tooLarge(oversized->size)});
        return;
    }
    const QImage& image = std::get<QImage>(decoded);
    m_send(Accepted{image.size()});

    const QStringList& installed = installedPacks();
    const QStringList packs =
        packsOfTags(request.options.languages.value_or(tagsOfPacks(installed)), installed);
    if (packs.isEmpty()) {
        m_send(FailureReply{u"Chưa cài đặt gói ngôn ngữ nhận dạng nào."_s});
        return;
    }
    const bool isAccurate = request.options.level == RecognitionRequest::Level::accurate;
    RegionReader reader(engines(request.options.usesLanguageCorrection), packs, image);
    const Reading reading =
        reader.read(isAccurate ? RegionReader::Effort::untilConfident : RegionReader::Effort::oneLook);

    ObservationsReply reply;
    for (const ReadLine& line : reading.lines)
        reply.observations.push_back({normalized(line.box, image.size()), {line.text()}});
    m_send(reply);
}

EnginePool& HelperSession::engines(bool usesDictionaries) {
    const auto dictionaries =
        usesDictionaries ? TextEngine::Dictionaries::used : TextEngine::Dictionaries::unused;
    if (!m_engines || m_engines->dictionaries() != dictionaries)
        m_engines = std::make_unique<EnginePool>(dictionaries);
    return *m_engines;
}

const QStringList& HelperSession::installedPacks() {
    if (!m_installedPacks.isEmpty())
        return m_installedPacks;
    // Only a loaded engine knows where its packs are. With neither Vietnamese nor English, any other will do.
    for (const QString& packs :
        QStringList{usualPacks.toString()} + RegionReader::otherEngines(knownPacks())) {
        if (const TextEngine* engine = engines(true).engine(packs)) {
            m_installedPacks = engine->installedPacks();
            break;
        }
    }
    return m_installedPacks;
}

}  // namespace tralio
