#include "recognition.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QUrl>

#include "common/clock.h"
#include "desktop/test_session.h"
#include "platform/linux/helpers/helper_text_recognizer.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

void drawPicture(const QString& path) {
    QImage image(600, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(u"Noto Sans"_s);
    font.setPixelSize(16);
    painter.setFont(font);
    int y = 40;
    for (const QString& line : {u"Giao diện tốt nhất là giao diện mà bạn không còn để ý đến nữa."_s,
             u"The best interface is the one that you no longer notice."_s,
             u"Please enter a new password, and repeat it below."_s, u"Bạn hãy nhập mật khẩu mới."_s}) {
        painter.drawText(16, y, line);
        y += 40;
    }
    painter.end();
    image.save(path);
}

double milliseconds(const std::function<void()>& work) {
    QElapsedTimer time;
    time.start();
    work();
    return static_cast<double>(time.nsecsElapsed()) / 1e6;
}

}  // namespace

Recognition measureRecognition(const QString& folder, int rounds) {
    const QString path = folder + u"/recognised.png"_s;
    drawPicture(path);
    SystemClock clock;
    HelperTextRecognizer recognizer(QStringLiteral(OCR_PROGRAM), clock);
    Recognition result;
    for (int round = 0; round <= rounds; ++round) {
        const double ours = milliseconds([&] {
            const RecognitionRequest request{.languages = QStringList{u"vi-VN"_s, u"en-US"_s}};
            auto reading = recognizer.recognize(QUrl::fromLocalFile(path), request, {}, {});
            if (!waitUntil([&reading] { return reading.isReady(); }, 60))
                qFatal("The recogniser does not answer.");
        });
        const double theirs = milliseconds([&path] {
            QProcess tesseract;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"OMP_THREAD_LIMIT"_s, u"1"_s);
            tesseract.setProcessEnvironment(environment);
            tesseract.start(u"tesseract"_s, {path, u"-"_s, u"-l"_s, u"vie+eng"_s, u"--psm"_s, u"6"_s});
            tesseract.waitForFinished();
        });
        if (round == 0)
            continue;  // the first run only loads the engines, and the packs into the page cache
        result.ours.add(ours);
        result.tesseract.add(theirs);
    }
    return result;
}

}  // namespace tralio
