#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QSessionManager>
#include <QUrl>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

#include "app/app_delegate.h"
#include "app/popover.h"
#include "app/services.h"
#include "app/status_item.h"
#include "common/debug_log.h"
#include "engine/chat_completions.h"
#include "hotkeys/workspace.h"
#include "platform/linux/bus/session_service.h"
#include "platform/linux/desktop/desktop_appearance.h"
#include "platform/linux/desktop/text_scale.h"
#include "platform/linux/helpers/installation.h"
#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/process/end_signals.h"
#include "platform/linux/process/memory_privacy.h"
#include "platform/linux/wayland/compositor_screens.h"
#include "platform/linux/wayland/toolkit_platform.h"
#include "state/app_settings.h"
#include "ui/kit/text_style.h"
#include "ui/kit/theme.h"
#include "ui/main/main_view.h"
#include "update/info_plist.h"

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace tralio;

void applyAppearance(const DesktopAppearance& desktop) {
    const DesktopAppearance::Look look = desktop.look();
    Theme::setAppearance({look.dark, look.accent.value_or(Colors::defaultAccent()), look.reducedMotion});
}

std::vector<QSize> sizesOfCompositorScreens() {
    std::vector<QSize> sizes;
    for (const CompositorScreen& screen : compositorScreens())
        if (!screen.size.isEmpty())
            sizes.push_back(screen.size);
    return sizes;
}

/// Keeps out of the sessions that desktops save and restore: Tralio is started at login already, and being
/// started a second time means opening the popover.
void declineRestart(const QGuiApplication& application) {
    const auto decline = [](QSessionManager& manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    };
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application, decline);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, decline);
}

QWidget* makeContent(Services& services) {
    return new MainView({services.settings, services.hotKeys, services.ai, services.captures, services.ocr,
                            services.speech, services.updates, services.appState,
                            services.platform.pasteboard, services.clock, &keyWithX11Code},
        {.openURL = [&services](const QUrl& url) { services.platform.workspace.openURL(url); },
            .quit = &QCoreApplication::quit});
}

/// Has the connection opened over which a text will soon be sent. The address is read from the store, where
/// the panels write it: `settings` is the shell's own copy, loaded at start. If the store cannot be read, no
/// address is guessed.
void prepareToTranslate(Services& services, const AppSettings& settings) {
    std::optional<QUrl> endpoint;
    const std::optional<QString> baseURL = services.store.text(settings.baseURL.key());
    if (baseURL || services.store.trouble() != StoreTrouble::unreadable)
        endpoint = chat_completions::buildEndpointURL(baseURL.value_or(AppSettings::defaultBaseURL));
    services.http.prepare(endpoint.value_or(QUrl()));
}

/// The actions that other programs, and a second start of this one, can call over the session bus.
SessionService::Actions actionsOf(AppDelegate& delegate) {
    return {.open = [&delegate] { delegate.showPopover(); },
        .translateSelection = [&delegate] { delegate.handleGlobalHotKey(); },
        .captureScreen = [&delegate] { delegate.handleScreenOCRHotKey(); },
        .translateText = [&delegate](const QString& text) { delegate.translateSelectedText(text); }};
}

}  // namespace

int main(int argc, char** argv) {
    memory_privacy::begin();
    // Trays do not show programs without a desktop file name, and ask before the application object exists.
    QGuiApplication::setDesktopFileName(u"org.tralio.Tralio"_s);
    QCoreApplication::setApplicationName(u"tralio"_s);
    // A closed pipe or socket is reported by write()'s error instead.
    std::signal(SIGPIPE, SIG_IGN);
    SessionService session;  // before the toolkit is made: a second start ends here
    SessionService::Claim claim = session.claim();
    if (claim == SessionService::Claim::takenByAnother) {
        if (session.openRunningInstance())
            return EXIT_SUCCESS;
        // The other instance was about to exit: it still owned the name but no longer answered. Try once
        // more.
        claim = session.claim();
    }
    std::optional<ToolkitPlatform> toolkitPlatform(std::in_place);
    std::optional<TextScale> textScale(
        std::in_place, QDBusConnection::sessionBus(), &sizesOfCompositorScreens);
    QApplication application(argc, argv);
    declineRestart(application);
    textScale.reset();
    toolkitPlatform.reset();
    QApplication::setQuitOnLastWindowClosed(false);
    if (claim == SessionService::Claim::takenByAnother) {
        if (session.openRunningInstance())  // it has just started on a busy machine
            return EXIT_SUCCESS;
        QMessageBox box(QMessageBox::Warning, u"Tralio"_s,
            u"Tralio đang chạy nhưng không phản hồi. Hãy kết thúc tiến trình đó rồi mở lại Tralio."_s);
        box.setWindowFlag(Qt::WindowStaysOnTopHint);  // the popover that hangs may lie in its place
        box.exec();
        return EXIT_FAILURE;
    }

    StatusItem statusItem;  // first: trays that embed windows work on it while the rest is made
    QCoreApplication::setApplicationVersion(
        bundleVersion(installation::infoPlist(QCoreApplication::applicationDirPath())));
    const EndSignals endSignals(&QCoreApplication::quit);
    capDebugLog();
    const bool isFirstStart = !QFileInfo::exists(defaultStorePath());
    Services services(defaultStorePath());
    const AppSettings settingsOfShell(services.settings, services.hotKeys);

    DesktopAppearance appearance;
    applyAppearance(appearance);
    QObject::connect(
        &appearance, &DesktopAppearance::changed, &appearance,
        [&appearance] { applyAppearance(appearance); });

    Popover popover(
        [&services] { return makeContent(services); }, services.desktop->windowSystem(), services.clock);
    AppDelegate delegate({services.appState, settingsOfShell, services.hotKeys, services.platform.pasteboard,
        services.captures, services.updates, services.clock, popover, statusItem,
        services.desktop->selectionOnceFocused(), isFirstStart,
        [&] { prepareToTranslate(services, settingsOfShell); }, &QCoreApplication::quit});
    delegate.applicationDidFinishLaunching();
    session.setActions(actionsOf(delegate));
    // The first window would wait for its fonts longer than for anything else.
    const ScheduledCall fonts = services.clock.after(2s, &loadFonts);
    return QApplication::exec();
}
