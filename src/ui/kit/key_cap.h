#pragma once

#include <QWidget>

namespace tralio {

/// The name of a key, drawn as a key. Not interactive.
class KeyCap final : public QWidget {
    Q_OBJECT

public:
    explicit KeyCap(const QString& text, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

}  // namespace tralio
