#include "ui/translate/result_block.h"

#include <utility>

#include "speech/speech_service.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/label.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/translate/translate_state.h"

namespace tralio {

using namespace Qt::StringLiterals;

ResultBlock::ResultBlock(TranslateState& state, QWidget* parent)
    : QWidget(parent),
      m_state(state),
      m_speak(new Button(button::word, {.icon = u"speaker.wave.2"_s})),
      m_copy(new Button(button::word, {.icon = u"doc.on.doc"_s})),
      m_title(new Label(u"Bản dịch:"_s, text::caption.with(Weight::semibold), ColorRole::secondary)),
      m_result(new ReadingArea) {
    connect(m_speak, &Button::clicked, this, [this] { m_state.toggleSpeech(); });
    m_copy->setWeight(Weight::medium);
    connect(m_copy, &Button::clicked, this, [this] { m_state.copyResult(); });
    auto* header = filled(new QWidget, row({.padding = {6, 0, 2, 0}}, {m_title, Stretch{}, m_speak, m_copy}));
    header->setFixedHeight(22);

    auto* surface = new Surface(ColorRole::surface1, ColorRole::border15, radius::block);
    m_result->setAccessibleName(u"Bản dịch"_s);
    // The result area is 115 high beside everything else that the panel can show, and takes the rest: less
    // beside a long error message and on a low screen.
    constexpr int oneLine = 24;
    m_result->setMinimumHeight(oneLine);
    m_result->setScrollFrame(surface);
    connect(m_result, &ReadingArea::focusShown, surface, [surface](bool shows) {
        surface->setEdge(shows ? ColorRole::accentIcon : ColorRole::border15, shows ? 2 : 1);
    });
    filled(surface, column({.padding = {4, 4, 4, 4}}, {header, Gap{4}, {m_result, {}, 1}}));
    filled(this, column({}, {{surface, {}, 1}}));
}

void ResultBlock::refresh() {
    refreshButtons();
    const QString& output = m_state.outputText();
    const bool translating = m_state.isTranslating();
    m_result->setText(output);
    const bool hasEnded = std::exchange(m_wasTranslating, translating) && !translating;
    const bool isOther = std::exchange(m_shown, output) != output;
    if (!output.isEmpty() && (isOther || (hasEnded && !m_state.isResultStale())))
        announce(*m_title);  // also of a result that has come out the same
    m_result->setStale(m_state.isResultStale());
    m_result->setPlaceholder(translating ? QString() : u"Kết quả dịch sẽ xuất hiện tại đây..."_s);
}

void ResultBlock::refreshButtons() {
    const bool hasResult = !m_state.outputText().isEmpty();
    const bool speaking = m_state.speechService().isSpeaking();
    if (!hasResult && !speaking)
        restFocus(*this, *m_speak);
    m_speak->setVisible(hasResult || speaking);
    m_speak->setIconName(speaking ? u"speaker.wave.3.fill"_s : u"speaker.wave.2"_s);
    m_speak->setTitle(speaking ? u"Dừng"_s : u"Đọc"_s);
    m_speak->setColor(speaking ? ColorRole::accentText : ColorRole::secondary);

    const bool copied = m_state.isCopied();
    if (!hasResult)
        restFocus(*this, *m_copy);
    m_copy->setVisible(hasResult);
    m_copy->setIconName(copied ? u"checkmark"_s : u"doc.on.doc"_s);
    m_copy->setTitle(copied ? u"Đã chép!"_s : u"Sao chép"_s);
    m_copy->setColor(copied ? ColorRole::green : ColorRole::accentText);
}

}  // namespace tralio
