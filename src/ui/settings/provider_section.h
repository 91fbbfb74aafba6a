#pragma once

#include <QWidget>

namespace tralio {

class Button;
class IconView;
class Label;
class MenuButton;
class Reveal;
class SettingsState;
class Surface;
class TextField;
template <typename T>
class Persisted;

/// The translation service: the provider; its endpoint, model and key where the user sets them; and a
/// connection test.
class ProviderSection final : public QWidget {
    Q_OBJECT

public:
    explicit ProviderSection(SettingsState& state, QWidget* parent = nullptr);

private:
    QLayout* providerRow();
    QWidget* ownGatewayCard();
    QWidget* endpointFields();
    QWidget* exposureWarning();
    QLayout* keyField();
    QWidget* resultStrip();
    TextField* field(Persisted<QString>& setting, const QString& caption, const QString& placeholder);
    void testConnection();
    void refresh();
    void refreshFields();
    void refreshResult();

    SettingsState& m_state;
    MenuButton* m_provider;
    Label* m_help;
    QWidget* m_card;
    Label* m_cardModel;
    Button* m_cardTest;
    QWidget* m_fields;
    TextField* m_baseURL;
    Reveal* m_exposure;
    Label* m_exposureWords;
    TextField* m_model;
    Button* m_eye;
    TextField* m_apiKey;
    Button* m_test;
    Reveal* m_result;
    Surface* m_resultSurface;
    IconView* m_resultIcon;
    Label* m_resultMessage;
    bool m_isResultAwaited = false;
};

}  // namespace tralio
