// The least that a tray program on this toolkit can be: an icon, and a plain window at SIGUSR1.

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSocketNotifier>
#include <QSystemTrayIcon>
#include <QWidget>

#include <csignal>
#include <sys/signalfd.h>

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
    QSocketNotifier opener(signalfd(-1, &openSignal, SFD_CLOEXEC), QSocketNotifier::Read);
    QObject::connect(&opener, &QSocketNotifier::activated, &window, [&] {
        opener.setEnabled(false);
        window.show();
    });
    return QApplication::exec();
}
