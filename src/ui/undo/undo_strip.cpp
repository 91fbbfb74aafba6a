#include "ui/undo/undo_strip.h"

#include <QShortcut>

#include "common/on_change.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_rest.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/reveal.h"
#include "ui/kit/stack.h"
#include "ui/kit/surface.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int stripHeight = 33;

}  // namespace

UndoStrip::UndoStrip(UndoOffer& offer, QWidget& neighbour, QWidget* parent)
    : QWidget(parent), m_offer(offer), m_neighbour(neighbour) {
    m_message = new Label(QString(), text::caption);
    m_undo = new Button(button::word, {.title = u"Hoàn tác"_s});
    m_undo->setWeight(Weight::semibold);
    m_undo->setColor(ColorRole::accentText);
    connect(m_undo, &Button::clicked, this, [this] { undo(); });
    // Works wherever the focus is, except in an editor, which has an undo of its own.
    m_keys = new QShortcut(QKeySequence::Undo, this);
    connect(m_keys, &QShortcut::activated, this, [this] { undo(); });

    auto* strip = filled(new Surface(ColorRole::surface2, ColorRole::none, 0),
        row({.spacing = 6, .padding = {14, 0, 14 - button::word.padding, 0}},
            {new IconView({u"clock.arrow.circlepath"_s, 11}, ColorRole::secondary), {m_message, {}, 1},
                m_undo}));
    strip->setFixedHeight(stripHeight);
    m_reveal = new Reveal(filled(new QWidget, column({}, {new Divider, strip})));
    filled(this, column({}, {m_reveal}));
    onAnyChange(m_offer, this, [this] { refresh(); });
    refresh();
}

void UndoStrip::undo() {
    if (!m_offer.message())
        return;  // the button fades away
    m_offer.accept();
    // The strip is empty then, but not hidden: its parts would be gone before a screen reader asks for them.
    setAccessibleName(u"Đã hoàn tác"_s);
    announce(*this);
}

void UndoStrip::hideEvent(QHideEvent* event) {
    setAccessibleName(QString());
    QWidget::hideEvent(event);
}

void UndoStrip::refresh() {
    const auto message = m_offer.message();
    if (message) {
        setAccessibleName(QString());
        m_message->setText(*message);
        announce(*m_message);  // before it appears, or it would be told twice
    } else {
        restFocus(m_neighbour, *m_reveal);
    }
    m_reveal->setRevealed(message.has_value());
    m_keys->setEnabled(message.has_value());
}

}  // namespace tralio
