#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

#include <optional>

namespace tralio {

/// What the desktop asks of the appearance of programs: from the settings portal if one runs, else from the
/// palette that Qt found. Kept up to date while the program runs.
class DesktopAppearance final : public QObject {
    Q_OBJECT

public:
    struct Look {
        bool dark = false;
        std::optional<QColor> accent;
        bool reducedMotion = false;

        bool operator==(const Look&) const = default;
    };

    explicit DesktopAppearance(QDBusConnection bus = QDBusConnection::sessionBus());

    [[nodiscard]] Look look() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void apply(const QString& group, const QString& key, const QVariant& value);

    QDBusConnection m_bus;
    std::optional<bool> m_portalDark;
    std::optional<QColor> m_accent;
    bool m_reducedMotion = false;
};

}  // namespace tralio
