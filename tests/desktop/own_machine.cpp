#include "desktop/own_machine.h"

#include <QTest>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Makes a root folder of the folders of the machine and ends as a shell inside it. That shell is the first
/// process of its kind, which inherits the others and takes them along. Nothing is run unless all of that
/// went well.
constexpr QStringView enter =
    uR"(
set -e
root=$1
mount -t tmpfs -o mode=755 own "$root"
for entry in /*; do
  case $entry in
    /proc | /Applications) continue ;;
  esac
  if [ -L "$entry" ]; then
    cp -P "$entry" "$root"
  elif [ -d "$entry" ]; then
    mkdir "$root$entry"
    mount --rbind "$entry" "$root$entry"
  fi
done
mkdir "$root/Applications" "$root/proc"
mount -t proc own "$root/proc"
exec chroot "$root" /bin/bash
)";

const QByteArray endOfOutput = "--- end of output ---";

}  // namespace

OwnMachine::OwnMachine(const QProcessEnvironment& environment) {
    m_shell.setProcessEnvironment(environment);
    m_shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_shell.start(u"unshare"_s,
        {u"--user"_s, u"--map-root-user"_s, u"--mount"_s, u"--pid"_s, u"--fork"_s, u"--kill-child"_s,
            u"/bin/bash"_s, u"-c"_s, enter.toString(), u"enter"_s, m_root.path()});
    if (run(u"echo $$"_s) != u"1")
        throw std::runtime_error("no namespaces can be made");
}

OwnMachine::~OwnMachine() {
    m_shell.kill();
    m_shell.waitForFinished();
}

QString OwnMachine::run(const QString& command) {
    m_shell.write(command.toUtf8() + "\necho -n '" + endOfOutput + "'\n");
    QByteArray output;
    std::ignore = QTest::qWaitFor(
        [&] {
            output += m_shell.readAllStandardOutput();
            return output.endsWith(endOfOutput) || m_shell.state() == QProcess::NotRunning;
        },
        10'000);
    if (!output.endsWith(endOfOutput))
        throw std::runtime_error("the shell of the machine does not answer");
    output.chop(endOfOutput.size());
    return QString::fromUtf8(output).trimmed();
}

QStringList OwnMachine::runningPrograms() {
    return run(u"readlink /proc/[0-9]*/exe"_s).remove(u" (deleted)"_s).split(u'\n');
}

}  // namespace tralio
