#include <cmath>

#include "platform/helpers/text_recognizer_fixture.h"

namespace tralio {
namespace {

TEST_F(HelperTextRecognizerTest, reads_what_screens_show) {
    const QStringList lines{u"Bạn hãy nhập mật khẩu mới."_s, u"Please enter a new password."_s};
    const QString text = lines.join(u'\n');
    EXPECT_EQ(textOf(pictureOf(lines)), text);
    EXPECT_EQ(textOf(pictureOf(lines, 2)), text) << "on a dense screen";
    const QColor light(235, 235, 235);
    EXPECT_EQ(textOf(pictureOf(lines, 1, light, QColor(30, 30, 46))), text) << "in a dark theme";
    EXPECT_EQ(textOf(pictureOf({u"Файл успешно загружен."_s})), u"Файл успешно загружен."_s);
    const QStringList greeting{u"Xin chào Việt Nam"_s, u"Good morning, everybody"_s};
    EXPECT_EQ(textOf(pictureOf(greeting)), greeting.join(u'\n'))
        << "a short greeting is not taken for Spanish";

    const auto observations =
        endingOf(recognizer.recognize(pictureOf(lines), RecognitionRequest(), {}, {})).result.value();
    ASSERT_EQ(observations.size(), 2U);
    for (size_t i = 0; i < 2; ++i) {
        const NormalizedRect& box = observations[i].boundingBox;
        EXPECT_NEAR(box.x, 16 / 480.0, 0.02);
        EXPECT_NEAR(box.midY(), i == 0 ? 0.68 : 0.3, 0.06) << "the origin is the lower left corner";
        EXPECT_GT(box.width, 0.4);
        EXPECT_LT(box.x + box.width, 0.8);
    }
}

TEST_F(HelperTextRecognizerTest, reads_tables_bubbles_and_captions) {
    QImage image(760, 470, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const auto write = [&painter](QPointF at, const QString& text, int size, QColor ink) {
        QFont font(u"Noto Sans"_s);
        font.setPixelSize(size);
        painter.setFont(font);
        painter.setPen(ink);
        painter.drawText(at, text);
    };
    const QStringList goods{u"Phở bò tái"_s, u"Bún chả"_s, u"Cơm tấm"_s, u"Bánh xèo"_s, u"Xôi gà"_s};
    for (qsizetype row = 0; row < goods.size(); ++row) {
        const int y = 100 + 36 * static_cast<int>(row);
        painter.setPen(QPen(QColor(50, 50, 50), 2));
        painter.drawRect(16, y, 240, 36);
        painter.drawRect(256, y, 120, 36);
        write(QPointF(28, y + 24), goods[row], 16, Qt::black);
        write(QPointF(270, y + 24), u"%1.000"_s.arg(31 + row), 16, Qt::black);
    }
    const QStringList messages{u"Chiều nay mấy giờ mình họp vậy?"_s, u"Ba giờ rưỡi, phòng nhỏ tầng hai"_s};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const int y : {10, 54}) {
        const bool isOwn = y > 10;
        painter.setBrush(isOwn ? QColor(11, 132, 255) : QColor(240, 241, 243));
        painter.drawRoundedRect(isOwn ? 470 : 420, y, 280, 36, 16, 16);
        write(QPointF(isOwn ? 484 : 434, y + 23), messages[isOwn], 15, isOwn ? Qt::white : Qt::black);
    }
    QLinearGradient sky(0, 100, 300, 440);
    sky.setStops({{0, QColor(70, 120, 190)}, {0.5, QColor(200, 140, 90)}, {1, QColor(60, 70, 60)}});
    painter.fillRect(420, 100, 330, 340, sky);
    write({450, 410}, u"Chợ nổi buổi sáng"_s, 22, Qt::white);
    painter.end();

    const QStringList lines = textOf(encoded(image)).value_or(QString()).split(u'\n');
    QStringList expected = messages + QStringList{u"Chợ nổi buổi sáng"_s};
    for (qsizetype row = 0; row < goods.size(); ++row)
        expected += {goods[row], u"%1.000"_s.arg(31 + row)};
    EXPECT_THAT(lines, testing::UnorderedElementsAreArray(expected));
    const QString russian = u"Установите браузер Firefox на компьютер"_s;
    EXPECT_EQ(textOf(pictureOf({russian})), russian) << "with a Latin name in it";
}

TEST_F(HelperTextRecognizerTest, nothing_is_read_where_nothing_is_written) {
    QImage plain(600, 400, QImage::Format_RGB32);
    plain.fill(QColor(128, 128, 128));
    QImage clouds(420, 280, QImage::Format_RGB32);
    for (int y = 0; y < clouds.height(); ++y)
        for (int x = 0; x < clouds.width(); ++x) {
            const auto wave = [&](double a, double b) {
                return qRound(60 * std::sin(x / a) * std::cos(y / b));
            };
            clouds.setPixel(x, y, qRgb(120 + wave(37, 23), 130 + wave(11, 41), 140 + wave(61, 7)));
        }
    QImage desktop = plain;
    QPainter painter(&desktop);
    painter.fillRect(0, 0, 600, 24, QColor(30, 30, 30));
    for (int i = 0; i < 6; ++i)
        painter.fillRect(QRect(20, 50 + 55 * i, 32, 32), QColor(200, 40 * i, 90));
    painter.end();
    for (const QImage& image : {plain, clouds, desktop})
        EXPECT_EQ(endingOf(service.recognizeText(encoded(image))).failure,
            OCRError::noTextFound().errorDescription());
}

TEST_F(HelperTextRecognizerTest, tells_the_languages_of_the_installed_packs_and_keeps_to_the_wanted_ones) {
    const QStringList languages = endingOf(recognizer.supportedLanguages({})).result.value();
    EXPECT_THAT(languages, testing::IsSupersetOf({u"vi-VN"_s, u"en-US"_s, u"ru-RU"_s}));
    RecognitionRequest request{.languages = QStringList{u"en-US"_s}};
    const QStringList lines{u"The file was loaded."_s, u"Файл успешно загружен."_s};
    const auto english = endingOf(recognizer.recognize(pictureOf(lines), request, {}, {})).result.value();
    ASSERT_FALSE(english.empty());
    EXPECT_EQ(english.front().candidates.value(0), lines.front());
    for (const TextObservation& observation : english)
        EXPECT_FALSE(observation.candidates.value(0).contains(u"Файл"_s));
    request.languages = QStringList{u"xx-XX"_s};
    EXPECT_FALSE(endingOf(recognizer.recognize(hello, request, {}, {})).failure.isEmpty());
}

}  // namespace
}  // namespace tralio
