#pragma once

#include <QWidget>

#include <functional>
#include <memory>

#include "hotkeys/hot_key_service.h"
#include "state/app_settings.h"
#include "ui/main/main_state.h"
#include "ui/translate/translate_state.h"

namespace tralio {

class Button;
class Chip;
class KeyValueStore;
class TabStrip;

/// The popover's content: a header with the tabs, the panel of the selected tab, and a footer. A panel is
/// made when its tab is shown and is gone when another is; only the input of the translate panel survives.
/// Owns the settings that the panels work with.
class MainView final : public QWidget {
    Q_OBJECT

public:
    /// What the view works with. All of it outlives the view.
    struct Services {
        KeyValueStore& store;
        HotKeyService& hotKeys;
        AIService& ai;
        AppState& appState;
        Pasteboard& pasteboard;
        Clock& clock;
    };
    struct Actions {
        std::function<void()> openGuide;
        std::function<void()> quit;
        std::function<void()> requestAccessibility;
    };

    MainView(Services services, Actions actions, QWidget* parent = nullptr);
    ~MainView() override;

private:
    QWidget* header();
    QWidget* footer();
    void refresh();
    void showPanel();
    void showTranslatePanel();

    Services m_services;
    Actions m_actions;
    AppSettings m_settings;
    MainState m_state;
    TabStrip* m_tabs;
    QWidget* m_panelArea;
    int m_shownTab = -1;
    std::unique_ptr<TranslateState> m_translate;
    std::unique_ptr<QWidget> m_panel;
    Button* m_warning;
    Chip* m_selectionChip;
    Chip* m_captureChip;
};

}  // namespace tralio
