#include "programs/recogniser/recogniser_session.h"

#include <algorithm>
#include <malloc.h>
#include <utility>

#include "programs/recogniser/picture_reader.h"
#include "programs/recogniser/pixels/image_decoder.h"
#include "programs/recogniser/reading/language_packs.h"

namespace tralio {

using namespace Qt::StringLiterals;
using namespace recogniser_protocol;

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

RecogniserSession::RecogniserSession(Send send) : m_send(std::move(send)) {}

void RecogniserSession::handle(const Request& request) {
    std::visit([this](const auto& alternative) { answer(alternative); }, request);
    // A large picture leaves hundreds of megabytes that are free and would be kept.
    if (std::holds_alternative<RecognizeRequest>(request))
        malloc_trim(0);
}

bool RecogniserSession::prepareFurther() {
    if (!m_isPreparing)
        return false;
    for (const QString& packs : BlockReader::otherEngines(installedPacks())) {
        if (m_engines.holds(packs))
            continue;
        (void)m_engines.engine(packs);
        return true;
    }
    m_isPreparing = false;
    return false;
}

void RecogniserSession::answer(const PrepareRequest&) {
    m_isPreparing = true;
    (void)installedPacks();
}

void RecogniserSession::answer(const LanguagesRequest&) {
    m_send(LanguagesReply{tagsOfPacks(installedPacks())});
}

void RecogniserSession::answer(const RecognizeRequest& request) {
    const DecodedImage decoded = decodeImage(request.file);
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
    m_linesRead = 0;
    m_told = std::chrono::steady_clock::now();
    const bool isAccurate = request.options.level == RecognitionRequest::Level::accurate;
    const Reading reading =
        readPicture(m_engines, packs, image, isAccurate ? Effort::untilConfident : Effort::oneLook,
            [this](qsizetype lines) { tellProgress(lines); });

    ObservationsReply reply;
    for (const ReadLine& line : reading.lines)
        reply.observations.push_back({normalized(line.box, image.size()), {line.text()}});
    m_send(reply);
}

void RecogniserSession::tellProgress(qsizetype lines) {
    m_linesRead = lines;
    m_told = std::chrono::steady_clock::now();
    m_send(Progress{static_cast<qint32>(lines)});
}

void RecogniserSession::showLife() {
    constexpr std::chrono::seconds interval(1);
    if (std::chrono::steady_clock::now() - m_told >= interval)
        tellProgress(m_linesRead);
}

const QStringList& RecogniserSession::installedPacks() {
    if (!m_installedPacks.isEmpty())
        return m_installedPacks;
    // Only a loaded engine knows where its packs are. With neither Vietnamese nor English, any other will do.
    for (const QString& packs :
        QStringList{usualPacks.toString()} + BlockReader::otherEngines(knownPacks())) {
        if (const TextEngine* engine = m_engines.engine(packs)) {
            m_installedPacks = engine->installedPacks();
            break;
        }
    }
    return m_installedPacks;
}

}  // namespace tralio
