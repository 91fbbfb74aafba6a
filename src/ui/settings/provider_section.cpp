#include "ui/settings/provider_section.h"

#include <algorithm>
#include <utility>

#include "common/on_change.h"
#include "engine/hosts.h"
#include "state/app_settings.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/reveal.h"
#include "ui/kit/surface.h"
#include "ui/kit/text_field.h"
#include "ui/kit/tooltip.h"
#include "ui/settings/section.h"
#include "ui/settings/settings_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QList<MenuEntry> providerEntries(const QString& selectedId) {
    QList<MenuEntry> entries;
    for (const ProviderPreset& preset : ProviderPreset::presets())
        entries.push_back({.title = preset.name, .checked = preset.id == selectedId});
    return entries;
}

Label* fieldCaption(const QString& text) {
    return new Label(text, text::caption, ColorRole::secondary);
}

/// Does nothing if the field shows the text already: the user may be typing in it.
void setShownText(TextField* field, const QString& text) {
    if (field->shownText() == text)
        return;
    const int caret = field->cursorPosition();
    field->setText(text);
    field->setCursorPosition(std::min(caret, static_cast<int>(text.size())));
}

}  // namespace

ProviderSection::ProviderSection(SettingsState& state, QWidget* parent) : QWidget(parent), m_state(state) {
    m_help = new Label({}, text::caption, ColorRole::secondary);
    m_help->setWraps();
    filled(this,
        column({},
            {section(10,
                {
                    sectionHeading({u"cpu.fill"_s}, u"Mô hình AI & Nhà cung cấp"_s),
                    column({.spacing = 6}, {providerRow(), m_help}),
                    ownGatewayCard(),
                    endpointFields(),
                    resultStrip(),
                })}));
    onAnyChange(
        m_state, this, [this] { refresh(); });
    onAnyChange(m_state.settings(), this, [this] { refresh(); });
    refresh();
}

QLayout* ProviderSection::providerRow() {
    m_provider = new MenuButton;
    m_provider->becomePicker();
    m_provider->setSpokenCaption(u"Nhà cung cấp"_s);
    connect(m_provider, &MenuButton::chosen, this,
        [this](int index) { m_state.chooseProvider(ProviderPreset::presets()[index].id); });
    return row({.spacing = 8}, {fieldCaption(u"Nhà cung cấp:"_s), m_provider});
}

QWidget* ProviderSection::ownGatewayCard() {
    auto* description = new Label(
        u"Đây là AI Model chuyên dụng dịch văn bản của Kavo được cung cấp sử dụng hoàn toàn miễn phí, tối ưu hoá chuyên sâu cho tiếng Việt."_s,
        text::caption, ColorRole::secondary);
    description->setWraps();
    m_cardModel = new Label({}, text::caption.with(Weight::semibold));
    ButtonStyle test = button::borderedField;
    test.height = button::bordered.height;
    m_cardTest = new Button(test, {.icon = u"bolt.horizontal.fill"_s});
    m_cardTest->setIconColor(ColorRole::accentIcon);
    connect(m_cardTest, &Button::clicked, this, [this] { testConnection(); });

    auto* model = row({},
        {new Label(u"Model: "_s), m_cardModel, Gap{5},
            new IconView({.name = u"checkmark.circle.fill"_s, .pointSize = 11}, ColorRole::green), Stretch{},
            m_cardTest});
    auto* words = column({},
        {new Label(u"AI Model Chuyên dụng Tralio thuật Kavo"_s, text::cardTitle, ColorRole::accentText),
            Gap{4}, description, Gap{8}, model});
    auto* icon = new IconView({.name = u"sparkles"_s, .pointSize = 20}, ColorRole::accentIcon);
    m_card = filled(new Surface(ColorRole::accentTint, ColorRole::accentTintCardEdge, radius::block),
        row({.spacing = 10, .padding = {10, 10, 10, 10}},
            {column({}, {icon, Stretch{}}), StackItem(words, 1)}));
    return m_card;
}

QWidget* ProviderSection::endpointFields() {
    AppSettings& settings = m_state.settings();
    m_baseURL = field(settings.baseURL, u"API Endpoint (Base URL)"_s, u"https://%1/v1"_s.arg(hosts::openAI));
    m_model = field(settings.model, u"Tên Model"_s, u"gpt-4o-mini"_s);
    m_fields = filled(new QWidget,
        column({.spacing = 10},
            {column(
                 {.spacing = 4}, {fieldCaption(u"API Endpoint (Base URL):"_s), m_baseURL, exposureWarning()}),
                column({.spacing = 4}, {fieldCaption(u"Tên Model:"_s), m_model}), keyField()}));
    return m_fields;
}

QWidget* ProviderSection::exposureWarning() {
    m_exposureWords = new Label(u"Địa chỉ này không mã hóa (http): API Key sẽ đi qua mạng ở dạng đọc được."_s,
        text::caption, ColorRole::orange);
    m_exposureWords->setWraps();
    auto* accept = new Button(button::bordered, {.title = u"Vẫn gửi"_s});
    connect(accept, &Button::clicked, this, [this] { m_state.settings().acceptExposure(); });
    m_exposure = new Reveal(filled(new Surface(ColorRole::orangeTint, ColorRole::none, radius::control),
        row({.spacing = 6, .padding = {6, 6, 6, 6}},
            {StackItem(m_exposureWords, Qt::AlignVCenter, 1), accept})));
    return m_exposure;
}

QLayout* ProviderSection::keyField() {
    m_eye = new Button(button::fieldIcon, {});
    connect(m_eye, &Button::clicked, this, [this] { m_state.isShowingAPIKey = !m_state.isShowingAPIKey(); });
    m_apiKey = field(m_state.settings().apiKey, u"API Key"_s, u"sk-..."_s);
    m_test = new Button(button::borderedField, {.icon = u"bolt.horizontal.fill"_s, .title = u"Kiểm tra"_s});
    m_test->setIconColor(ColorRole::accentIcon);
    connect(m_test, &Button::clicked, this, [this] { testConnection(); });
    return column({.spacing = 3},
        {row({}, {fieldCaption(u"API Key:"_s), Stretch{}, m_eye, Gap{-button::fieldIcon.padding}}),
            row({.spacing = 8}, {m_apiKey, m_test})});
}

TextField* ProviderSection::field(
    Persisted<QString>& setting, const QString& caption, const QString& placeholder) {
    auto* field = new TextField(TextField::Face::fixedWidth, &m_state.pasteboard());
    field->setAccessibleName(caption);
    field->setPlaceholderText(placeholder);
    connect(field, &TextField::edited, this, [&setting](const QString& text) { setting = text; });
    return field;
}

QWidget* ProviderSection::resultStrip() {
    m_resultIcon = new IconView({}, ColorRole::green);
    m_resultMessage = new Label({});
    m_resultMessage->setWraps();
    m_resultSurface = new Surface(ColorRole::greenTestTint, ColorRole::none, radius::control);
    m_result = new Reveal(filled(m_resultSurface,
        row({.spacing = 6, .padding = {6, 6, 6, 6}},
            {column({}, {m_resultIcon, Stretch{}}), StackItem(m_resultMessage, {}, 1)})));
    return m_result;
}

void ProviderSection::testConnection() {
    m_isResultAwaited = true;
    m_state.runTestConnection();
}

void ProviderSection::refresh() {
    const AppSettings& settings = m_state.settings();
    const ProviderPreset* provider = m_state.selectedProvider();
    m_provider->setTitle(provider ? provider->name : QString());
    m_provider->setEntries(providerEntries(settings.selectedPresetId()));
    m_help->setText(provider ? provider->helpText : QString());
    m_help->setVisible(provider != nullptr);

    const bool own = m_state.usesOwnGateway();
    const bool testing = m_state.isTesting();
    restFocus(*this, own ? *m_fields : *m_card);
    m_card->setVisible(own);
    m_cardModel->setText(settings.model());
    m_cardTest->setTitle(testing ? u"Đang kiểm tra..."_s : u"Kiểm tra kết nối"_s);
    m_fields->setVisible(!own);
    for (Button* test : {m_cardTest, m_test}) {
        test->setBusy(testing);
        test->setEnabled(!testing);
    }
    refreshFields();
    refreshResult();
}

void ProviderSection::refreshFields() {
    const AppSettings& settings = m_state.settings();
    const bool showing = m_state.isShowingAPIKey();
    setShownText(m_baseURL, settings.baseURL());
    if (settings.wouldExposeKey() && !m_exposure->isRevealed())
        announce(*m_exposureWords);
    m_exposure->setRevealed(settings.wouldExposeKey());
    setShownText(m_model, settings.model());
    setShownText(m_apiKey, settings.apiKey());
    m_apiKey->setEchoMode(showing ? QLineEdit::Normal : QLineEdit::Password);
    m_eye->setIconName(showing ? u"eye.slash"_s : u"eye"_s);
    setTooltip(m_eye, showing ? u"Ẩn API Key"_s : u"Hiện API Key"_s);
}

void ProviderSection::refreshResult() {
    const auto message = m_state.testResult();
    if (!message) {
        m_result->setRevealed(false);
        return;
    }
    const bool success = m_state.isSuccess();
    const ColorRole ink = success ? ColorRole::green : ColorRole::red;
    m_resultSurface->setFill(success ? ColorRole::greenTestTint : ColorRole::redTint);
    m_resultIcon->setIcon(
        {.name = success ? u"checkmark.circle.fill"_s : u"exclamationmark.triangle.fill"_s, .pointSize = 12});
    m_resultIcon->setColor(ink);
    m_resultMessage->setText(beginningOfMessage(*message));
    m_resultMessage->setColor(ink);
    if (std::exchange(m_isResultAwaited, false))
        announce(*m_resultMessage);  // also of one in the same words
    m_result->setRevealed(true);
}

}  // namespace tralio
