#pragma once

#include "ocr/ocr_test_support.h"
#include "platform/linux/helpers/helper_text_recognizer.h"
#include "support/fake_clock.h"
#include "support/pictures.h"

namespace tralio {

inline Picture pictureOf(
    const QStringList& lines, double ratio = 1, QColor ink = Qt::black, QColor paper = Qt::white) {
    return encoded(drawn(lines, ratio, ink, paper));
}

/// The most memory that a process has had so far, in kB.
inline qint64 mostMemory(qint64 process) {
    const QByteArray status = contentOf(u"/proc/%1/status"_s.arg(process));
    const qsizetype at = status.indexOf("VmHWM:");
    return at < 0 ? 0 : status.mid(at + 6, status.indexOf("kB", at) - at - 6).trimmed().toLongLong();
}

struct HelperTextRecognizerTest : testing::Test {
    using Text = Ending<QString>;

    /// A helper that is a shell script; `$helper` in it is the real one.
    QString script(const QByteArray& commands) {
        return writeFile(folder.filePath(u"helper-%1"_s.arg(++scripts)),
            "#!/bin/sh\nhelper='" OCR_PROGRAM "'\n" + commands + "\n");
    }

    /// A helper that does these things the first time, and after that works.
    QString scriptOnce(const QByteArray& commands) {
        failedOnce = folder.filePath(u"failed-%1"_s.arg(scripts));
        const QByteArray flag = QFile::encodeName(failedOnce);
        return script("if [ ! -e '" + flag + "' ]; then : >'" + flag + "'; " + commands +
            "; fi\nexec \"$helper\" \"$@\"");
    }

    QUrl written(const QString& name, const QByteArray& bytes) {
        return QUrl::fromLocalFile(writeFile(folder.filePath(name), bytes));
    }

    QUrl saved(const QString& name, const QImage& image) {
        EXPECT_TRUE(image.save(folder.filePath(name)));
        return QUrl::fromLocalFile(folder.filePath(name));
    }

    template <typename Image>
    std::optional<QString> textOf(const Image& image) {
        return endingOf(service.recognizeText(image)).result;
    }
    std::shared_ptr<Ending<std::vector<TextObservation>>> reading(
        HelperTextRecognizer& from, const std::stop_token& stop = {}) const {
        return started(from.recognize(hello, RecognitionRequest(), stop, {}));
    }

    const QImage page = drawn({u"Hello world"_s});
    const Picture hello = encoded(page);
    QTemporaryDir folder;
    int scripts = 0;
    QString failedOnce;  ///< is there when the last helper of `scriptOnce` has begun to fail
    FakeClock clock;
    HelperTextRecognizer recognizer{QStringLiteral(OCR_PROGRAM), clock};
    OCRService service{recognizer};
};

}  // namespace tralio
