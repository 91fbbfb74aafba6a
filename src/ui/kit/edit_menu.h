#pragma once

#include <functional>

#include "ui/kit/popup_menu.h"

namespace tralio {

struct EditMenuState {
    bool isWritable;
    bool canUndo;
    bool canCopy;
    bool isEmpty;
};

/// Opens the context menu of an editor at a position in it. Entries that would do nothing are disabled, as
/// far as the editor itself knows.
template <typename Editor>
void openEditMenu(Editor* editor, const QPoint& position, const EditMenuState& state) {
    using namespace Qt::StringLiterals;
    QList<MenuEntry> entries;
    QList<std::function<void()>> commands;
    const auto offer = [&](const QString& title, bool enabled, std::function<void()> command) {
        entries.push_back({.title = title, .enabled = enabled});
        commands.push_back(std::move(command));
    };
    if (state.isWritable) {
        offer(
            u"Hoàn tác"_s, state.canUndo, [editor] { editor->undo(); });
        offer(u"Cắt"_s, state.canCopy, [editor] { editor->cut(); });
    }
    offer(u"Sao chép"_s, state.canCopy, [editor] { editor->copy(); });
    if (state.isWritable) {
        // "Dán" is always enabled: only the clipboard's owner knows whether there is text, and one that hangs
        // would delay the menu by ten seconds.
        offer(u"Dán"_s, true, [editor] { editor->paste(); });
    }
    offer(u"Chọn tất cả"_s, !state.isEmpty, [editor] { editor->selectAll(); });

    PopupMenu* menu = PopupMenu::open(editor, QRect(position, QSize()), entries, -1);
    QObject::connect(menu, &PopupMenu::chosen, editor, [commands](int index) { commands.at(index)(); });
}

}  // namespace tralio
