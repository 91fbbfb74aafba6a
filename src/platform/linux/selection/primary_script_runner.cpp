#include "platform/linux/selection/primary_script_runner.h"

#include <QFileInfo>
#include <QProcess>

#include <utility>

#include "hotkeys/workspace.h"
#include "platform/linux/selection/current_selection.h"

namespace tralio {
namespace {

constexpr int primaryLimit = 150;  // milliseconds

}  // namespace

PrimaryScriptRunner::PrimaryScriptRunner(
    Workspace& workspace, PrimarySelection& primary, CanAskElements canAskElements)
    : m_workspace(workspace), m_primary(primary), m_canAskElements(std::move(canAskElements)) {}

std::optional<QString> PrimaryScriptRunner::execute(const QString& /*source*/) {
    return selectionInFront();
}

std::optional<QString> PrimaryScriptRunner::selectionInFront() {
    const auto front = m_canAskElements() ? std::nullopt : m_workspace.frontmostApplication();
    if (!front)
        return std::nullopt;
    return uncountedSelection(
        [&] { return m_primary.textOf(front->processId, QDeadlineTimer(primaryLimit)); });
}

void PrimaryScriptRunner::launch(const QString& executable, const QStringList& arguments) {
    // WORKAROUND: Qt 6.4 loses a file descriptor with every program that it cannot start.
    if (!QFileInfo(executable).isExecutable())
        return;
    auto* process = new QProcess;
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process, &QObject::deleteLater);
    process->start(executable, arguments);
}

}  // namespace tralio
