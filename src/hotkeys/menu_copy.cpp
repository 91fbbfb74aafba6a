#include <QStringBuilder>

#include "common/debug_log.h"
#include "hotkeys/accessibility.h"
#include "hotkeys/selected_text_fetch.h"

namespace tralio {
namespace {

/// The lower-case title of a menu item that means Copy; nothing for any other item.
std::optional<QString> titleOfCopyItem(AccessibleElement& item) {
    const auto character = item.commandCharacter();
    const QString title = item.title().value_or(QString()).toLower();
    if (title.endsWith(u"...") || title.endsWith(u'…'))
        return std::nullopt;  // opens a dialog, as xfce4-terminal's "Copy Input To All Tabs..."
    const bool isCopy = (character && character->toUpper() == u"C") || title.startsWith(u"copy") ||
        title.startsWith(u"sao chép");
    return isCopy ? std::optional(title) : std::nullopt;
}

}  // namespace

bool SelectedTextFetch::pressMenuCopy(qint32 pid) {
    const auto menuBar = m_platform.accessibility.menuBar(pid);
    if (!menuBar)
        return false;
    for (const auto& menuBarItem : menuBar->children()) {
        for (const auto& menu : menuBarItem->children()) {
            for (const auto& item : menu->children()) {
                const auto title = titleOfCopyItem(*item);
                if (!title || !item->press())
                    continue;
                debugLog(u"triggerCopyMenuAction: executed kAXPressAction successfully on '" % *title % u"'");
                return true;
            }
        }
    }
    return false;
}

}  // namespace tralio
