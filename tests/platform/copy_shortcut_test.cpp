#include "platform/linux/keyboard/copy_shortcut.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/bus/process_facts.h"
#include "platform/linux/keyboard/terminals.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A process of some name that waits for its end, and ends with the one that made it.
struct Child final {
    /// `begin` runs in it, and is done when this returns. It may make a child of its own.
    explicit Child(const char* name, const std::function<void()>& begin = {}) {
        std::array<int, 2> begun{};
        EXPECT_EQ(pipe2(begun.data(), O_CLOEXEC), 0);
        m_id = fork();
        if (m_id == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            prctl(PR_SET_NAME, name);
            if (begin)
                begin();
            (void)!write(begun[1], "x", 1);
            while (true)
                pause();
        }
        char done = 0;
        EXPECT_EQ(read(begun[0], &done, 1), 1);
        close(begun[0]);
        close(begun[1]);
    }
    ~Child() {
        kill(m_id, SIGKILL);
        waitpid(m_id, nullptr, 0);
    }
    [[nodiscard]] pid_t id() const { return m_id; }

private:
    pid_t m_id = 0;
};

int serveTerminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    return master;
}

/// In a child that lives as long as this one.
void haveTerminalServed(const char* name) {
    new Child(
        name, [] { serveTerminal(); });
}

TEST(CopyShortcut, is_control_c_only_where_something_tells_that_it_interrupts_nothing) {
    const std::pair<CopyTarget, CopyShortcut> cases[] = {
        {{{u"Scratchpad"_s, u"xterm"_s}, {}, true}, CopyShortcut::none},
        {{{u"XTerm"_s}, {}, {}}, CopyShortcut::none},
        {{{u"gvim"_s, u"Gvim"_s}, false, false}, CopyShortcut::none},
        {{{u"qemu-system-x86_64"_s}, {}, false}, CopyShortcut::none},
        {{{u"Remote"_s, u"ssh"_s}, {}, false}, CopyShortcut::none},
        {{{u"scratchpad"_s}, {}, {}}, CopyShortcut::none},
        {{{}, {}, {}}, CopyShortcut::none},
        {{{u"scratchpad"_s}, {}, true}, CopyShortcut::none},
        {{{u"scratchpad"_s}, true, {}}, CopyShortcut::controlShift},
        {{{u"Alacritty"_s}, {}, true}, CopyShortcut::controlShift},
        {{{u"x"_s, u"foot"_s}, {}, {}}, CopyShortcut::controlShift},
        {{{u"org.kde.konsole"_s}, true, true}, CopyShortcut::controlShift},
        {{{u"editor"_s}, {}, false}, CopyShortcut::control},
        {{{u"editor"_s}, false, true}, CopyShortcut::control},
        {{{u"editor"_s}, {}, true}, CopyShortcut::none},
    };
    for (const auto& [target, expected] : cases)
        EXPECT_EQ(copyShortcutIn(target), expected) << target.names.join(u' ').toStdString();
}

TEST(ProcessTable, tells_what_serves_a_terminal_or_has_one_served_but_not_by_a_terminal_beside_it) {
    const pid_t self = getpid();
    const auto serves = [](pid_t process) { return ProcessTable().servesTerminal(process); };
    EXPECT_EQ(serves(self), false);
    EXPECT_EQ(serves(0), std::nullopt);
    EXPECT_TRUE(ProcessTable().named(u"a (name) of 15 characters"_s).isEmpty());

    const Child editor(
        "a (name) of 15 c", [] { haveTerminalServed("pty host"); });
    const Child launcher("launcher", [] { haveTerminalServed("xterm"); });
    EXPECT_EQ(serves(editor.id()), true);
    EXPECT_EQ(serves(launcher.id()), false);
    EXPECT_EQ(ProcessTable().named(u"a (name) of 15 characters"_s), QList<qint32>{editor.id()});

    // What runs at a terminal that was there before says nothing; what was given one of its own does, also
    // where the one that serves it is hidden.
    const std::array masters{serveTerminal(), serveTerminal()};
    EXPECT_EQ(serves(self), true);
    const auto enter = [&](size_t terminal) {
        const QByteArray name = ptsname(masters.at(terminal));
        for (const int master : masters)
            close(master);
        setsid();
        EXPECT_EQ(ioctl(open(name.constData(), O_RDWR), TIOCSCTTY, 0), 0);
    };
    const Child shell(
        "shell", [&] { enter(0); });
    const Child host("host", [&] {
        new Child("at a terminal", [&] { enter(1); });
        for (const int master : masters)
            close(master);
    });
    EXPECT_EQ(serves(shell.id()), false);
    EXPECT_EQ(serves(host.id()), true);
    for (const int master : masters)
        close(master);
    EXPECT_EQ(processName(self), u"platform_test"_s);
    EXPECT_FALSE(isBusProxy(self));
}

TEST(CopyShortcut, is_control_c_in_an_installed_application_of_no_known_process_while_it_serves_no_terminal) {
    const QTemporaryDir folder;
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    const auto install = [&](const QString& id, const QByteArray& rest) {
        writeFile(folder.filePath(u"applications/%1.desktop"_s.arg(id)),
            "[Desktop Entry]\nExec=env A=b \"/opt/ide/quiet-ide-of-mine\" %F\n" + rest);
    };
    install(u"org.example.ide"_s, "Categories=IDE;\n");
    install(u"org.example.term"_s, "Categories=TerminalEmulator;\n");
    const auto shortcut = [](const QString& id) { return copyShortcutIn({{id}, {}, {}}); };
    EXPECT_EQ(shortcut(u"org.example.IDE"_s), CopyShortcut::none) << "where does it run?";
    {
        const Child program("quiet-ide-of-mi");
        EXPECT_EQ(shortcut(u"org.example.IDE"_s), CopyShortcut::control);
        EXPECT_EQ(shortcut(u"org.example.term"_s), CopyShortcut::none);
        EXPECT_EQ(shortcut(u"org.example.other"_s), CopyShortcut::none);
        const Child second("quiet-ide-of-mi", [] { haveTerminalServed("pty host"); });
        EXPECT_EQ(shortcut(u"org.example.IDE"_s), CopyShortcut::none);
    }
    qputenv("XDG_DATA_HOME", before);
}

}  // namespace
}  // namespace tralio
