#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

/// Runs scripts that ask other programs for data.
class ScriptRunner {
public:
    ScriptRunner() = default;
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;
    virtual ~ScriptRunner() = default;

    /// Runs a script in this process and waits for its result. Absent if the script cannot be created or run,
    /// or returns no text.
    [[nodiscard]] virtual std::optional<QString> execute(const QString& source) = 0;

    /// The selection of the application in front, if it can be read without scripting that application and
    /// without a permission.
    [[nodiscard]] virtual std::optional<QString> selectionInFront() = 0;

    /// Starts a program in the background and reaps it. Does nothing if it cannot be started.
    virtual void launch(const QString& executable, const QStringList& arguments) = 0;
};

}  // namespace tralio
