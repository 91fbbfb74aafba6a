#pragma once

#include <QDragEnterEvent>
#include <QMimeData>

#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace tralio {

/// The translate panel in the hands of a user. The model answers in capitals.
class TranslateViewTest : public testing::Test {
protected:
    TranslateViewTest() {
        Theme::setAppearance({.reducedMotion = true});
        stage.model.translatesBy(
            [](const StandInModel::Request& request) { return request.userText().toUpper(); });
        stage.open();
    }
    ~TranslateViewTest() override { Theme::setAppearance({}); }

    [[nodiscard]] QString input() const { return stage.find<MultilineEnterInputView>()->text(); }
    [[nodiscard]] QString result() const { return stage.find<ReadingArea>()->text(); }
    [[nodiscard]] QString inkOfResult() const {
        return stage.find<ReadingArea>()->palette().color(QPalette::Text).name();
    }
    [[nodiscard]] bool says(const QString& text) const { return stage.texts().contains(text); }
    [[nodiscard]] bool canPress(const QString& name) const {
        return stage.hasControl(name) && stage.controls(name).constFirst()->isEnabled();
    }
    void choose(const QString& menu, const QString& entry) {
        stage.click(menu);
        stage.click(entry);
    }
    void translate(const QString& text) {
        stage.type(text);
        stage.press(Qt::Key_Return);
        stage.wait([this, text] { return result() == text.toUpper(); });
    }
    void holdReplies() {
        stage.model.replies(StandInReply::translation(u"late"_s).delivered(StandInReply::Delivery::held));
    }
    void waitForRequests(qsizetype count) {
        stage.wait([this, count] { return stage.model.requests().size() == count; });
    }
    [[nodiscard]] QString lastPrompt() const { return stage.model.requests().last().systemPrompt(); }

    /// Carries content over the input; whether it may be dropped there.
    bool dragOver(const QMimeData& content) {
        QDragEnterEvent enter({}, Qt::CopyAction | Qt::MoveAction, &content, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        for (QWidget* widget : {stage.find<MultilineEnterInputView>()->viewport(), box()})
            if (!enter.isAccepted())
                QApplication::sendEvent(widget, &enter);
        stage.settle();
        return enter.isAccepted();
    }
    void leave() {
        QDragLeaveEvent leaving;
        QApplication::sendEvent(box(), &leaving);
        stage.settle();
    }
    bool drop(const QMimeData& content) {
        QDropEvent dropped({5, 5}, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        dropped.ignore();
        QApplication::sendEvent(box(), &dropped);
        stage.settle();
        return dropped.isAccepted();
    }
    [[nodiscard]] QWidget* box() const { return stage.find<MultilineEnterInputView>()->parentWidget(); }
    [[nodiscard]] QString placeholder() const {
        return stage.find<MultilineEnterInputView>()->accessibleDescription();
    }

    Stage stage;
};

}  // namespace tralio
