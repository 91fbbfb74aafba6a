#pragma once

#include <QLineEdit>
#include <QScrollBar>
#include <QWindow>

#include "history/translation_history_store.h"
#include "ui/kit/error_strip.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage.h"

namespace tralio {

/// The whole window without motions, in the hands of a user. The model answers in capitals.
struct StageTest : testing::Test, protected Stage {
    StageTest() {
        Theme::setAppearance({.reducedMotion = true});
        model.translatesBy([](const StandInModel::Request& request) { return request.userText().toUpper(); });
    }
    ~StageTest() override { Theme::setAppearance({}); }

    [[nodiscard]] bool isOnTab(const QString& tab) const {
        return hasControl(tab) && controls(tab).constFirst()->isChecked();
    }
    /// Opens the window and clicks the controls.
    void openAt(const auto&... names) {
        open();
        click(names...);
    }
    // What is to be set before the window opens.

    void useOwnEndpoint() {
        store.setValue(QStringLiteral("app_setting_preset_id"), QStringLiteral("custom"));
        store.setValue(QStringLiteral("app_setting_api_key"), QStringLiteral("sk-own"));
    }
    /// The first one stands at the top. The translations are the texts in capitals.
    void fillHistory(const QStringList& texts) {
        TranslationHistoryStore history(store);
        for (auto text = texts.crbegin(); text != texts.crend(); ++text)
            history.add(*text, text->toUpper(), QStringLiteral("Tiếng Anh"), QStringLiteral("Tiếng Việt"),
                QStringLiteral("Tự nhiên"));
    }
    void refusePermissions() {
        desktop.permissions.accessibility = false;
        desktop.permissions.screenCapture = false;
    }

    void translate(const QString& text) {
        type(text);
        submit(text.toUpper());
    }
    void submit(const QString& expected) {
        press(Qt::Key_Return);
        wait([&] { return result() == expected; });
    }
    void holdReplies() {
        model.replies(
            StandInReply::translation(QStringLiteral("late")).delivered(StandInReply::Delivery::held));
    }
    void waitForRequests(qsizetype count) {
        wait([this, count] { return model.requests().size() == count; });
    }
    void pass(std::chrono::milliseconds time) {
        desktop.clock.advance(time);
        settle();
    }
    /// As the window system delivers a key: to the window, which hands it on to what has the focus. Whether
    /// somebody took it.
    bool typeKey(KeyCode position, Qt::KeyboardModifiers modifiers, int key, const QString& text) {
        QKeyEvent event(
            QEvent::KeyPress, key, modifiers, firstScanCode + static_cast<quint32>(position), 0, 0, text);
        event.ignore();
        QCoreApplication::sendEvent(window().windowHandle(), &event);
        pass(0ms);
        return event.isAccepted();
    }
    [[nodiscard]] QString input() const { return find<MultilineEnterInputView>()->text(); }
    [[nodiscard]] QString result() const { return find<ReadingArea>()->text(); }
    [[nodiscard]] bool showsError() const { return find<ErrorStrip>()->isVisible(); }
    /// Gives a control the keyboard, with its ring, which shows only to who uses the keyboard, and presses
    /// the keys.
    void focus(const QString& name, auto... keys) {
        ASSERT_TRUE(hasControl(name)) << qPrintable(name);
        press(Qt::Key_Shift);
        controls(name).constFirst()->setFocus(Qt::TabFocusReason);
        press(keys...);
    }
    /// Presses and releases the left button there, on whatever is there.
    void clickAt(const QPoint& place) {
        QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, place);
        settle();
    }
    [[nodiscard]] static QPoint middle(const QWidget* widget) {
        return widget->mapTo(widget->window(), widget->rect().center());
    }
    void pressUndo() {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        settle();
    }
    /// The source texts of the history as it is stored, from the top.
    [[nodiscard]] QStringList stored() {
        const TranslationHistoryStore history(store);
        QStringList texts;
        for (const TranslationItem& item : history.items())
            texts += item.sourceText;
        return texts;
    }
    /// The field that screen readers call so.
    [[nodiscard]] QLineEdit* field(const QString& name) const {
        return part<QLineEdit>([&](const QLineEdit& field) { return field.accessibleName() == name; });
    }
    [[nodiscard]] QString setting(const QString& name) const {
        return store.text(QStringLiteral("app_setting_") + name).value_or(QString());
    }
};

}  // namespace tralio
