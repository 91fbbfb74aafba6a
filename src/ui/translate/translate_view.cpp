#include "ui/translate/translate_view.h"

#include <QMimeData>
#include <QShortcut>

#include <utility>

#include "common/excerpt.h"
#include "common/on_change.h"
#include "engine/translation_tone.h"
#include "speech/speech_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/button.h"
#include "ui/kit/drop_target.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reveal.h"
#include "ui/kit/spinner.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/tooltip.h"
#include "ui/translate/dropped_item.h"
#include "ui/translate/result_block.h"
#include "ui/translate/translate_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QList<MenuEntry> entries(const QStringList& titles) {
    QList<MenuEntry> list;
    for (const QString& title : titles)
        list.push_back({title});
    return list;
}

QString characterCountText(const QString& text) {
    return u"%1 ký tự"_s.arg(characterCount(text));
}

QString recognizingText(qsizetype lines) {
    const QString text = u"Đang quét chữ (OCR)..."_s;
    return lines > 0 ? text + u" %1 dòng"_s.arg(lines) : text;
}

QList<MenuEntry> toneEntries(const TranslationTone& current) {
    QList<MenuEntry> list;
    for (const TranslationTone& tone : TranslationTone::allCases())
        list.push_back({tone.rawValue(), tone == current});
    return list;
}

/// A button of the tool row: its word says what it does, and its tooltip says more.
Button* tool(const QString& icon, const QString& title, Weight weight, const QString& tooltip) {
    auto* button = new Button(button::word, {.icon = icon, .title = title});
    button->setWeight(weight);
    setTooltip(button, tooltip);
    return button;
}

}  // namespace

TranslateView::TranslateView(TranslateState& state, QWidget* parent)
    : QWidget(parent), m_state(state), m_resultBlock(new ResultBlock(state)) {
    filled(this,
        column({.padding = {14, 10, 14, 10}},
            {languageRow(), Gap{12}, inputBox(), Gap{4}, toolRow(), Gap{12}, actionRow(), Gap{12},
                errorStrip(), {m_resultBlock, {}, 1}}));
    const auto follow = [this](auto& source) { onAnyChange(source, this, [this] { refresh(); }); };
    follow(m_state);
    follow(m_state.settings());
    follow(*m_state.inputText.owner);
    follow(m_state.appState());
    follow(m_state.speechService());
    m_state.appear(this);
    AppState& appState = m_state.appState();
    onChange(
        appState, this, [&appState] { return appState.translateTriggerId(); },
        [this, &appState] {
            if (!appState.isPendingTextWanted)
                focusInput();  // where Return sends it
        });
    refresh();
}

QLayout* TranslateView::languageRow() {
    m_source = new MenuButton;
    m_source->setSpokenCaption(u"Ngôn ngữ nguồn"_s);
    m_source->setEntries(entries(TranslateState::languages()));
    connect(m_source, &MenuButton::chosen, this,
        [this](int index) { m_state.sourceLang = TranslateState::languages()[index]; });

    auto* swap = new Button(button::swap, {.icon = u"arrow.left.arrow.right"_s});
    setTooltip(swap, u"Đổi chiều ngôn ngữ"_s);
    connect(swap, &Button::clicked, this, [this] { m_state.swapLanguages(); });

    m_target = new MenuButton;
    m_target->setSpokenCaption(u"Ngôn ngữ đích"_s);
    m_target->setEntries(entries(TranslateState::targetLanguages()));
    connect(m_target, &MenuButton::chosen, this,
        [this](int index) { m_state.targetLang = TranslateState::targetLanguages()[index]; });

    m_tone = new MenuButton(text::caption, u"sparkles"_s);
    m_tone->setSpokenCaption(u"Giọng điệu"_s);
    m_tone->setMenuAlignment(Qt::AlignRight);
    connect(m_tone, &MenuButton::chosen, this,
        [this](int index) { m_state.settings().tone = TranslationTone::allCases()[size_t(index)]; });

    return row({.spacing = 8}, {m_source, swap, m_target, Stretch{}, m_tone});
}

QWidget* TranslateView::inputBox() {
    m_input = new MultilineEnterInputView(m_state.inputText, [this] { m_state.performTranslate(); });
    m_input->setTextOf([this](const QMimeData& source) {
        const TextOrigin origin = originOf(source);
        return m_state.textToInsert(
            source, origin, origin == TextOrigin::drag ? m_input->text() : m_input->unselectedText());
    });
    m_input->setAccessibleName(u"Nội dung cần dịch"_s);
    m_input->setFixedHeight(115);
    m_inputBox = new Surface(ColorRole::textBackground, ColorRole::border20, radius::block);
    m_input->setScrollFrame(m_inputBox);
    new DropTarget(m_inputBox,
        {.accepts = &mayBringItems,
            .hover = [this](bool hovering) { m_state.isDropTargeted = hovering; },
            .drop = [this](const QMimeData& content) { return m_state.handleDrop(itemsIn(content)); }});
    return filled(m_inputBox, column({.padding = {6, 6, 6, 6}}, {m_input}));
}

QLayout* TranslateView::toolRow() {
    m_linesRead = new Label({}, text::smallCaption.with(Weight::medium), ColorRole::accentText);
    m_recognizing = filled(new QWidget, row({.spacing = 4}, {new Spinner(12), m_linesRead}));
    m_characterCount = new Label(characterCountText(m_counted), text::smallCaption, ColorRole::secondary);
    m_clear = new Button(button::word, {.title = u"Xóa"_s});
    m_clear->setColor(ColorRole::secondary);
    connect(m_clear, &Button::clicked, this, [this] { m_state.clear(); });

    auto* capture = tool(u"camera.viewfinder"_s, u"Chụp & Tralio"_s, Weight::medium,
        u"Khoanh vùng màn hình để quét chữ và dịch ngay (OCR)"_s);
    connect(capture, &Button::clicked, this, [this] { m_state.captureScreenAndTranslate(); });
    auto* paste = tool(u"doc.on.clipboard"_s, u"Dán"_s, Weight::regular,
        u"Dán văn bản hoặc quét chữ từ ảnh trong clipboard"_s);
    connect(paste, &Button::clicked, this, [this] { m_state.pasteFromClipboard(AutoTranslate::no); });
    auto* pasteAndTranslate = tool(u"arrow.right.doc.on.clipboard"_s, u"Dán & Tralio"_s, Weight::semibold,
        u"Dán văn bản hoặc quét ảnh trong clipboard và dịch ngay"_s);
    pasteAndTranslate->setColor(ColorRole::accentText);
    connect(pasteAndTranslate, &Button::clicked, this,
        [this] { m_state.pasteFromClipboard(AutoTranslate::yes); });

    // Count and buttons start and end with their texts 4 px inside the edges of the box above. The edge of
    // the last button lies outside the row, so no enclosing widget may clip it.
    constexpr Gap overhang{-2};
    return row({.spacing = 2, .padding = {4, 0, 0, 0}},
        {m_recognizing, m_characterCount, Stretch{}, m_clear, capture, paste, pasteAndTranslate, overhang});
}

QLayout* TranslateView::actionRow() {
    m_translate = new Button(button::main, {.icon = u"arrow.triangle.2.circlepath"_s});
    m_translate->stretch();
    connect(m_translate, &Button::clicked, this, [this] { m_state.performTranslate(); });
    m_cancel = new Button(button::borderedTall, {.title = u"Hủy"_s});
    connect(m_cancel, &Button::clicked, this, [this] { m_state.cancel(); });
    // Works wherever the focus is in the window.
    m_escape = new QShortcut(Qt::Key_Escape, this);
    connect(m_escape, &QShortcut::activated, this, [this] { m_state.cancel(); });
    return row({.spacing = 8}, {m_translate, m_cancel});
}

QWidget* TranslateView::errorStrip() {
    m_error = new ErrorStrip;
    connect(m_error, &ErrorStrip::closeRequested, this, [this] { m_state.dismissError(); });
    auto* spaced = filled(new QWidget, column({.padding = {0, 0, 0, 12}}, {m_error}));
    m_errorReveal = new Reveal(spaced);
    return m_errorReveal;
}

void TranslateView::focusInput() {
    m_input->setFocus(Qt::OtherFocusReason);
}

void TranslateView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    const bool isNew = !std::exchange(m_wasShown, true);
    if (!(isNew && TabStrip::isWalked(*window())))
        focusInput();
}

void TranslateView::refresh() {
    m_source->setTitle(m_state.sourceLang());
    m_target->setTitle(m_state.targetLang());
    m_tone->setTitle(m_state.settings().tone().rawValue());
    m_tone->setEntries(toneEntries(m_state.settings().tone()));

    const QString input = m_state.inputText.get();
    m_input->refresh();
    const bool dropTargeted = m_state.isDropTargeted();
    m_inputBox->setEdge(dropTargeted ? ColorRole::accentIcon : ColorRole::border20, dropTargeted ? 2 : 1);
    m_input->setPlaceholder(dropTargeted
            ? u"Thả hình ảnh vào đây để nhận diện chữ & dịch..."_s
            : u"Nhập nội dung cần dịch (Enter để dịch, Shift+Enter xuống dòng)..."_s,
        dropTargeted ? ColorRole::accentText : ColorRole::placeholder);
    m_input->setCaretShown(!dropTargeted);
    const bool recognizing = m_state.isRecognizing();
    const bool hasNotice = !m_state.notice().isEmpty();  // shown first, since it is short-lived
    m_recognizing->setVisible(recognizing && !hasNotice);
    m_escape->setEnabled(m_state.canEndRecognition());
    m_linesRead->setText(recognizingText(m_state.linesRead()));
    m_characterCount->setVisible(!recognizing || hasNotice);
    showCount(input);
    m_clear->setVisible(!input.isEmpty());

    const bool translating = m_state.isTranslating();
    m_translate->setTitle(translating ? u"Đang dịch bằng AI..."_s : u"Tralio (↵ Enter)"_s);
    m_translate->setBusy(translating);
    m_translate->setEnabled(m_state.canTranslate());
    const bool canCancel = translating || m_state.canEndRecognition();
    if (!canCancel)
        restFocus(*m_resultBlock, *m_cancel);
    m_cancel->setVisible(canCancel);

    const auto message = m_state.message();
    const bool isErrorNew = std::exchange(m_errorCount, m_state.errorCount()) != m_state.errorCount();
    if (message) {
        m_error->setMessage(*message);
        if (std::exchange(m_message, *message) != *message || (isErrorNew && m_state.errorMessage()))
            announce(*m_error);
    } else {
        m_message.clear();
    }
    m_errorReveal->setRevealed(message.has_value());
    m_resultBlock->refresh();
}

void TranslateView::showCount(const QString& input) {
    const QString notice = m_state.notice();
    const bool isNews = notice != std::exchange(m_notice, notice);
    if (isNews || input != m_counted) {
        m_counted = input;
        m_characterCount->setText(notice.isEmpty() ? characterCountText(input) : notice);
        m_characterCount->setColor(notice.isEmpty() ? ColorRole::secondary : ColorRole::orange);
        setTooltip(m_characterCount, notice);  // the notice may be longer than its place
    }
    if (isNews && !notice.isEmpty())
        announce(*m_characterCount);
}

}  // namespace tralio
