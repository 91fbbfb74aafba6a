#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

/// Runs scripts that ask other programs for something.
class ScriptRunner {
public:
    ScriptRunner() = default;
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;
    virtual ~ScriptRunner() = default;

    /// Runs a script in this process and waits for its result. Absent when the script cannot be made or run,
    /// or has no text to give.
    [[nodiscard]] virtual std::optional<QString> execute(const QString& source) = 0;

    /// The selection of the application in front where it can be had without a script of that application's,
    /// and without a permission.
    [[nodiscard]] virtual std::optional<QString> selectionInFront() = 0;

    /// Starts a program in the background and reaps it. That it cannot be started is ignored.
    virtual void launch(const QString& executable, const QStringList& arguments) = 0;
};

}  // namespace tralio
