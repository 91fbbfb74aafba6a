// The smallest possible Qt tray program: an icon, and a plain window that SIGUSR1 shows and hides.

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSocketNotifier>
#include <QSystemTrayIcon>
#include <QWidget>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

int main(int argc, char** argv) {
    sigset_t openSignal;
    sigemptyset(&openSignal);
    sigaddset(&openSignal, SIGUSR1);
    sigprocmask(SIG_BLOCK, &openSignal, nullptr);

    QGuiApplication::setDesktopFileName(QStringLiteral("bare-tray"));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::blue);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.show();

    QWidget window;
    window.resize(530, 585);
    const int signals = signalfd(-1, &openSignal, SFD_CLOEXEC);
    QSocketNotifier opener(signals, QSocketNotifier::Read);
    QObject::connect(&opener, &QSocketNotifier::activated, &window, [&] {
        signalfd_siginfo taken{};
        if (read(signals, &taken, sizeof taken) > 0)
            window.setVisible(!window.isVisible());
    });
    return QApplication::exec();
}
