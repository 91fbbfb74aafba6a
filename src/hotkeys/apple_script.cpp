#include "hotkeys/apple_script.h"

#include <array>

#include "hotkeys/key_event_poster.h"
#include "hotkeys/script_runner.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr QStringView scriptRunner = u"/usr/bin/osascript";
constexpr QStringView copyScript =
    u"tell application \"System Events\" to keystroke \"c\" using command down";

struct Browser {
    QStringView marker;  ///< found anywhere in the lower-cased bundle identifier
    QStringView selectionScript;
};

constexpr std::array browsers{
    Browser{u"safari",
        u"tell application \"Safari\" to do JavaScript \"window.getSelection().toString()\" in front "
        u"document"},
    Browser{u"chrome",
        u"tell application \"Google Chrome\" to execute front window's active tab javascript "
        u"\"window.getSelection().toString()\""},
    Browser{u"brave",
        u"tell application \"Brave Browser\" to execute front window's active tab javascript "
        u"\"window.getSelection().toString()\""},
    Browser{u"edge",
        u"tell application \"Microsoft Edge\" to execute front window's active tab javascript "
        u"\"window.getSelection().toString()\""},
    Browser{u"arc",
        u"tell application \"Arc\" to execute front window's active tab javascript "
        u"\"window.getSelection().toString()\""},
};

}  // namespace

std::optional<QString> browserSelectionScript(const QString& bundleId) {
    const QString lowered = bundleId.toLower();
    for (const Browser& browser : browsers)
        if (lowered.contains(browser.marker))
            return browser.selectionScript.toString();
    return std::nullopt;
}

void pressInProcess(KeyEventPoster& keyEvents, qint32 processId, const KeyCombination& copy) {
    keyEvents.postToProcess(processId, {copy.key, true, copy.modifiers});
    keyEvents.postToProcess(processId, {copy.key, false, copy.modifiers});
}

void launchCopyScript(ScriptRunner& scripts) {
    scripts.launch(scriptRunner.toString(), {u"-e"_s, copyScript.toString()});
}

}  // namespace tralio
