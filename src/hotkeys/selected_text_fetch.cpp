#include "hotkeys/selected_text_fetch.h"

#include <QCoreApplication>
#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <utility>

#include "common/clock.h"
#include "common/debug_log.h"
#include "common/excerpt.h"
#include "hotkeys/accessibility.h"
#include "hotkeys/apple_script.h"
#include "hotkeys/key_event_poster.h"
#include "hotkeys/pasteboard.h"
#include "hotkeys/script_runner.h"
#include "hotkeys/workspace.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto pollInterval = 30ms;
constexpr auto menuCopyWait = 250ms;
constexpr auto keystrokeCopyWait = 350ms;
constexpr auto delayBeforeKeystroke = 150ms;
constexpr auto delayAfterModifierRelease = 50ms;

constexpr KeyCombination copyShortcut{KeyCode::c, Modifier::command};

/// Left and right Option, Command, Shift and Control. The user is still holding some of them for the hot key.
constexpr std::array modifierKeys{KeyCode::leftOption, KeyCode::rightOption, KeyCode::leftCommand,
    KeyCode::rightCommand, KeyCode::leftShift, KeyCode::rightShift, KeyCode::leftControl,
    KeyCode::rightControl};

std::optional<QString> trimmedIfAny(const std::optional<QString>& text) {
    if (!text)
        return std::nullopt;
    const QString trimmed = text->trimmed();
    return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
}

/// The selection of an element, never that of a password field.
std::optional<QString> selectionOf(AccessibleElement& element) {
    if (element.holdsPassword())
        return std::nullopt;
    if (auto text = trimmedIfAny(element.selectedText()))
        return text;
    return trimmedIfAny(element.selectedDocumentText());
}

/// Whether an application, given by its id, copies the line with the caret if nothing is selected. Their
/// selections show in PRIMARY, too.
bool copiesLineOfCaret(const QString& id) {
    constexpr std::array names{u"code", u"code-oss", u"com.visualstudio.code", u"codium", u"vscodium",
        u"com.vscodium.codium", u"cursor", u"sublime_text", u"com.sublimetext.three", u"kate",
        u"org.kde.kate", u"kwrite", u"org.kde.kwrite", u"kdevelop", u"org.kde.kdevelop", u"dev.zed.zed"};
    const QString name = id.toLower();
    return name.startsWith(u"jetbrains-") || name.startsWith(u"com.jetbrains.") ||
        std::any_of(names.begin(), names.end(), [&](const char16_t* known) { return name == known; });
}

void logSuccess(QStringView layer, const QString& text) {
    debugLog(u"fetchSelectedText: " % layer % u" SUCCESS: '" % excerpt(text) % u"'");
}

void giveUp(const SelectedTextFetch::Completion& completion) {
    debugLog(u"fetchSelectedText: ALL LAYERS EXHAUSTED, returning nil"_s);
    completion(std::nullopt);
}

}  // namespace

SelectedTextFetch::SelectedTextFetch(Platform platform) : m_platform(platform) {}

void SelectedTextFetch::fetch(Completion completion) {
    const auto front = m_platform.workspace.frontmostApplication();
    const bool isOwn = front && front->processId == QCoreApplication::applicationPid();
    m_obstacle = isOwn ? Obstacle::ownWindow : Obstacle::none;
    if (!front || isOwn) {
        debugLog(u"fetchSelectedText: no valid frontmost app"_s);
        completion(std::nullopt);
        return;
    }
    const qint32 pid = front->processId;
    const QString bundleId = front->bundleIdentifier.value_or(QString());
    m_frontCopiesLines = copiesLineOfCaret(bundleId);
    debugLog(u"fetchSelectedText: frontApp='" % front->localizedName.value_or(QString()) % u"' (bundle: " %
        bundleId % u", pid: " % QString::number(pid) % u")");

    if (const auto focused = m_platform.accessibility.focusedElement(pid)) {
        if (focused->holdsPassword()) {
            m_obstacle = Obstacle::password;
            debugLog(u"fetchSelectedText: the focused element holds a password, which is left alone"_s);
            completion(std::nullopt);
            return;
        }
        if (const auto text = selectionOf(*focused)) {
            logSuccess(u"Layer 1 (Direct AX)", *text);
            completion(text);
            return;
        }
        if (focused->hasNoSelection())
            m_obstacle = Obstacle::noSelection;
    }
    const bool hasScript = browserSelectionScript(bundleId).has_value();
    if (const auto text =
            hasScript ? browserText(bundleId) : trimmedIfAny(m_platform.scripts.selectionInFront())) {
        logSuccess(hasScript ? u"Layer 2 (Browser AppleScript)" : u"Layer 2 (without a script)", *text);
        completion(text);
        return;
    }

    const qint64 initialCount = m_platform.pasteboard.changeCount();
    const Front asked{pid, bundleId};
    if (!pressMenuCopy(pid)) {
        executeKeystrokeCopy(asked, initialCount, completion);
        return;
    }
    debugLog(u"fetchSelectedText: Layer 3 (Menu Copy Action) triggered..."_s);
    waitForPasteboardChange(initialCount, menuCopyWait,
        [this, asked, initialCount, completion = std::move(completion)](std::optional<QString> text) mutable {
            using enum Obstacle;
            if (m_obstacle == password || m_obstacle == silentOwner || m_obstacle == lineOfCaret) {
                giveUp(completion);
                return;
            }
            if (!text || text->isEmpty()) {
                executeKeystrokeCopy(asked, initialCount, completion);
                return;
            }
            logSuccess(u"Layer 3", *text);
            completion(std::move(text));
        });
}

std::optional<QString> SelectedTextFetch::directText(qint32 pid) {
    const auto focused = m_platform.accessibility.focusedElement(pid);
    return focused ? selectionOf(*focused) : std::nullopt;
}

std::optional<QString> SelectedTextFetch::browserText(const QString& bundleId) {
    const auto script = browserSelectionScript(bundleId);
    return script ? trimmedIfAny(m_platform.scripts.execute(*script)) : std::nullopt;
}

bool SelectedTextFetch::isInFront(const Front& front) const {
    const auto now = m_platform.workspace.frontmostApplication();
    return now && now->processId == front.processId &&
        now->bundleIdentifier.value_or(QString()) == front.bundleIdentifier;
}

void SelectedTextFetch::executeKeystrokeCopy(
    const Front& front, qint64 initialCount, const Completion& completion) {
    debugLog(u"fetchSelectedText: executing Layer 4 (Keystroke Cmd+C)..."_s);
    if (!m_platform.keyEvents.canPost()) {
        debugLog(u"fetchSelectedText: Layer 4 has nothing to press keys with in this session"_s);
        giveUp(completion);
        return;
    }
    Clock& clock = m_platform.clock;
    clock.after(delayBeforeKeystroke, this, [=, this, &clock] {
        for (const KeyCode key : modifierKeys)
            m_platform.keyEvents.post({key, false, {}});
        clock.after(delayAfterModifierRelease, this, [=, this] {
            if (!isInFront(front)) {
                debugLog(u"fetchSelectedText: Layer 4 finds another application in front"_s);
                giveUp(completion);
                return;
            }
            pressCopyShortcut(front.processId);
            waitForPasteboardChange(
                initialCount, keystrokeCopyWait, [completion](std::optional<QString> text) {
                    if (!text || text->isEmpty()) {
                        giveUp(completion);
                        return;
                    }
                    logSuccess(u"Layer 4", *text);
                    completion(std::move(text));
                });
        });
    });
}

void SelectedTextFetch::pressCopyShortcut(qint32 pid) {
    pressInProcess(m_platform.keyEvents, pid, copyShortcut);
    m_platform.keyEvents.post({copyShortcut.key, true, copyShortcut.modifiers});
    m_platform.keyEvents.post({copyShortcut.key, false, copyShortcut.modifiers});
    launchCopyScript(m_platform.scripts);
}

void SelectedTextFetch::waitForPasteboardChange(
    qint64 initialCount, std::chrono::milliseconds maxWait, Completion completion) {
    // The timer's context is a child of this object, so that no tick comes after it is destroyed.
    auto* wait = new QObject(this);
    m_platform.clock.every(pollInterval, wait,
        [this, wait, initialCount, maxWait, elapsed = 0ms, patience = 1,
            completion = std::move(completion)]() mutable {
            elapsed += pollInterval;
            const bool changed = m_platform.pasteboard.changeCount() != initialCount;
            if (!changed && elapsed < maxWait)
                return;
            const auto concealed = changed ? m_platform.pasteboard.isConcealed() : std::optional<bool>(false);
            if (!concealed && patience-- > 0)
                return;  // a busy owner gets one more chance to say whether it is a password

            std::optional<QString> content;
            if (concealed == true) {
                m_obstacle = Obstacle::password;
                debugLog(
                    u"fetchSelectedText: what was copied is marked as a password, which is left alone"_s);
            } else if (!concealed) {
                m_obstacle = Obstacle::silentOwner;
            } else if (changed) {
                content = m_platform.pasteboard.string();
                if (content && isLineOfCaret(*content)) {
                    m_obstacle = Obstacle::lineOfCaret;
                    debugLog(u"fetchSelectedText: nothing is selected, the caret's line was copied"_s);
                    content.reset();
                }
            }
            // Deleting `wait` destroys this lambda: move what is still needed to the stack first.
            const Completion deliver = std::move(completion);
            delete wait;
            deliver(content ? std::optional(content->trimmed()) : std::nullopt);
        });
}

bool SelectedTextFetch::isLineOfCaret(const QString& copied) {
    if (!m_frontCopiesLines || !copied.endsWith(u'\n') || copied.count(u'\n') > 1)
        return false;
    // Without PRIMARY a line that is selected as a whole cannot be told from it.
    const auto selected = m_platform.pasteboard.selectedString();
    return selected && selected->trimmed() != copied.trimmed();
}

}  // namespace tralio
