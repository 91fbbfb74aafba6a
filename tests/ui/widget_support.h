#pragma once

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include "support/testing.h"
#include "ui/kit/button.h"
#include "ui/kit/label.h"
#include "ui/kit/menu_button.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/theme.h"

namespace tralio {

/// Shows a widget in an active window, as the user would have it.
void showActive(QWidget& widget);

/// The visible parts of a kind, in the order in which they were made.
template <typename Part>
[[nodiscard]] QList<Part*> visibleParts(const QWidget& owner) {
    QList<Part*> parts = owner.findChildren<Part*>();
    parts.removeIf([](const Part* part) { return !part->isVisible(); });
    return parts;
}

/// The visible controls with this title, or called so by screen readers.
[[nodiscard]] inline QList<Control*> visibleControls(const QWidget& owner, const QString& name) {
    QList<Control*> controls = visibleParts<Control>(owner);
    controls.removeIf([&](const Control* control) {
        return control->title() != name && control->accessibleName() != name;
    });
    return controls;
}

/// The first of them, or null.
[[nodiscard]] inline Control* visibleControl(const QWidget& owner, const QString& name) {
    return visibleControls(owner, name).value(0);
}

/// What the visible labels say.
[[nodiscard]] inline QStringList textsIn(const QWidget& owner) {
    QStringList texts;
    for (const Label* label : visibleParts<Label>(owner))
        texts += label->text();
    return texts;
}

/// What a screen reader calls it.
[[nodiscard]] inline QString spokenName(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

/// The title of the control that has the keyboard; empty where none has it.
[[nodiscard]] inline QString focusedTitle() {
    const auto* control = qobject_cast<Control*>(QApplication::focusWidget());
    return control != nullptr ? control->title() : QString();
}

/// The pointer comes to a widget, and goes.
void enter(QWidget& widget);
void leave(QWidget& widget);

/// Whether a control has the keyboard and shows it.
[[nodiscard]] inline bool showsFocusRing() {
    const auto* control = qobject_cast<Control*>(QApplication::focusWidget());
    return control != nullptr && control->showsFocusRing();
}

/// What the widget paints, at its size.
[[nodiscard]] QImage pictureOf(QWidget& widget);

/// The smallest rectangle in which two pictures of one size differ.
[[nodiscard]] QRect difference(const QImage& one, const QImage& other);

/// Where the widget's picture changes when something is done to it.
template <typename Change>
[[nodiscard]] QRect changeOf(QWidget& widget, Change change) {
    const QImage before = pictureOf(widget);
    change();
    return difference(before, pictureOf(widget));
}

/// The ink of one line of text at the left of a wide area, where nothing cuts it above and below.
[[nodiscard]] QRect inkOf(const QString& text, const TextStyle& style = text::body);

}  // namespace tralio
