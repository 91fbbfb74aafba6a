#pragma once

#include "hotkeys/accessibility.h"
#include "platform/linux/atspi/atspi_bus.h"
#include "platform/linux/selection/current_selection.h"

namespace tralio {

/// The bus to ask, and the time left for it.
struct AtspiQuestion {
    const AtspiBus& bus;
    TimeBudget budget;
};

/// What all elements found by one request share.
struct AtspiContext : AtspiQuestion {
    PrimarySelection& primary;
    qint32 processId;
    QString windowTitle;  ///< of the window in front; empty where it is not known
};

/// The roles that matter here, with their numbers in the protocol.
enum class AtspiRole : uint {
    invalid = 0,
    checkMenuItem = 8,
    filler = 20,
    frame = 23,
    layeredPane = 30,
    menuBar = 34,
    menuItem = 35,
    panel = 39,
    passwordText = 40,
    radioMenuItem = 45,
    rootPane = 46,
    spinButton = 52,
    splitPane = 53,
    tearoffMenuItem = 59,
    terminal = 60,
    text = 61,
    paragraph = 73,
    autocomplete = 76,
    entry = 79,
    heading = 83,
};

/// The states that matter here, as bit numbers in the protocol.
enum class AtspiState {
    active = 1,
    enabled = 8,
    focusable = 11,
    focused = 12,
    multiLine = 17,
    sensitive = 24,
    showing = 25,
    managesDescendants = 31,
};

class AtspiStates {
public:
    explicit AtspiStates(quint64 bits) : m_bits(bits) {}
    [[nodiscard]] bool contains(AtspiState state) const { return m_bits >> static_cast<int>(state) & 1U; }

private:
    quint64 m_bits;
};

[[nodiscard]] QString nameOf(const AtspiReference& object, const AtspiQuestion& question);
/// The toolkit that the application behind a connection is made with; empty if it does not say.
[[nodiscard]] QString toolkitOf(const QString& service, const AtspiQuestion& question);
[[nodiscard]] QList<AtspiReference> childrenOf(const AtspiReference& object, const AtspiQuestion& question);
[[nodiscard]] AtspiRole roleOf(const AtspiReference& object, const AtspiQuestion& question);
[[nodiscard]] AtspiStates statesOf(const AtspiReference& object, const AtspiQuestion& question);

/// Whether an element is a terminal; absent if its role does not decide it. A terminal in a web page, as in
/// editors built on a browser engine, has the role of a text field, and only some toolkits use the terminal
/// role.
[[nodiscard]] std::optional<bool> isTerminal(const AtspiReference& object, const AtspiQuestion& question);

/// An element that an application reports; or, with a null reference, the focused element of an application
/// that reports none, of which only the PRIMARY selection is known.
class AtspiElement final : public AccessibleElement {
public:
    AtspiElement(AtspiReference object, std::shared_ptr<const AtspiContext> context);

    bool holdsPassword() override;
    std::optional<QString> selectedText() override;
    bool hasNoSelection() override;
    std::optional<QString> selectedDocumentText() override;
    std::optional<QString> title() override;
    std::optional<QString> commandCharacter() override;
    std::vector<std::unique_ptr<AccessibleElement>> children() override;
    bool press() override;

private:
    [[nodiscard]] AtspiRole role();
    [[nodiscard]] const ElementSelection& selection();
    [[nodiscard]] ElementSelection askSelection();
    [[nodiscard]] AskPrimary askPrimary() const;

    AtspiReference m_object;
    std::shared_ptr<const AtspiContext> m_context;
    std::optional<AtspiRole> m_role;              ///< cached
    std::optional<ElementSelection> m_selection;  ///< cached
};

/// A menu bar, or an item of it, from which only the children are used.
///
/// Some toolkits put a menu's items directly below the item of the menu bar, others below a menu object. Here
/// they are always below a menu.
class AtspiMenuBar final : public AccessibleElement {
public:
    enum class Level { bar, barItem };

    AtspiMenuBar(
        AtspiReference object, std::shared_ptr<const AtspiContext> context, Level level = Level::bar);

    bool holdsPassword() override { return false; }
    std::optional<QString> selectedText() override { return std::nullopt; }
    bool hasNoSelection() override { return false; }
    std::optional<QString> selectedDocumentText() override { return std::nullopt; }
    std::optional<QString> title() override { return std::nullopt; }
    std::optional<QString> commandCharacter() override { return std::nullopt; }
    std::vector<std::unique_ptr<AccessibleElement>> children() override;
    bool press() override { return false; }

private:
    AtspiReference m_object;
    std::shared_ptr<const AtspiContext> m_context;
    Level m_level;
};

}  // namespace tralio
