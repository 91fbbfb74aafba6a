#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>

#include <cstdio>
#include <optional>

#include "common/clock.h"
#include "common/localized_error.h"
#include "ocr/ocr_service.h"
#include "platform/linux/helpers/helper_text_recognizer.h"
#include "platform/linux/helpers/installation.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Prints the texts of files. With `repeat` above 1 it also prints how long the last, warm reading of each
/// took: until the first lines were counted, and in total.
QCoro::Task<> printTexts(OCRService& service, QStringList paths, int repeat) {
    int status = 0;
    for (const QString& path : paths) {
        QElapsedTimer timer;
        QByteArray text;
        std::optional<qint64> untilFirstLines;
        for (int i = 0; i < repeat; ++i) {
            timer.start();
            untilFirstLines.reset();
            const auto linesRead = [&](qsizetype lines) {
                if (lines > 0 && !untilFirstLines)
                    untilFirstLines = timer.nsecsElapsed();
            };
            try {
                const QUrl file = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
                text = (co_await service.recognizeText(file, {}, linesRead)).toUtf8();
            } catch (const LocalizedError& error) {
                std::fprintf(stderr, "%s: %s\n", qPrintable(path), error.what());
                text.clear();
                status = 1;
            }
        }
        if (repeat > 1)
            std::fprintf(stderr, "%s\t%.4f\t%.4f\n", qPrintable(path),
                1e-9 * static_cast<double>(untilFirstLines.value_or(0)),
                1e-9 * static_cast<double>(timer.nsecsElapsed()));
        // A form feed ends a page, as in the tesseract program's output.
        std::printf("%s\n%s", text.constData(), paths.size() > 1 ? "\f" : "");
        std::fflush(stdout);
    }
    QCoreApplication::exit(status);
}

}  // namespace
}  // namespace tralio

int main(int argc, char** argv) {
    using namespace Qt::StringLiterals;
    const QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(u"Prints the text of images, as Tralio reads them."_s);
    options.addHelpOption();
    const QCommandLineOption repeat(u"repeat"_s,
        u"Read each image so often; time the last, to its first lines and to its end."_s, u"times"_s, u"1"_s);
    options.addOption(repeat);
    options.addPositionalArgument(u"image"_s, u"The files."_s, u"image..."_s);
    options.process(application);

    tralio::SystemClock clock;
    tralio::HelperTextRecognizer recognizer(tralio::installation::helper(u"tralio-ocr"), clock);
    tralio::OCRService service(recognizer);
    QMetaObject::invokeMethod(
        qApp,
        [&] { tralio::printTexts(service, options.positionalArguments(), options.value(repeat).toInt()); },
        Qt::QueuedConnection);
    return QCoreApplication::exec();
}
