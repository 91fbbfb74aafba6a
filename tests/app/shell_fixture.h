#pragma once

#include "app/app_delegate.h"
#include "common/on_change.h"
#include "support/debug_log_file.h"
#include "ui/program_on_fakes.h"

namespace tralio {

class FakePopover final : public PopoverHost {
public:
    bool isShown() const override { return shown; }
    void show(std::optional<QRect> anchor) override {
        shown = true;
        anchors.push_back(anchor);
        if (onShow)
            onShow();
    }
    void performClose() override { shown = false; }

    bool shown = false;
    std::vector<std::optional<QRect>> anchors;  ///< one for each time it was shown
    std::function<void()> onShow;
};

class FakeStatusItem final : public StatusItemHost {
public:
    void setAction(std::function<void()> installed) override { action = std::move(installed); }
    void setMenu(const QList<StatusMenuEntry>& entries) override { menu = entries; }
    bool isInTray() const override { return inTray; }
    std::optional<QRect> frame() const override { return place; }

    void choose(const QString& title) {
        for (const StatusMenuEntry& entry : menu)
            if (entry.title == title)
                entry.action();
    }

    bool inTray = true;
    std::function<void()> action;
    QList<StatusMenuEntry> menu;
    std::optional<QRect> place = QRect(1200, 3, 24, 24);
};

/// A delegate that has not been launched yet.
class Shell : public testing::Test, protected ProgramOnFakes {
protected:
    Shell() {
        onChange(
            appState, &appState, [this] { return appState.translateTriggerId(); },
            [this] { requested += appState.pendingTextToTranslate(); });
    }

    void launch() { delegate->applicationDidFinishLaunching(); }
    void select(const QString& text) {
        desktop.workspace.front = {4711, u"org.example.Editor"_s, u"Editor"_s};
        desktop.accessibility.focused = {.selectedText = text};
    }
    /// Presses a hot key and lets happen what follows within the time.
    void press(HotKeyID hotKey, std::chrono::milliseconds time = {}) {
        desktop.hotKeys.handler(hotKey);
        desktop.clock.advance(time);
    }
    /// Selects in an application that answers only by copying, as its menu item does.
    void selectForCopying() {
        desktop.workspace.front = {4711, u"org.example.Editor"_s, u"Editor"_s};
        desktop.accessibility.bar = {.children = {{.children = {{.children = {{.title = u"Copy"_s}}}}}}};
    }

    std::unique_ptr<AppDelegate> delegateWith(PopoverHost& host, bool isFirstStart = false) {
        return std::make_unique<AppDelegate>(AppDelegate::Dependencies{appState, settings, hotKeys,
            desktop.pasteboard, captures, updates, desktop.clock, host, statusItem, readLate, isFirstStart,
            [this] { ++preparations; }, [this] { ++quits; }});
    }

    DebugLogFile log;
    FakePopover popover;
    FakeStatusItem statusItem;
    LateSelectionReader readLate;
    QStringList requested;  ///< to be translated; known at the next turn
    int preparations = 0;
    int quits = 0;
    std::unique_ptr<AppDelegate> delegate = delegateWith(popover);
};

}  // namespace tralio
