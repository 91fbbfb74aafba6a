#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

#include "history/translation_history_store.h"
#include "hotkeys/permission_watch.h"
#include "state/app_settings.h"
#include "ui/kit/press_guard.h"
#include "ui/main/main_state.h"
#include "ui/settings/key_down_monitor.h"
#include "ui/undo/undo_offer.h"

class QUrl;

namespace tralio {

class AIService;
struct HistoryRemovals;
class HotKeyService;
class OCRService;
class OnboardingState;
class OnboardingView;
class Pasteboard;
class ScreenCaptureService;
class SpeechService;

class Control;
class KeyValueStore;
class MainFooter;
class TabStrip;

/// The content of the popover: a header with the tabs, the offer of an update, the panel of the selected tab,
/// and a footer; over it the walk-through until that is completed. A panel lives while its tab is selected;
/// only the input of the translate panel survives. During the first walk-through there is no panel yet, and a
/// text that arrives waits for the end of it. Owns what the panels share: the settings, the history, the
/// watch of the permissions, and the undo offer.
class MainView final : public QWidget {
    Q_OBJECT

public:
    /// What the view uses. All of it outlives the view.
    struct Dependencies {
        KeyValueStore& store;
        HotKeyService& hotKeys;
        AIService& ai;
        ScreenCaptureService& captures;
        OCRService& ocr;
        SpeechService& speech;
        UpdateService& updates;
        AppState& appState;
        Pasteboard& pasteboard;
        Clock& clock;
        KeyDownMonitor::KeyCodes keyCodes;
    };
    struct Actions {
        std::function<void(const QUrl&)> openURL;
        std::function<void()> quit;
    };

    MainView(Dependencies needs, Actions actions, QWidget* parent = nullptr);
    ~MainView() override;

protected:
    void showEvent(QShowEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    enum class Motion { none, fade };

    QWidget* header();
    void openGuide();
    /// Shows the permissions in the settings. `cause` is the control that the user pressed.
    void openPermissions(const Control& cause);
    /// Shows the hot keys in the settings.
    void openShortcuts();
    void refresh();
    void showPanel();
    void dropPanel();
    /// The panel of the selected tab. Stores its state in `m_panelState`.
    [[nodiscard]] QWidget* makePanel();
    [[nodiscard]] QWidget* makeTranslatePanel();
    [[nodiscard]] QWidget* makeHistoryPanel();
    [[nodiscard]] QWidget* makeSettingsPanel();
    void showOnboarding();
    void closeOnboarding();

    Dependencies m_needs;
    Actions m_actions;
    AppSettings m_settings;
    const bool m_isClipboardChecked = m_settings.autoPaste();  ///< by the shell, which keeps to what it found
    TranslationHistoryStore m_history;
    PermissionWatch m_permissions;
    UndoOffer m_undo;
    std::weak_ptr<HistoryRemovals> m_removals;
    MainState m_state;
    PressGuard m_pressGuard{*this, m_needs.clock};
    QWidget* m_body;  ///< everything except the walk-through
    TabStrip* m_tabs;
    QWidget* m_panelArea;
    MainFooter* m_footer;
    QWidget* m_panel = nullptr;
    QPointer<QWidget> m_leavingPanel;  ///< kept until the drag out of it ends
    std::shared_ptr<ObservableObject> m_panelState;
    std::optional<AppTab> m_shownTab;
    std::unique_ptr<OnboardingState> m_onboarding;  ///< only while the walk-through is shown
    OnboardingView* m_onboardingView = nullptr;
    QPointer<QWidget> m_formerFocus;      ///< had the focus before the walk-through
    bool m_showedRing = false;            ///< whether `m_formerFocus` showed a focus ring
    Motion m_panelMotion = Motion::none;  ///< for the next change of the panel
};

}  // namespace tralio
