#pragma once

#include <QWidget>

namespace tralio {

/// The program's speech bubble on a disc, each in a gradient from the accent to purple. Only looked at.
class Emblem final : public QWidget {
    Q_OBJECT

public:
    /// `diameter` is the disc's in logical pixels, `iconSize` the bubble's point size.
    Emblem(int diameter, int iconSize, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_iconSize;
};

}  // namespace tralio
