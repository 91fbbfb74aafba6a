#include "ui/settings/options_section.h"

#include "common/on_change.h"
#include "state/app_settings.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/button.h"
#include "ui/kit/foreign_content.h"
#include "ui/kit/label.h"
#include "ui/kit/prompt_editor.h"
#include "ui/kit/reveal.h"
#include "ui/kit/surface.h"
#include "ui/kit/switch.h"
#include "ui/settings/section.h"
#include "ui/settings/settings_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

// A switch has room for its focus ring around it, and a word-button above and below its line; the spacing to
// the neighbours includes that room.
constexpr int switchRingRoom = 3;
constexpr int wordRoom = 1;

}  // namespace

OptionsSection::OptionsSection(SettingsState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    auto* heading = sectionHeading({u"slider.horizontal.3"_s}, u"Tùy chọn & Chỉ dẫn AI"_s);
    filled(this,
        column({},
            {section(10,
                {heading, Gap{-switchRingRoom}, autoPasteRow(), Gap{-switchRingRoom - wordRoom},
                    prompt()})}));
    onAnyChange(m_state.settings(), this, [this] { refresh(); });
    refresh();
}

QLayout* OptionsSection::autoPasteRow() {
    const QString title = u"Tự động dịch khi mở từ Clipboard"_s;
    m_autoPaste = new Switch;
    m_autoPaste->setSpokenCaption(title);
    connect(m_autoPaste, &Switch::clicked, this, [this](bool on) { m_state.settings().autoPaste = on; });
    m_fromNextStart =
        new Label(u"Có hiệu lực từ lần mở Tralio sau."_s, text::smallCaption, ColorRole::secondary);
    m_notYet = new Reveal(m_fromNextStart);
    return column({}, {row({}, {new Label(title), Stretch{}, m_autoPaste, Gap{-switchRingRoom}}), m_notYet});
}

QLayout* OptionsSection::prompt() {
    auto* reset = new Button(button::word, {.title = u"Mặc định"_s});
    reset->setSpokenCaption(u"System Prompt"_s);
    reset->setColor(ColorRole::accentText);
    connect(reset, &Button::clicked, this, [this] { m_state.resetPrompt(); });

    AppSettings& settings = m_state.settings();
    m_prompt = new PromptEditor({[&settings] { return settings.customPrompt(); },
        [&settings](QString text) { settings.customPrompt = std::move(text); }, &settings});
    m_prompt->setTextOf(
        [this](const QMimeData& source) { return textOf(source, originOf(source), m_state.pasteboard()); });
    m_prompt->setSpokenCaption(u"System Prompt"_s);
    auto* title = new Label(u"System Prompt:"_s, text::caption, ColorRole::secondary);
    return column({.spacing = 6 - wordRoom}, {row({}, {title, Stretch{}, reset, wordOverhang}), m_prompt});
}

void OptionsSection::refresh() {
    m_autoPaste->setChecked(m_state.settings().autoPaste());
    const bool isNotYet = m_state.isClipboardCheckChanged();
    if (isNotYet && !m_notYet->isRevealed() && isVisible())
        announce(*m_fromNextStart);
    m_notYet->setRevealed(isNotYet);
    m_prompt->refresh();
}

}  // namespace tralio
