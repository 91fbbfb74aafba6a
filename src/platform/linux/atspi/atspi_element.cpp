#include "platform/linux/atspi/atspi_element.h"

#include <QStringList>

#include <algorithm>
#include <utility>

#include "common/text_limit.h"
#include "platform/linux/bus/bus_value.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const QString textInterface = u"org.a11y.atspi.Text"_s;
const QString actionInterface = u"org.a11y.atspi.Action"_s;

constexpr QLatin1String otherModifiers[]{
    QLatin1String("alt"), QLatin1String("shift"), QLatin1String("meta"), QLatin1String("super")};

bool isMenuItem(AtspiRole role) {
    return role == AtspiRole::menuItem || role == AtspiRole::checkMenuItem ||
        role == AtspiRole::radioMenuItem || role == AtspiRole::tearoffMenuItem;
}

bool isParagraph(AtspiRole role) {
    return role == AtspiRole::paragraph || role == AtspiRole::heading;
}

ElementSelection::Reach reachOf(AtspiRole role) {
    switch (role) {
        case AtspiRole::autocomplete:
        case AtspiRole::entry:
        case AtspiRole::passwordText:
        case AtspiRole::spinButton:
        case AtspiRole::terminal:
        case AtspiRole::text:
            return ElementSelection::Reach::whole;
        default:
            return ElementSelection::Reach::part;
    }
}

std::optional<int> selectionCount(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, textInterface, u"GetNSelections"_s, {}, question.budget);
    return reply ? std::optional(reply->value(0).toInt()) : std::nullopt;
}

/// Absent when an element did not answer for all of its selections.
std::optional<QStringList> selectedParts(
    const AtspiReference& object, int count, const AtspiQuestion& question) {
    QStringList parts;
    int room = longestText;
    for (int i = 0; i < count; ++i) {
        const auto range = question.bus.call(object, textInterface, u"GetSelection"_s, {i}, question.budget);
        if (!range)
            return std::nullopt;
        const auto [start, end] = std::minmax({range->value(0).toInt(), range->value(1).toInt()});
        if (start < 0)
            return std::nullopt;
        if (start == end)
            continue;
        const bool isWhole = end - start <= room;
        const int last = isWhole ? end : start + room;
        const auto text =
            question.bus.call(object, textInterface, u"GetText"_s, {start, last}, question.budget);
        if (!text)
            return std::nullopt;
        parts += text->value(0).toString();
        if (!isWhole)
            return QStringList{beginningOfLongText(parts.join(u'\n'))};
        room -= end - start;
    }
    return parts;
}

/// Whether a sibling of this paragraph has a selection. A selection that ends at the first character of a
/// paragraph leaves the caret in that one, which then has no part of it.
bool isSelectedBeside(const AtspiReference& paragraph, const AtspiQuestion& question) {
    const QVariant parent =
        question.bus.property(paragraph, accessibleInterface, u"Parent"_s, question.budget);
    const auto beside = childrenOf(busValue<AtspiReference>(parent, QLatin1StringView("(so)")), question);
    return std::any_of(beside.begin(), beside.end(), [&](const AtspiReference& other) {
        return !question.budget.isSpent() && selectionCount(other, question).value_or(0) > 0;
    });
}

}  // namespace

QString nameOf(const AtspiReference& object, const AtspiQuestion& question) {
    return question.bus.property(object, accessibleInterface, u"Name"_s, question.budget).toString();
}

QString toolkitOf(const QString& service, const AtspiQuestion& question) {
    return question.bus
        .property({service, AtspiBus::desktop().path}, u"org.a11y.atspi.Application"_s, u"ToolkitName"_s,
            question.budget)
        .toString();
}

QList<AtspiReference> childrenOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetChildren"_s, {}, question.budget);
    return busValue<QList<AtspiReference>>(reply ? reply->value(0) : QVariant(), QLatin1StringView("a(so)"));
}

AtspiRole roleOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetRole"_s, {}, question.budget);
    return reply ? static_cast<AtspiRole>(reply->value(0).toUInt()) : AtspiRole::invalid;
}

AtspiStates statesOf(const AtspiReference& object, const AtspiQuestion& question) {
    const auto reply = question.bus.call(object, accessibleInterface, u"GetState"_s, {}, question.budget);
    const auto words = busValue<QList<uint>>(reply ? reply->value(0) : QVariant(), QLatin1StringView("au"));
    return AtspiStates(quint64(words.value(1)) << 32 | words.value(0));
}

std::optional<bool> isTerminal(const AtspiReference& object, const AtspiQuestion& question) {
    const AtspiRole role = roleOf(object, question);
    if (role == AtspiRole::terminal)
        return true;
    const bool holdsText = isParagraph(role) || reachOf(role) == ElementSelection::Reach::whole;
    if (!holdsText)
        return std::nullopt;
    const QString toolkit = toolkitOf(object.service, question).toLower();
    return toolkit == u"gtk" || toolkit == u"qt" ? std::optional(false) : std::nullopt;
}

AtspiElement::AtspiElement(AtspiReference object, std::shared_ptr<const AtspiContext> context)
    : m_object(std::move(object)), m_context(std::move(context)) {}

AtspiRole AtspiElement::role() {
    if (!m_role)
        m_role = roleOf(m_object, *m_context);
    return *m_role;
}

bool AtspiElement::holdsPassword() {
    return role() == AtspiRole::passwordText;
}

std::optional<QString> AtspiElement::selectedText() {
    return selectedTextOf(selection(), askPrimary());
}

bool AtspiElement::hasNoSelection() {
    return selection().answer == ElementSelection::Answer::none;
}

std::optional<QString> AtspiElement::selectedDocumentText() {
    return selectionBeside(selection(), askPrimary());
}

const ElementSelection& AtspiElement::selection() {
    if (!m_selection)
        m_selection = askSelection();
    return *m_selection;
}

ElementSelection AtspiElement::askSelection() {
    const auto count = selectionCount(m_object, *m_context);
    if (!count)
        return {};
    const auto parts = selectedParts(m_object, *count, *m_context);
    if (!parts)
        return {};
    if (!parts->isEmpty()) {
        const QString text = parts->join(u'\n');
        const bool isGtk4 = reachOf(role()) == ElementSelection::Reach::whole &&
            toolkitOf(m_object.service, *m_context) == u"GTK";  // GTK 3 calls itself "gtk"
        // May be a password: report no selection, since the application's own Copy refuses passwords.
        if (isGtk4 && !statesOf(m_object, *m_context).contains(AtspiState::multiLine) &&
            mayBePasswordOfGtk4(text, askPrimary()))
            return {ElementSelection::Answer::none, {}, ElementSelection::Reach::whole};
        return {ElementSelection::Answer::some, text, reachOf(role())};
    }
    if (isParagraph(role()) && isSelectedBeside(m_object, *m_context))
        return {};
    return {ElementSelection::Answer::none, {}, reachOf(role())};
}

AskPrimary AtspiElement::askPrimary() const {
    return [this] { return m_context->primary.textOf(m_context->processId, m_context->budget.deadline()); };
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
    // Three parts, as "c;<Alt>e:c;<Control>c": mnemonic, path through the menus, shortcut. Some toolkits give
    // only the shortcut, as "Ctrl+C". A key without a modifier is a mnemonic.
    const QString shortcut = reply->value(0).toString().section(u';', -1);
    const qsizetype modifierEnd = std::max(shortcut.lastIndexOf(u'>'), shortcut.lastIndexOf(u'+'));
    const QString key = shortcut.mid(modifierEnd + 1);
    // With a modifier beside Control it is another command: Control+Alt+C inserts a comment in LibreOffice
    // Writer.
    const auto hasModifier = [&](QLatin1String name) {
        return shortcut.left(modifierEnd).contains(name, Qt::CaseInsensitive);
    };
    const bool isOther = std::any_of(std::begin(otherModifiers), std::end(otherModifiers), hasModifier);
    return modifierEnd < 0 || key.isEmpty() || isOther ? std::nullopt : std::optional(key);
}

std::vector<std::unique_ptr<AccessibleElement>> AtspiElement::children() {
    std::vector<std::unique_ptr<AccessibleElement>> elements;
    for (const AtspiReference& child : childrenOf(m_object, *m_context))
        elements.push_back(std::make_unique<AtspiElement>(child, m_context));
    return elements;
}

bool AtspiElement::press() {
    // Pressing a disabled item does nothing, except that some toolkits open its menu and leave it open.
    const AtspiStates states = statesOf(m_object, *m_context);
    if (!states.contains(AtspiState::enabled) && !states.contains(AtspiState::sensitive))
        return false;
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
