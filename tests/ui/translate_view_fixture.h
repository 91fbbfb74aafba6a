#pragma once

#include <QDragEnterEvent>
#include <QMimeData>

#include "ui/stage_test.h"

namespace tralio {

/// The translate panel in the hands of a user.
class TranslateViewTest : public StageTest {
protected:
    TranslateViewTest() { open(); }

    [[nodiscard]] QString inkOfResult() const {
        return find<ReadingArea>()->palette().color(QPalette::Text).name();
    }
    [[nodiscard]] bool says(const QString& text) const { return texts().contains(text); }
    [[nodiscard]] bool canPress(const QString& name) const {
        return hasControl(name) && controls(name).constFirst()->isEnabled();
    }
    void choose(const QString& menu, const QString& entry) {
        click(menu);
        click(entry);
    }
    [[nodiscard]] QString lastPrompt() const { return model.requests().last().systemPrompt(); }

    /// Carries content over the input; whether it may be dropped there.
    bool dragOver(const QMimeData& content) {
        QDragEnterEvent enter({}, Qt::CopyAction | Qt::MoveAction, &content, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        for (QWidget* widget : {find<MultilineEnterInputView>()->viewport(), box()})
            if (!enter.isAccepted())
                QApplication::sendEvent(widget, &enter);
        settle();
        return enter.isAccepted();
    }
    void leave() {
        QDragLeaveEvent leaving;
        QApplication::sendEvent(box(), &leaving);
        settle();
    }
    bool drop(const QMimeData& content) {
        QDropEvent dropped({5, 5}, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
        dropped.ignore();
        QApplication::sendEvent(box(), &dropped);
        settle();
        return dropped.isAccepted();
    }
    [[nodiscard]] QWidget* box() const { return find<MultilineEnterInputView>()->parentWidget(); }
    [[nodiscard]] QString placeholder() const {
        return find<MultilineEnterInputView>()->accessibleDescription();
    }
};

}  // namespace tralio
