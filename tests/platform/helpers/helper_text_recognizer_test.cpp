
#include <csignal>
#include <unistd.h>

#include "platform/helpers/text_recognizer_fixture.h"
#include "support/process_limits.h"

namespace tralio {
namespace {

TEST_F(HelperTextRecognizerTest, files_of_all_kinds_end_as_they_should_and_the_next_one_works) {
    const QUrl good = saved(u"good.png"_s, page);
    const QByteArray bytes = contentOf(good.toLocalFile());
    QImage huge(20'000, 20'000, QImage::Format_Mono);
    huge.fill(1);
    const OCRError tooLarge = OCRError::recognitionFailed(recogniser_protocol::tooLarge(huge.size()));
    QImage glass(page.size(), QImage::Format_ARGB32);
    glass.fill(Qt::transparent);
    QPainter(&glass).drawImage(0, 0, drawn({u"Hello world"_s}, 1, Qt::white, Qt::transparent));

    // Its header says that it is to be turned by a quarter to the right.
    QByteArray turned = fileOf(drawn({u"Hello world"_s}).transformed(QTransform().rotate(-90)), "JPG");
    turned.insert(2,
        QByteArray::fromHex("ffe1002245786966000049492a00080000000100120103000100000006000000"
                            "00000000"));

    const std::tuple<const char*, QUrl, std::optional<OCRError>> cases[] = {
        {"a photograph that lies on its side", written(u"turned.jpg"_s, turned), {}},
        {"sixteen bits a channel", saved(u"deep.png"_s, page.convertToFormat(QImage::Format_RGBX64)), {}},
        {"another format than its name says", written(u"photo.jpg"_s, bytes), {}},
        {"cut off in its header", written(u"short.png"_s, bytes.first(20)), OCRError::invalidImage()},
        {"no image", written(u"text.png"_s, "Hello world"), OCRError::invalidImage()},
        {"not there", QUrl::fromLocalFile(folder.filePath(u"none.png"_s)), OCRError::invalidImage()},
        {"huge", saved(u"huge.png"_s, huge), tooLarge},
        {"blank", saved(u"blank.png"_s, drawn({})), OCRError::noTextFound()},
    };
    for (const auto& [what, file, error] : cases) {
        const Text ending = endingOf(service.recognizeText(file));
        EXPECT_EQ(ending.error, error) << what;
        EXPECT_EQ(ending.result.value_or(QString()), error ? QString() : u"Hello world"_s) << what;
    }
    EXPECT_EQ(endingOf(service.recognizeText(encoded(huge))).error, tooLarge);
    const Text half = endingOf(service.recognizeText(written(u"half.png"_s, bytes.first(bytes.size() / 2))));
    EXPECT_TRUE(half.error) << "cut off in the middle";
    EXPECT_EQ(textOf(encoded(glass)), u"Hello world"_s) << "white on transparent";
    EXPECT_EQ(textOf(good), u"Hello world"_s);
}

TEST_F(HelperTextRecognizerTest, a_picture_that_announces_more_than_it_is_costs_nothing_but_itself) {
    // A text of 1.68 GB behind the header, as it says.
    QByteArray announcing = fileOf(page).first(33) + QByteArray::fromHex("6422a000") + "iTXt";
    announcing += QByteArray(500, 'A');
    HelperTextRecognizer logged(
        script("exec \"$helper\" \"$@\" 2>>'" + QFile::encodeName(folder.filePath(u"log"_s)) + "'"), clock);
    OCRService read(logged);
    const qint64 before = mostMemory(getpid());
    EXPECT_EQ(endingOf(read.recognizeText(std::make_shared<MemoryFile>(announcing))).error,
        OCRError::invalidImage());
    EXPECT_EQ(endingOf(read.recognizeText(written(u"a.png"_s, announcing))).error, OCRError::invalidImage());
    const qint64 helper = logged.helperProcessId();
    EXPECT_TRUE(dumpsNoCore(helper)) << "it would hold what was on the screen";
    EXPECT_LT(mostMemory(helper), 300'000);
    EXPECT_LT(mostMemory(getpid()) - before, 20'000);
    EXPECT_EQ(endingOf(read.recognizeText(hello)).result, u"Hello world"_s);
    EXPECT_EQ(logged.helperProcessId(), helper) << "one serves image after image";

    const auto endless = std::make_shared<MemoryFile>();
    const QByteArray megabyte(1 << 20, 'A');
    while (endless->size() <= largestPicture)
        endless->append(megabyte);
    EXPECT_EQ(endingOf(read.recognizeText(endless)).error,
        OCRError::recognitionFailed(u"Hình ảnh quá lớn (hơn 256 MB)."_s));
}

TEST_F(HelperTextRecognizerTest, killed_at_any_moment_costs_one_image) {
    int lost = 0;
    for (int round = 0; round < 8; ++round) {
        const auto first = reading(recognizer);
        const auto next = reading(recognizer);
        // Before it runs, while it loads, while it reads, and when it has answered.
        for (int turn = 0; turn < round % 4 * 3 && first->times == 0; ++turn)
            EXPECT_TRUE(nextTurn());
        if (round >= 4)
            EXPECT_TRUE(eventually([&] { return first->times > 0; }));
        if (const qint64 helper = recognizer.helperProcessId())
            kill(static_cast<pid_t>(helper), SIGKILL);
        ASSERT_TRUE(eventually([&] { return first->times > 0 && next->times > 0; })) << round;
        EXPECT_NE(first->result.has_value(), first->failure == u"Bộ nhận dạng dừng đột ngột."_s) << round;
        EXPECT_NE(next->result.has_value(), next->failure == u"Bộ nhận dạng dừng đột ngột."_s) << round;
        EXPECT_TRUE(first->result || next->result) << round;
        lost += !first->result + !next->result;
    }
    EXPECT_GE(lost, 4);
}

TEST_F(HelperTextRecognizerTest, a_helper_that_hangs_is_ended_later_for_a_larger_image_or_one_that_gets_on) {
    using namespace recogniser_protocol;
    const auto answers = [this](const QString& name, const Reply& reply) {
        return "cat '" +
            QFile::encodeName(written(name, QByteArray::fromStdString(encode(reply))).toLocalFile()) + "'; ";
    };
    const QString go = folder.filePath(u"go"_s);
    HelperTextRecognizer hanging(
        scriptOnce(answers(u"accepted"_s, Accepted{{2000, 1000}}) + answers(u"first"_s, Progress{7}) +
            "while [ ! -e '" + QFile::encodeName(go) + "' ]; do sleep .01; done; " +
            answers(u"second"_s, Progress{8}) + "exec sleep 100"),
        clock, {.anyRequest = 20s, .perMegapixel = 5s});
    std::vector<qsizetype> counts;
    const auto ending = started(hanging.recognize(
        hello, RecognitionRequest(), {}, [&counts](qsizetype lines) { counts.push_back(lines); }));
    for (const size_t heard : {1U, 2U}) {
        EXPECT_TRUE(eventually([&] { return counts.size() == heard; }));
        clock.advance(29s);
        EXPECT_TRUE(nextTurn());
        EXPECT_EQ(ending->times, 0) << "it has got on, and has its time anew";
        writeFile(go, "");
    }
    EXPECT_THAT(counts, ElementsAre(7, 8));
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return ending->times > 0; }));
    EXPECT_FALSE(ending->failure.isEmpty());
    EXPECT_EQ(endingOf(hanging.recognize(hello, RecognitionRequest(), {}, {})).result->size(), 1U);
}

TEST_F(HelperTextRecognizerTest, a_stopped_recognition_ends_at_once_and_those_behind_it_go_on) {
    HelperTextRecognizer hanging(scriptOnce("exec sleep 100"), clock);
    std::stop_source stopFirst;
    std::stop_source stopSecond;
    const auto first = reading(hanging, stopFirst.get_token());
    const auto second = reading(hanging, stopSecond.get_token());
    const auto third = reading(hanging);
    EXPECT_TRUE(eventually([&] { return QFile::exists(failedOnce); }));
    stopSecond.request_stop();
    EXPECT_TRUE(eventually([&] { return second->times > 0; }));
    EXPECT_FALSE(second->failure.isEmpty());
    EXPECT_EQ(first->times + third->times, 0);
    stopFirst.request_stop();
    EXPECT_TRUE(eventually([&] { return first->times > 0 && third->times > 0; }));
    EXPECT_FALSE(first->failure.isEmpty());
    EXPECT_EQ(third->result.value_or(std::vector<TextObservation>()).size(), 1U)
        << third->failure.toStdString();

    auto own = std::make_unique<HelperTextRecognizer>(script("exec sleep 100"), clock);
    const auto begun = reading(*own);
    const auto waiting = started(own->supportedLanguages({}));
    own.reset();
    EXPECT_TRUE(eventually([&] { return begun->times > 0 && waiting->times > 0; }));
    EXPECT_FALSE(begun->failure.isEmpty() || waiting->failure.isEmpty()) << "they end with the recogniser";
}

}  // namespace
}  // namespace tralio
