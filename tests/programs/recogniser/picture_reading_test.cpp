#include <QPainterPath>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

#include "ocr/reading_order.h"
#include "programs/recogniser/picture_reader.h"
#include "programs/recogniser/pixels/image_decoder.h"
#include "support/pictures.h"
#include "support/testing.h"

namespace tralio {
namespace {

struct PictureReading : testing::Test {
    Reading read(const QImage& image, const QStringList& packs) {
        return readPicture(
            engines, packs, image, Effort::untilConfident,
            [this](qsizetype lines) {
                counts.push_back(lines);
                work += workForABlock;
            },
            WorkBudget([this] { return work.load(); }));
    }

    int signsOfLife = 0;
    std::vector<qsizetype> counts;
    std::atomic<double> work = 0;  ///< in seconds
    double workForALine = 0;
    double workForABlock = 0;
    EnginePool engines{[this] {
                           ++signsOfLife;
                           work += workForALine;
                       },
        [this] { return work.load(); }};
};

TEST_F(PictureReading, of_a_picture_or_a_block_that_is_too_much_work_what_was_read_by_then_is_kept) {
    QStringList lines;
    for (int i = 0; i < 24; ++i)
        lines += u"Line %1 of this page"_s.arg(i + 11);
    workForABlock = 61;
    const Reading page = read(drawn(lines), {u"eng"_s});
    ASSERT_EQ(page.lines.size(), 16U);
    EXPECT_EQ(page.lines.front().text(), lines.front());
    EXPECT_EQ(page.lines.back().text(), lines[15]);
    EXPECT_THAT(counts, ElementsAre(8, 16));
    EXPECT_GE(signsOfLife, 16) << "also within a block, at every line";

    work = workForABlock = 0;
    workForALine = 6;
    const Reading block = read(drawn(lines.first(8)), {u"eng"_s});
    ASSERT_THAT(block.lines, testing::SizeIs(testing::AllOf(testing::Ge(2U), testing::Le(4U))));
    for (size_t i = 0; i < block.lines.size(); ++i)
        EXPECT_EQ(block.lines[i].text(), lines[static_cast<qsizetype>(i)]);
}

TEST_F(PictureReading, of_a_page_is_shared_by_two_and_comes_in_its_order) {
    QStringList lines;
    for (int i = 0; i < 72; ++i)
        lines += u"Line %1 of this page"_s.arg(i + 11);
    const Reading page = read(drawn(lines), {u"eng"_s});
    QStringList seen;
    for (const ReadLine& line : page.lines)
        seen += line.text();
    EXPECT_EQ(seen, lines);
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
    EXPECT_EQ(counts.back(), lines.size());
    if (std::thread::hardware_concurrency() > 1)
        EXPECT_LT(signsOfLife, lines.size()) << "the other reader has read as many";
}

TEST_F(PictureReading, single_signs_in_a_toolbar_are_no_text) {
    const auto toolbar = [](const QStringList& text) {
        const QImage label = drawn(text);
        QImage image(label.width() + 200, label.height(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.drawImage(0, 0, label);
        painter.setBrush(Qt::darkGray);
        for (int i = 0; i < 3; ++i)
            painter.drawEllipse(label.width() + 20 + 60 * i, label.height() / 2 - 10, 20, 20);
        return image;
    };
    EXPECT_THAT(read(drawn({u"A"_s}), {u"eng"_s}).lines, SizeIs(1));
    EXPECT_THAT(read(toolbar({u"A"_s}), {u"eng"_s}).lines, IsEmpty());
    EXPECT_THAT(read(toolbar({u"An"_s}), {u"eng"_s}).lines, SizeIs(1));
    EXPECT_THAT(read(toolbar({u"A"_s, u"B"_s}), {u"eng"_s}).lines, SizeIs(2)) << "answers beside buttons";
}

TEST_F(PictureReading, dark_and_light_lines_of_one_block_are_all_read) {
    QImage image(360, 120, QImage::Format_RGB32);
    image.fill(QColor(0x3a, 0x8f, 0xd8));
    QPainter painter(&image);
    QFont font(u"Liberation Serif"_s);
    font.setPixelSize(11);  // so that other pictures are tried
    painter.setFont(font);
    const QStringList lines{u"Đơn hàng của bạn đã được giao"_s, u"Mã đơn 84-2217 gửi từ kho Hà Đông"_s,
        u"Vui lòng đánh giá người giao hàng"_s, u"Xem chi tiết hoặc trả lại trong 7 ngày"_s};
    for (int i = 0; i < lines.size(); ++i) {
        painter.setPen(i < 2 ? Qt::white : Qt::black);
        painter.drawText(QPointF(12, 19 + 25 * i), lines[i]);
    }
    painter.end();
    EXPECT_EQ(read(image, {u"vie"_s, u"eng"_s}).lines.size(), 4U);
}

TEST_F(PictureReading, after_much_that_nobody_can_read_other_text_is_looked_at_once_more) {
    WorkBudget budget([this] { return work.load(); });
    work = 6;
    budget.addFruitless(0);
    EXPECT_TRUE(budget.allowsFurtherLooks(6, false));
    EXPECT_FALSE(budget.allowsFurtherLooks(6, true)) << "but for the shapes in a photograph";
    work = 8;
    EXPECT_FALSE(budget.allowsFurtherLooks(6, false)) << "and not for long";
    work = 25;
    budget.addFruitless(6);
    EXPECT_FALSE(budget.allowsFurtherLooks(25, false)) << "nor for ever";
}

TEST_F(PictureReading, what_helped_no_block_so_far_is_tried_on_worse_ones_only) {
    VainLooks vain;
    vain.add(u"rus"_s, 70, false);
    EXPECT_FALSE(vain.isVain(u"rus"_s, 75)) << "once may be chance";
    vain.add(u"rus"_s, 66, false);
    EXPECT_TRUE(vain.isVain(u"rus"_s, 66));
    EXPECT_FALSE(vain.isVain(u"rus"_s, 55) || vain.isVain(u"kor"_s, 75));
    vain.add(u"rus"_s, 55, true);
    EXPECT_FALSE(vain.isVain(u"rus"_s, 75));
}

TEST_F(PictureReading, nothing_that_is_no_text_speaks_against_another_script) {
    const QImage russian = drawn({u"Добрый день, мой дорогой друг"_s});
    const QImage nonsense = drawn({u"overturned lines"_s, u"are no text"_s}).mirrored();
    QImage image(
        std::max(russian.width(), nonsense.width()), 3 * nonsense.height() + 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int i = 0; i < 3; ++i)
        painter.drawImage(0, i * (nonsense.height() + 50), nonsense);
    painter.drawImage(0, 3 * nonsense.height() + 150, russian);
    painter.end();
    const Reading reading = read(image, {u"vie"_s, u"eng"_s, u"rus"_s});
    ASSERT_FALSE(reading.lines.empty());
    EXPECT_EQ(reading.lines.back().text(), u"Добрый день, мой дорогой друг"_s);
}

TEST_F(PictureReading, a_line_of_another_script_is_read_by_its_own_engine_and_the_others_stay) {
    const QStringList lines{u"The ferry leaves at noon"_s, u"Please keep this receipt"_s,
        u"Откройте вкладку Settings справа"_s, u"Nobody ordered a printer"_s, u"Rain was measured hourly"_s};
    const QImage image = drawn(lines);
    const Reading reading = read(image, {u"vie"_s, u"eng"_s, u"rus"_s});
    ASSERT_EQ(std::ssize(reading.lines), lines.size());
    const double pitch = reading.lines[1].box.top() - reading.lines[0].box.top();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const ReadLine& line = reading.lines[static_cast<size_t>(i)];
        EXPECT_EQ(line.text(), lines[i]);
        EXPECT_NEAR(line.box.top(), reading.lines[0].box.top() + static_cast<double>(i) * pitch, pitch / 4);
    }
}

TEST_F(PictureReading, a_word_alone_is_read_in_the_language_of_the_others) {
    // Of its own "Среда" is "Cpena", and "für" lacks its dots where the words around it have none.
    for (const QStringList& words :
        {QStringList{u"Вторник"_s, u"Среда"_s, u"Алгебра"_s, u"Понедельник"_s, u"Время"_s, u"Физкультура"_s},
            QStringList{u"Größe"_s, u"Farbe"_s, u"grün"_s, u"braun"_s, u"Brötchen"_s, u"Schlüssel"_s}}) {
        QImage image(480, 60, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QFont font(u"Noto Sans"_s);
        font.setPixelSize(13);
        painter.setFont(font);
        for (int i = 0; i < words.size(); ++i)
            painter.drawText(QPointF(10 + 160 * (i % 3), 20 + 30 * (i / 3)), words[i]);
        painter.end();
        QStringList seen;
        for (const ReadLine& line :
            read(image, {u"vie"_s, u"eng"_s, u"rus"_s, u"fra"_s, u"deu"_s, u"spa"_s}).lines)
            seen += line.text();
        seen.sort();
        EXPECT_EQ(seen, [&] {
            QStringList wanted = words;
            wanted.sort();
            return wanted;
        }());
    }
}

TEST_F(PictureReading, an_outlined_caption_is_read_across_a_photograph_and_flat_areas) {
    QImage image(640, 200, QImage::Format_RGB32);
    image.fill(QColor(60, 110, 70));
    QPainter painter(&image);
    std::mt19937 random(4);
    const auto upTo = [&random](unsigned most) { return static_cast<int>(random() % most); };
    for (int i = 0; i < 3000; ++i)
        painter.fillRect(upTo(380), upTo(200), 4 + upTo(20), 4 + upTo(12),
            QColor(60 + upTo(160), 60 + upTo(120), 40 + upTo(160)));
    const QString text = u"They met at the old bridge again"_s;
    QFont font(u"Noto Sans"_s);
    font.setPixelSize(28);
    QPainterPath letters;
    letters.addText(80, 150, font, text);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(letters, QPen(Qt::black, 5));
    painter.fillPath(letters, Qt::white);
    painter.end();
    const Reading reading = read(image, {u"eng"_s});
    ASSERT_EQ(reading.lines.size(), 1U);
    EXPECT_EQ(reading.lines.front().text(), text);
}

TEST_F(PictureReading, rows_of_a_tall_picture_are_read_one_by_one_wherever_their_lines_begin) {
    const QStringList code{u"if (isReady) {"_s, u"    startTheEngine();"_s, u"} else {"_s,
        u"    waitForTheEngine();"_s, u"stopEverything();"_s};
    struct Case {
        int height;
        int columns;
        int pitch;
        double rise = 0;  ///< of a scan that is a little turned: from one column to the next
    };
    for (const auto& [height, columns, pitch, rise] :
        {Case{1440, 1, 19}, {1440, 2, 23}, {300, 2, 19}, {1440, 3, 19, 4}}) {
        QImage image(900, height, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QFont font(u"DejaVu Sans Mono"_s);
        font.setPixelSize(14);
        painter.setFont(font);
        for (int i = 0; i < code.size(); ++i) {
            painter.drawText(QPointF(40, 60 + pitch * i), code[i]);
            for (int column = 1; column < columns; ++column)
                painter.drawText(
                    QPointF(900 - 300 * (columns - column), 60 + pitch * i - column * rise), u"gypsy rows"_s);
        }
        painter.end();
        std::vector<TextObservation> observations;
        for (const ReadLine& line : read(image, {u"eng"_s}).lines)
            observations.push_back({{line.box.left() / 900, 1 - line.box.bottom() / height,
                                        line.box.width() / 900, line.box.height() / height},
                {line.text()}});
        sortIntoReadingOrder(observations);
        QStringList starts;
        QStringList wanted;
        for (const TextObservation& each : observations)
            starts += each.candidates.front().trimmed().left(8);
        for (const QString& line : code) {
            wanted += line.trimmed().left(8);
            wanted += QStringList(columns - 1, u"gypsy ro"_s);
        }
        EXPECT_EQ(starts, wanted) << height << ' ' << pitch << ' ' << rise;
    }
}

QImage decoded(const QImage& image) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.png"_s);
    EXPECT_TRUE(image.save(path));
    return std::get<QImage>(decodeImage(path));
}

TEST(Decoding, tells_how_dense_the_screen_was) {
    // What is told, the dots per metre, and the ratio. 3780 is 96 per inch, 5669 is 144, 8661 is 220, and
    // 11811 is 300, as printers have; 400 has no screen.
    const std::tuple<QString, int, double> cases[] = {{{}, 3780, 1}, {u"1.5"_s, 3780, 1.5}, {u"2"_s, 3780, 2},
        {u"400"_s, 3780, 1}, {{}, 5669, 2}, {u"1"_s, 5669, 1}, {{}, 8661, 2}, {{}, 11811, 1}};
    for (const auto& [told, dotsPerMetre, ratio] : cases) {
        QImage image = drawn({u"Text"_s});
        image.setText(devicePixelRatioKey.toString(), told);
        image.setDotsPerMeterX(dotsPerMetre);
        image.setDotsPerMeterY(dotsPerMetre);
        EXPECT_EQ(decoded(image).devicePixelRatio(), ratio) << told.toStdString() << ' ' << dotsPerMetre;
    }
}

TEST(Decoding, what_is_transparent_shows_the_ground_unless_all_of_it_is) {
    const auto centre = [](const QColor& edge, const QColor& middle) {
        QImage image(30, 30, QImage::Format_ARGB32);
        image.fill(edge);
        image.setPixelColor(15, 15, middle);
        return decoded(image).pixelColor(15, 15);
    };
    const QColor hidden(10, 200, 30, 0);
    EXPECT_EQ(centre(Qt::black, hidden), QColor(Qt::white));
    EXPECT_EQ(centre(Qt::white, hidden), QColor(Qt::black));
    EXPECT_EQ(centre(QColor(1, 2, 3, 0), hidden), QColor(10, 200, 30)) << "an alpha that nobody has filled";
}

}  // namespace
}  // namespace tralio
