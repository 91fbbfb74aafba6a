#include "ui/settings/shortcut_section.h"

#include "common/on_change.h"
#include "hotkeys/shortcut_words.h"
#include "state/app_settings.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/reveal.h"
#include "ui/kit/surface.h"
#include "ui/kit/tooltip.h"
#include "ui/settings/section.h"
#include "ui/settings/settings_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

ShortcutSection::ShortcutSection(SettingsState& state, QWidget* parent) : QWidget(parent) {
    auto* heading = sectionHeading({u"keyboard.fill"_s}, u"Phím tắt toàn hệ thống"_s);
    auto* text = new ShortcutBlock(state, HotKeyRecordTarget::textSelection,
        {.icon = u"character.textbox"_s,
            .title = u"Tralio văn bản bôi đen"_s,
            .description = u"Bôi đen văn bản trong bất kỳ ứng dụng nào rồi bấm phím tắt để dịch ngay."_s});
    auto* capture = new ShortcutBlock(state, HotKeyRecordTarget::screenOCR,
        {.icon = u"camera.viewfinder"_s,
            .title = u"Chụp màn hình & Tralio (OCR)"_s,
            .description =
                u"Khoanh vùng màn hình không copy được (game, PDF khóa, phụ đề) để quét chữ & dịch."_s});
    filled(this, column({}, {section(12, {heading, text, capture})}));
}

ShortcutBlock::ShortcutBlock(
    SettingsState& state, HotKeyRecordTarget target, const Words& words, QWidget* parent)
    : QWidget(parent), m_state(state), m_target(target) {
    auto* description = new Label(words.description, text::caption, ColorRole::secondary);
    description->setWraps();
    filled(this,
        column({},
            {sectionBlock(
                8, {titleRow(words), description, troubleLine(), recordingBanner(), suggestions()})}));
    onAnyChange(
        m_state, this, [this] { refresh(); });
    onAnyChange(
        m_state.settings(), this, [this] { refresh(); });
    onAnyChange(m_state.hotKeys(), this, [this] { refresh(); });
    refresh();
}

QLayout* ShortcutBlock::titleRow(const Words& words) {
    auto* icon = new IconView({.name = words.icon, .pointSize = 12}, ColorRole::secondary);
    m_display = new Badge(badge::shortcut, {});
    m_toggle = new Button(button::bordered, {});
    m_toggle->setSpokenCaption(words.title);
    connect(m_toggle, &Button::clicked, this, [this] { m_state.toggleRecording(m_target); });
    return row({.spacing = 8},
        {row({.spacing = 6}, {icon, new Label(words.title, text::blockTitle)}), Stretch{}, m_display,
            m_toggle});
}

QWidget* ShortcutBlock::troubleLine() {
    auto* icon = new IconView({.name = u"exclamationmark.triangle.fill"_s, .pointSize = 11}, ColorRole::red);
    const QString trouble = m_state.hotKeyTrouble(m_target).value_or(QString());  // an old one is no news
    m_trouble = new Label(trouble, text::caption, ColorRole::red);
    m_troubleLine = filled(new QWidget, row({.spacing = 6}, {icon, StackItem(m_trouble, {}, 1)}));
    return m_troubleLine;
}

QWidget* ShortcutBlock::recordingBanner() {
    auto* icon = new IconView({.name = u"exclamationmark.circle.fill"_s, .pointSize = 12}, ColorRole::orange);
    m_hint = new Label(
        u"Hãy bấm tổ hợp phím mới (có ⌥, ⌘ hoặc ⌃). Bấm Esc để hủy."_s, text::caption, ColorRole::orange);
    setTooltip(m_hint, shortcutsInWords(m_hint->text()));
    m_banner = new Reveal(filled(new Surface(ColorRole::orangeTint, ColorRole::none, radius::control),
        row({.spacing = 6, .padding = {6, 6, 6, 6}}, {icon, StackItem(m_hint, {}, 1)})));
    return m_banner;
}

QLayout* ShortcutBlock::suggestions() {
    auto* chips = row({.spacing = 6}, {});
    for (const HotKeyPresetItem& preset : SettingsState::presets(m_target)) {
        auto* chip = new Button(button::suggestion, {.title = preset.display});
        chip->setCheckable(true);
        setTooltip(chip, shortcutsInWords(preset.display));
        connect(chip, &Button::clicked, this, [this, &preset] {
            m_state.chooseHotKey(m_target, preset);
            refresh();  // restores the check mark, which the click has toggled, even on the selected preset
        });
        m_chips.push_back(chip);
        chips->addWidget(chip);
    }
    return row(
        {.spacing = 8}, {new Label(u"Gợi ý:"_s, text::smallCaption, ColorRole::secondary), chips, Stretch{}});
}

void ShortcutBlock::refresh() {
    const QString& display = m_state.display(m_target);
    const bool recording = m_state.recordingTarget() == m_target;
    const bool isRecorded = m_banner->isRevealed() && !recording && m_display->text() != display;
    m_display->setText(display);
    setTooltip(m_display, shortcutsInWords(display));
    if (isRecorded)
        announce(*m_display);

    const auto trouble = m_state.hotKeyTrouble(m_target);
    m_trouble->setNews(trouble.value_or(QString()));
    m_troubleLine->setVisible(trouble.has_value());

    m_toggle->setIconName(recording ? u"record.circle.fill"_s : u"pencil"_s);
    m_toggle->setTitle(recording ? u"Đang chờ..."_s : u"Đổi"_s);
    m_toggle->setColor(recording ? ColorRole::red : ColorRole::text);
    if (recording && !m_banner->isRevealed())
        announce(*m_hint);
    m_banner->setRevealed(recording);

    for (size_t i = 0; i < m_chips.size(); ++i)
        m_chips[i]->setChecked(SettingsState::presets(m_target)[qsizetype(i)].display == display);
}

}  // namespace tralio
