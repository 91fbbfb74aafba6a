#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tralio {

/// One element of another program's user interface. Anything that cannot be read, for whatever reason (the
/// program does not report it, has ended, or does not answer in time), is absent, empty or false.
class AccessibleElement {
public:
    AccessibleElement() = default;
    AccessibleElement(const AccessibleElement&) = delete;
    AccessibleElement& operator=(const AccessibleElement&) = delete;
    virtual ~AccessibleElement() = default;

    /// Whether this is a password field. What is selected in it must not be fetched by any layer.
    virtual bool holdsPassword() = 0;

    virtual std::optional<QString> selectedText() = 0;

    /// Whether the element counts its selections and has none.
    virtual bool hasNoSelection() = 0;

    /// The selection of a document without text offsets, such as a web view.
    virtual std::optional<QString> selectedDocumentText() = 0;

    virtual std::optional<QString> title() = 0;

    /// The character of a menu item's keyboard shortcut, if its only modifier is the usual one of shortcuts.
    virtual std::optional<QString> commandCharacter() = 0;

    virtual std::vector<std::unique_ptr<AccessibleElement>> children() = 0;

    /// Performs the element's press action; false if it has none, or is disabled.
    virtual bool press() = 0;
};

/// Other programs' user interfaces, by process. Calls block, but not for long: all calls to one result of
/// `focusedElement` or `menuBar`, and to the elements below it, take at most 200 ms together, whatever the
/// other program does. Used from the main thread.
class Accessibility {
public:
    Accessibility() = default;
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    virtual ~Accessibility() = default;

    /// The element with the keyboard focus, or null.
    virtual std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) = 0;

    /// The menu bar of the active window, or null. Its children are the items of the bar, below these are the
    /// menus, and below those the menu items.
    virtual std::unique_ptr<AccessibleElement> menuBar(qint32 processId) = 0;
};

}  // namespace tralio
