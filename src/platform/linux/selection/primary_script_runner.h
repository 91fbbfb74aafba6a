#pragma once

#include <functional>

#include "hotkeys/script_runner.h"

namespace tralio {

class PrimarySelection;
class Workspace;

/// Answers scripts with the PRIMARY selection, since applications on this desktop cannot be scripted from
/// outside: the selection of the application in front, which is what the scripts ask for, is there without
/// any permission. Only answers while the accessibility switch is off: while it is on, the focused element
/// has been asked already, together with PRIMARY.
class PrimaryScriptRunner final : public ScriptRunner {
public:
    /// Whether the focused element of an application can be asked.
    using CanAskElements = std::function<bool()>;

    PrimaryScriptRunner(Workspace& workspace, PrimarySelection& primary, CanAskElements canAskElements);

    std::optional<QString> execute(const QString& source) override;
    std::optional<QString> selectionInFront() override;
    void launch(const QString& executable, const QStringList& arguments) override;

private:
    Workspace& m_workspace;
    PrimarySelection& m_primary;
    CanAskElements m_canAskElements;
};

}  // namespace tralio
