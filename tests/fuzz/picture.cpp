// A picture file from anywhere.

#include <QImageReader>
#include <QUrl>

#include "fuzz/fuzz.h"
#include "programs/recogniser/image_decoder.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tralio;
    QImageReader::setAllocationLimit(64);
    const DecodedImage decoded = decodeImage(QUrl::fromLocalFile(fuzz::fileOf(fuzz::bytes(data, size))));
    if (const auto* image = std::get_if<QImage>(&decoded))
        fuzz::require(!image->isNull(), "a decoded picture is one");
    return 0;
}
