#include "ui/kit/accessibility.h"

#include <QAccessibleWidget>
#include <QEvent>

#include <algorithm>
#include <iterator>

#include "ui/kit/control.h"

namespace tralio {
namespace {

constexpr const char* newsProperty = "tralioNews";

/// A non-interactive widget. Announced news have the role of an alert, which screen readers read out;
/// decoration without a name is invisible to them.
class PartInterface final : public QAccessibleWidget {
public:
    PartInterface(QWidget& part, QAccessible::Role role) : QAccessibleWidget(&part, role) {}

    [[nodiscard]] QAccessible::Role role() const override {
        const QVariant news = widget()->property(newsProperty);
        const bool isNews = news.isValid() && news.toString() == widget()->accessibleName();
        return isNews ? QAccessible::AlertMessage : QAccessibleWidget::role();
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const bool isOrnament = role() == QAccessible::Graphic || role() == QAccessible::Animation;
        state.invisible = state.invisible || (isOrnament && widget()->accessibleName().isEmpty());
        return state;
    }
};

/// A screen reader can press a control exactly when a click would do something.
class ControlInterface final : public QAccessibleWidget {
public:
    explicit ControlInterface(Control& control) : QAccessibleWidget(&control), m_control(control) {}

    [[nodiscard]] QAccessible::Role role() const override { return m_control.spokenRole(); }
    [[nodiscard]] QAccessible::State state() const override {
        return m_control.spokenState(QAccessibleWidget::state());
    }
    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_control.isLive())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& name) override {
        if (name != pressAction())
            QAccessibleWidget::doAction(name);
        else if (m_control.isLive())
            m_control.click();
    }

private:
    Control& m_control;
};

/// Ends news once the part that it stands on has been seen and is hidden: it would be told again whenever the
/// window is shown.
class NewsEnd final : public QObject {
public:
    explicit NewsEnd(QWidget& part) : QObject(&part) { part.installEventFilter(this); }

    bool eventFilter(QObject* part, QEvent* event) override {
        if (event->type() == QEvent::Hide) {
            part->setProperty(newsProperty, QVariant());
            deleteLater();
        }
        return false;
    }
};

QAccessibleInterface* interfaceFor(const QString& className, QObject* object) {
    struct PartRole {
        QLatin1StringView className;
        QAccessible::Role role;
    };
    static constexpr PartRole roles[] = {
        {QLatin1StringView("tralio::Label"), QAccessible::StaticText},
        {QLatin1StringView("tralio::Badge"), QAccessible::StaticText},
        {QLatin1StringView("tralio::KeyCap"), QAccessible::StaticText},
        {QLatin1StringView("tralio::PageIndicator"), QAccessible::StaticText},
        {QLatin1StringView("tralio::ErrorStrip"), QAccessible::Grouping},
        {QLatin1StringView("tralio::UndoStrip"), QAccessible::Grouping},
        {QLatin1StringView("tralio::PopupMenu"), QAccessible::PopupMenu},
        {QLatin1StringView("tralio::TabStrip"), QAccessible::PageTabList},
        {QLatin1StringView("tralio::Divider"), QAccessible::Separator},
        {QLatin1StringView("tralio::IconView"), QAccessible::Graphic},
        {QLatin1StringView("tralio::IconTile"), QAccessible::Graphic},
        {QLatin1StringView("tralio::Emblem"), QAccessible::Graphic},
        {QLatin1StringView("tralio::Spinner"), QAccessible::Animation},
    };
    if (className == QLatin1StringView("tralio::Control"))
        return new ControlInterface(*qobject_cast<Control*>(object));
    const auto* found = std::find_if(std::begin(roles), std::end(roles),
        [&className](const PartRole& part) { return part.className == className; });
    return found == std::end(roles) ? nullptr
                                    : new PartInterface(*qobject_cast<QWidget*>(object), found->role);
}

}  // namespace

void installAccessibleRoles() {
    static const bool installed = [] {
        QAccessible::installFactory(interfaceFor);
        return true;
    }();
    Q_UNUSED(installed)
}

void announce(QWidget& news) {
    if (!news.property(newsProperty).isValid())
        new NewsEnd(news);
    news.setProperty(newsProperty, news.accessibleName());
    if (!news.isVisible())
        return;
    // WORKAROUND: Qt 6.4's AT-SPI bridge does not forward QAccessible::Alert; an object that appears with the
    // role of an alert is read out.
    QAccessibleEvent appeared(&news, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&appeared);
}

}  // namespace tralio
