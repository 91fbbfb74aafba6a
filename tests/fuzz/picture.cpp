// A picture file from anywhere.

#include <QImageReader>
#include <QUrl>

#include "fuzz/fuzz.h"
#include "programs/recogniser/pixels/image_decoder.h"

void tralio::fuzz::readInput(const QByteArray& input) {
    QImageReader::setAllocationLimit(64);
    const DecodedImage decoded = decodeImage(fileOf(input));
    if (const auto* image = std::get_if<QImage>(&decoded))
        require(!image->isNull(), "a decoded picture is one");
}
