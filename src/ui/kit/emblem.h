#pragma once

#include <QWidget>

namespace tralio {

/// The program's speech bubble on a disc, each with a gradient from the accent to purple. Not interactive.
class Emblem final : public QWidget {
    Q_OBJECT

public:
    /// `diameter` of the disc in logical pixels; `iconSize` of the bubble as a point size.
    Emblem(int diameter, int iconSize, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_iconSize;
};

}  // namespace tralio
