#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tralio {

/// One element of another program's user interface. What cannot be had, for whatever reason (the program does
/// not tell, is gone, or does not answer in time), is absent, empty or false.
class AccessibleElement {
public:
    AccessibleElement() = default;
    AccessibleElement(const AccessibleElement&) = delete;
    AccessibleElement& operator=(const AccessibleElement&) = delete;
    virtual ~AccessibleElement() = default;

    /// Whether this is a password field. What is selected in it must not be fetched by any layer.
    virtual bool holdsPassword() = 0;

    virtual std::optional<QString> selectedText() = 0;

    /// Whether the element counts its selections, and there is none.
    virtual bool hasNoSelection() = 0;

    /// The selection of a document that knows no text offsets, such as a web view.
    virtual std::optional<QString> selectedDocumentText() = 0;

    virtual std::optional<QString> title() = 0;

    /// The character of a menu item's keyboard shortcut, if that has the modifier of usual shortcuts alone.
    virtual std::optional<QString> commandCharacter() = 0;

    virtual std::vector<std::unique_ptr<AccessibleElement>> children() = 0;

    /// Performs the element's press action; false when it has none, or is greyed and would do nothing.
    virtual bool press() = 0;
};

/// Other programs' user interfaces, by process. Calls block; all that is asked of one answer of
/// `focusedElement` or `menuBar` and what hangs below it takes 200 ms together at the most, whatever the
/// other program does. Used from the main thread.
class Accessibility {
public:
    Accessibility() = default;
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    virtual ~Accessibility() = default;

    /// The element with the keyboard focus, or null.
    virtual std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) = 0;

    /// The menu bar of the active window, or null. Its children are the menu-bar items, theirs the menus, and
    /// theirs the menu items.
    virtual std::unique_ptr<AccessibleElement> menuBar(qint32 processId) = 0;
};

}  // namespace tralio
