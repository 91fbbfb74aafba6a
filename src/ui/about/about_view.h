#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

class QLayout;

namespace tralio {

/// Who made the program, which version this is, and where to find the makers.
class AboutView final : public QWidget {
    Q_OBJECT

public:
    /// `openURL` opens an address in the application that the user has for it.
    AboutView(const QString& version, std::function<void(const QUrl&)> openURL, QWidget* parent = nullptr);

private:
    struct Link {
        QString icon;
        QString title;
        QString address;  ///< as it is shown
        QUrl url;
    };

    QWidget* links();
    QLayout* linkRow(const Link& link);
    QWidget* donation();

    std::function<void(const QUrl&)> m_openURL;
};

}  // namespace tralio
