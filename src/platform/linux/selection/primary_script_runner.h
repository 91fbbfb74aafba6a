#pragma once

#include "hotkeys/script_runner.h"

namespace tralio {

class PrimarySelection;
class Workspace;

/// Browsers cannot be scripted from outside on this desktop. What the scripts ask for, the selection of the
/// browser in front, is its PRIMARY selection.
class PrimaryScriptRunner final : public ScriptRunner {
public:
    PrimaryScriptRunner(Workspace& workspace, PrimarySelection& primary);

    std::optional<QString> execute(const QString& source) override;
    void launch(const QString& executable, const QStringList& arguments) override;

private:
    Workspace& m_workspace;
    PrimarySelection& m_primary;
};

}  // namespace tralio
