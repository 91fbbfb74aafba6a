#pragma once

#include <qcorofuture.h>

#include "hotkeys/accessibility.h"
#include "hotkeys/hot_key_service.h"
#include "hotkeys/key_event_poster.h"
#include "hotkeys/pasteboard.h"
#include "hotkeys/permissions.h"
#include "hotkeys/script_runner.h"
#include "hotkeys/workspace.h"
#include "support/fake_clock.h"

namespace tralio {

struct FakeHotKeyPlatform final : HotKeyPlatform {
    struct Request {
        KeyCombination combination;
        HotKeyID id;
        bool operator==(const Request&) const = default;
    };

    EventHandlerRef installEventHandler(EventHandler installed) override {
        handler = std::move(installed);
        return EventHandlerRef{1};
    }
    void installStatusHandler(StatusHandler installed) override { statusHandler = std::move(installed); }
    Registration registerHotKey(const KeyCombination& combination, HotKeyID id) override {
        if (nextStatus != HotKeyStatus::registered)
            return {std::exchange(nextStatus, HotKeyStatus::registered), std::nullopt};
        for (const auto& [ref, request] : registered)
            if (request.combination == combination || request.id == id)
                return {HotKeyStatus::taken, std::nullopt};
        const HotKeyRef ref{++lastRef};
        registered.emplace(ref, Request{combination, id});
        return {HotKeyStatus::registered, ref};
    }
    void unregisterHotKey(HotKeyRef ref) override { registered.erase(ref); }
    bool isUserAsked() const override { return userAsked; }

    [[nodiscard]] std::vector<Request> registrations() const {
        std::vector<Request> requests;
        for (const auto& [ref, request] : registered)
            requests.push_back(request);
        return requests;
    }

    EventHandler handler;
    StatusHandler statusHandler;
    bool userAsked = false;
    HotKeyStatus nextStatus = HotKeyStatus::registered;  ///< refuses one registration if set to another
    std::map<HotKeyRef, Request> registered;
    quint64 lastRef = 0;
};

/// An element tree given as data. A default-constructed element answers nothing.
struct FakeElement {
    bool holdsPassword = false;
    std::optional<QString> selectedText{};
    std::optional<QString> documentText{};
    std::optional<QString> title{};
    std::optional<QString> commandCharacter{};
    bool hasNoSelection = false;
    bool pressWorks = true;
    std::vector<FakeElement> children{};
};

struct FakeAccessibility final : Accessibility {
    std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) override {
        asked.push_back(processId);
        return focused ? std::make_unique<Element>(*this, *focused) : nullptr;
    }
    std::unique_ptr<AccessibleElement> menuBar(qint32 processId) override {
        asked.push_back(processId);
        return bar ? std::make_unique<Element>(*this, *bar) : nullptr;
    }

    std::optional<FakeElement> focused;
    std::optional<FakeElement> bar;
    std::vector<qint32> asked;
    QStringList pressed;  ///< titles of all pressed items, including failed presses
    std::function<void()> onPress;

private:
    struct Element final : AccessibleElement {
        Element(FakeAccessibility& owner, const FakeElement& data) : m_owner(owner), m_data(data) {}
        bool holdsPassword() override { return m_data.holdsPassword; }
        std::optional<QString> selectedText() override { return m_data.selectedText; }
        bool hasNoSelection() override { return m_data.hasNoSelection; }
        std::optional<QString> selectedDocumentText() override { return m_data.documentText; }
        std::optional<QString> title() override { return m_data.title; }
        std::optional<QString> commandCharacter() override { return m_data.commandCharacter; }
        std::vector<std::unique_ptr<AccessibleElement>> children() override {
            std::vector<std::unique_ptr<AccessibleElement>> elements;
            for (const FakeElement& child : m_data.children)
                elements.push_back(std::make_unique<Element>(m_owner, child));
            return elements;
        }
        bool press() override {
            m_owner.pressed += m_data.title.value_or(QString());
            if (m_data.pressWorks && m_owner.onPress)
                m_owner.onPress();
            return m_data.pressWorks;
        }

    private:
        FakeAccessibility& m_owner;
        const FakeElement& m_data;
    };
};

struct FakeWorkspace final : Workspace {
    std::optional<RunningApplication> frontmostApplication() override { return front; }
    void openURL(const QUrl& url) override { opened.push_back(url); }

    std::optional<RunningApplication> front;
    std::vector<QUrl> opened;
};

struct FakeScriptRunner final : ScriptRunner {
    std::optional<QString> execute(const QString& source) override {
        executed += source;
        return result;
    }
    std::optional<QString> selectionInFront() override { return inFront; }
    void launch(const QString& executable, const QStringList& arguments) override {
        launched.emplace_back(executable, arguments);
    }

    std::optional<QString> result;
    std::optional<QString> inFront;
    QStringList executed;
    std::vector<std::pair<QString, QStringList>> launched;
};

struct FakePasteboard final : Pasteboard {
    qint64 changeCount() override { return count; }
    std::optional<QString> string() override {
        const std::optional<QString> read = content;
        if (onRead)
            onRead();
        return read;
    }
    std::optional<QString> selectedString() override { return selected; }
    QCoro::Task<Picture> picture() override {
        if (const auto held = owner)
            co_await held->future();
        co_return Picture(shown);  // a copy, since it is moved from
    }
    std::optional<bool> isConcealed() override {
        if (silences-- > 0)
            return std::nullopt;
        return concealed;
    }
    void setString(const QString& text) override {
        own = text;
        copy(text);
    }
    QString ownString() override { return own; }

    void copy(std::optional<QString> text) {
        ++count;
        content = std::move(text);
    }

    qint64 count = 7;
    std::optional<QString> content;
    std::optional<QString> selected;
    QString own;
    std::function<void()> onRead;  ///< called just after the content was read
    Picture shown;
    std::shared_ptr<QPromise<void>> owner;  ///< if set, the picture takes until its owner finishes this
    bool concealed = false;
    int silences = 0;  ///< how often the owner does not answer that question
};

struct FakeKeyEventPoster final : KeyEventPoster {
    /// The target of an event; process 0 stands for all applications.
    using Posted = std::pair<qint32, KeyEvent>;

    bool canPost() const override { return isGranted; }
    void post(const KeyEvent& event) override { posted.emplace_back(0, event); }
    void postToProcess(qint32 processId, const KeyEvent& event) override {
        posted.emplace_back(processId, event);
    }

    bool isGranted = true;
    std::vector<Posted> posted;
};

struct FakePermissions final : Permissions {
    bool isAccessibilityTrusted() const override { return accessibility; }
    bool requestAccessibilityTrust() override { return accessibility = accessibility || grantOnRequest; }
    bool preflightScreenCaptureAccess() const override { return screenCapture; }
    bool requestScreenCaptureAccess() override { return screenCapture = screenCapture || grantOnRequest; }

    bool accessibility = false;
    bool screenCapture = false;
    bool grantOnRequest = false;
};

/// A whole desktop of fakes.
struct FakeDesktop {
    FakeHotKeyPlatform hotKeys;
    FakeWorkspace workspace;
    FakeAccessibility accessibility;
    FakeScriptRunner scripts;
    FakePasteboard pasteboard;
    FakeKeyEventPoster keyEvents;
    FakePermissions permissions;
    FakeClock clock;

    HotKeyService::Platform platform() {
        return {hotKeys, workspace, accessibility, scripts, pasteboard, keyEvents, permissions, clock};
    }
};

}  // namespace tralio
