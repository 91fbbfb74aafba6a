#pragma once

#include <QWidget>

namespace tralio {

class Label;

/// A red strip with a message that wraps, and a button that dismisses it.
class ErrorStrip final : public QWidget {
    Q_OBJECT

public:
    explicit ErrorStrip(QWidget* parent = nullptr);

    void setMessage(const QString& message);

Q_SIGNALS:
    void closeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Label* m_message;
};

}  // namespace tralio
