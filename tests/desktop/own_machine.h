#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

namespace tralio {

/// A shell that sees the machine's folders, but has an empty /Applications of its own, and no processes but
/// those that it starts. They end with this object. Needs no rights: the machine's users may make namespaces.
class OwnMachine final {
public:
    explicit OwnMachine(const QProcessEnvironment& environment) {
        m_shell.setProcessEnvironment(environment);
        m_shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_shell.start(QStringLiteral("unshare"),
            QStringLiteral("--user --map-root-user --mount --pid --fork --kill-child /bin/bash -c")
                    .split(u' ') +
                QStringList{QString::fromLatin1(enter), QStringLiteral("enter"), m_root.path()});
        if (run(QStringLiteral("echo $$")) != u"1")
            throw std::runtime_error("no namespaces can be made");
    }
    OwnMachine(const OwnMachine&) = delete;
    OwnMachine& operator=(const OwnMachine&) = delete;
    ~OwnMachine() {
        m_shell.kill();
        m_shell.waitForFinished();
    }

    /// What the command prints on its standard output, without blanks at the ends.
    QString run(const QString& command) {
        const QByteArray endOfOutput = "--- end of output ---";
        m_shell.write(command.toUtf8() + "\necho -n '" + endOfOutput + "'\n");
        QByteArray output;
        const bool isAnswered = QTest::qWaitFor(
            [&] {
                output += m_shell.readAllStandardOutput();
                return output.endsWith(endOfOutput);
            },
            10'000);
        if (!isAnswered)
            throw std::runtime_error("the shell of the machine does not answer");
        output.chop(endOfOutput.size());
        return QString::fromUtf8(output).trimmed();
    }

    /// The files that the running processes were started from, be they still there or not.
    QStringList runningPrograms() {
        return run(QStringLiteral("readlink /proc/[0-9]*/exe"))
            .remove(QStringLiteral(" (deleted)"))
            .split(u'\n');
    }

private:
    /// Makes a root folder of the folders of the machine and ends as a shell inside it. That shell is the
    /// first process of its kind, which inherits the others and takes them along. Nothing is run unless all
    /// of that went well.
    static constexpr const char* enter = R"(
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

    QTemporaryDir m_root;
    QProcess m_shell;
};

}  // namespace tralio
