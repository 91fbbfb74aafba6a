#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

class QLayout;

namespace tralio {

/// The makers of the program, its version, and where to find them.
class AboutView final : public QWidget {
    Q_OBJECT

public:
    /// `openURL` opens an address in the user's default application.
    AboutView(const QString& version, std::function<void(const QUrl&)> openURL, QWidget* parent = nullptr);

private:
    struct Link {
        QString icon;
        QString title;
        QString address;  ///< as shown
        QUrl url;
    };

    QWidget* links();
    QLayout* linkRow(const Link& link);
    QWidget* donation();

    std::function<void(const QUrl&)> m_openURL;
};

}  // namespace tralio
