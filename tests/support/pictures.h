#pragma once

#include <QBuffer>
#include <QPainter>

#include "common/picture.h"
#include "ocr/text_recognizer.h"

namespace tralio {

/// The bytes of a picture file, as another program would provide them.
[[nodiscard]] inline QByteArray fileOf(const QImage& image, const char* format = "PNG") {
    QByteArray bytes;
    QBuffer file(&bytes);
    if (!image.save(&file, format))
        qFatal("A test's picture cannot be encoded.");
    return bytes;
}

[[nodiscard]] inline Picture encoded(const QImage& image) {
    return std::make_shared<MemoryFile>(fileOf(image));
}

/// Draws the lines of a text below each other, as a screen shows them.
[[nodiscard]] inline QImage drawn(const QStringList& lines, double ratio = 1, QColor ink = Qt::black,
    QColor paper = Qt::white, const QString& family = QStringLiteral("Noto Sans")) {
    QImage image(qRound(480 * ratio), qRound((20 + 30 * static_cast<double>(lines.size())) * ratio),
        QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(paper);
    QPainter painter(&image);
    QFont font(family);
    font.setPixelSize(17);
    painter.setFont(font);
    painter.setPen(ink);
    for (qsizetype i = 0; i < lines.size(); ++i)
        painter.drawText(QPointF(16, 32 + 30 * static_cast<double>(i)), lines[i]);
    image.setText(devicePixelRatioKey.toString(), QString::number(ratio));
    return image;
}

}  // namespace tralio
