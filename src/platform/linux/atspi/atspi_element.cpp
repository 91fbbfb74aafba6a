#include "platform/linux/atspi/atspi_element.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const QString textInterface = u"org.a11y.atspi.Text"_s;
const QString actionInterface = u"org.a11y.atspi.Action"_s;

bool isMenuItem(AtspiRole role) {
    return role == AtspiRole::menuItem || role == AtspiRole::checkMenuItem ||
        role == AtspiRole::radioMenuItem || role == AtspiRole::tearoffMenuItem;
}

}  // namespace

QList<AtspiReference> childrenOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetChildren"_s, {}, question.budget);
    return reply ? qdbus_cast<QList<AtspiReference>>(reply->value(0)) : QList<AtspiReference>();
}

AtspiRole roleOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetRole"_s, {}, question.budget);
    return reply ? static_cast<AtspiRole>(reply->value(0).toUInt()) : AtspiRole::invalid;
}

AtspiStates statesOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetState"_s, {}, question.budget);
    const auto words = reply ? qdbus_cast<QList<uint>>(reply->value(0)) : QList<uint>();
    return AtspiStates(quint64(words.value(1)) << 32 | words.value(0));
}

AtspiElement::AtspiElement(AtspiReference object, std::shared_ptr<const AtspiContext> context)
    : m_object(std::move(object)), m_context(std::move(context)) {}

std::optional<QString> AtspiElement::selectedText() {
    auto own = ownSelection();
    if (!own || holdsWholeText())
        return own;
    // One paragraph of a document knows only its own part of the selection, and a page has a placeholder
    // where another element stands. PRIMARY has it all.
    auto all = primaryText();
    const bool hasPlaceholders = own->contains(QChar::ObjectReplacementCharacter);
    if (all && !all->trimmed().isEmpty() && (hasPlaceholders || all->contains(*own)))
        return all;
    return hasPlaceholders ? own->remove(QChar::ObjectReplacementCharacter) : own;
}

std::optional<QString> AtspiElement::selectedDocumentText() {
    // An input field that reports no selection has none: PRIMARY would be what was marked there before.
    return selectionCount() && holdsWholeText() ? std::nullopt : primaryText();
}

std::optional<int> AtspiElement::selectionCount() const {
    const auto reply =
        m_context->bus.call(m_object, textInterface, u"GetNSelections"_s, {}, m_context->budget);
    return reply ? std::optional(reply->value(0).toInt()) : std::nullopt;
}

std::optional<QString> AtspiElement::ownSelection() const {
    QStringList parts;
    const int count = selectionCount().value_or(0);
    for (int i = 0; i < count; ++i) {
        const auto range =
            m_context->bus.call(m_object, textInterface, u"GetSelection"_s, {i}, m_context->budget);
        if (!range)
            break;
        const auto [start, end] = std::minmax({range->value(0).toInt(), range->value(1).toInt()});
        if (start == end)
            continue;
        const auto text =
            m_context->bus.call(m_object, textInterface, u"GetText"_s, {start, end}, m_context->budget);
        if (text)
            parts += text->value(0).toString();
    }
    return parts.isEmpty() ? std::nullopt : std::optional(parts.join(u'\n'));
}

bool AtspiElement::holdsWholeText() const {
    switch (roleOf(m_object, *m_context)) {
        case AtspiRole::autocomplete:
        case AtspiRole::entry:
        case AtspiRole::passwordText:
        case AtspiRole::spinButton:
        case AtspiRole::terminal:
        case AtspiRole::text:
            return true;
        default:
            return false;
    }
}

std::optional<QString> AtspiElement::primaryText() const {
    return m_context->primary.textOf(m_context->processId, m_context->budget.deadline());
}

std::optional<QString> AtspiElement::title() {
    const QVariant name =
        m_context->bus.property(m_object, accessibleInterface, u"Name"_s, m_context->budget);
    return name.isValid() ? std::optional(name.toString()) : std::nullopt;
}

std::optional<QString> AtspiElement::commandCharacter() {
    const auto reply =
        m_context->bus.call(m_object, actionInterface, u"GetKeyBinding"_s, {0}, m_context->budget);
    if (!reply)
        return std::nullopt;
    // Mnemonic; the way to it through the menus; shortcut: "c;<Alt>e:c;<Control>c". Some toolkits give the
    // shortcut alone, as "Ctrl+C". A key without a modifier is a mnemonic.
    const QString shortcut = reply->value(0).toString().section(u';', -1);
    const qsizetype modifierEnd = std::max(shortcut.lastIndexOf(u'>'), shortcut.lastIndexOf(u'+'));
    const QString key = shortcut.mid(modifierEnd + 1);
    return modifierEnd < 0 || key.isEmpty() ? std::nullopt : std::optional(key);
}

std::vector<std::unique_ptr<AccessibleElement>> AtspiElement::children() {
    std::vector<std::unique_ptr<AccessibleElement>> elements;
    for (const AtspiReference& child : childrenOf(m_object, *m_context))
        elements.push_back(std::make_unique<AtspiElement>(child, m_context));
    return elements;
}

bool AtspiElement::press() {
    const auto reply = m_context->bus.call(m_object, actionInterface, u"DoAction"_s, {0}, m_context->budget);
    return reply && reply->value(0).toBool();
}

AtspiMenuBar::AtspiMenuBar(AtspiReference object, std::shared_ptr<const AtspiContext> context, Level level)
    : m_object(std::move(object)), m_context(std::move(context)), m_level(level) {}

std::vector<std::unique_ptr<AccessibleElement>> AtspiMenuBar::children() {
    std::vector<std::unique_ptr<AccessibleElement>> elements;
    const auto below = childrenOf(m_object, *m_context);
    if (m_level == Level::bar) {
        for (const AtspiReference& item : below)
            elements.push_back(std::make_unique<AtspiMenuBar>(item, m_context, Level::barItem));
    } else if (!below.isEmpty()) {
        const bool hasMenu = below.size() == 1 && !isMenuItem(roleOf(below.front(), *m_context));
        elements.push_back(std::make_unique<AtspiElement>(hasMenu ? below.front() : m_object, m_context));
    }
    return elements;
}

}  // namespace tralio
