#include "ocr/screen_capture_service.h"

#include "ocr/ocr_test_support.h"
#include "support/fake_clock.h"

namespace tralio {
namespace {

/// A user who is still drawing until `finish`.
struct FakeCaptureTool final : CaptureTool {
    QCoro::Task<qint32> run(QString outputPath) override {
        paths.push_back(outputPath);
        if (onRun)
            onRun();
        m_drawing = QPromise<qint32>();
        m_drawing.start();
        const QFuture<qint32> drawn = m_drawing.future();
        co_return co_await drawn;
    }

    void finish(qint32 status, std::optional<QByteArray> picture) {
        if (picture)
            writeFile(paths.back(), *picture);
        m_drawing.addResult(status);
        m_drawing.finish();
    }

    QStringList paths;
    std::function<void()> onRun;

private:
    QPromise<qint32> m_drawing;
};

struct ScreenCapture : testing::Test {
    using Result = std::optional<QString>;

    ScreenCapture() {
        recognizer.reads({{{0, 0, 1, 1}, {u"Xin chào"_s}}});
        recognizer.onRecognize = [this] {
            EXPECT_THAT(filesLeft(), testing::SizeIs(1)) << "the picture is there to be read";
            steps += u"recognise"_s;
        };
        tool.onRun = [this] { steps += u"draw"_s; };
    }

    std::shared_ptr<Ending<Result>> capture() {
        return started(service.captureInteractiveAndRecognize(
            [this] { steps += u"before"_s; }, [this] { steps += u"after"_s; }));
    }

    /// A capture from its beginning to its end.
    Ending<Result> captureThatEnds(qint32 status, const std::optional<QByteArray>& picture) {
        const auto ending = capture();
        EXPECT_TRUE(draws());
        tool.finish(status, picture);
        EXPECT_TRUE(eventually([&] { return ending->times > 0; }));
        return *ending;
    }
    /// Lets the user begin to draw.
    [[nodiscard]] bool draws() {
        const auto runs = tool.paths.size() + 1;
        clock.advance(150ms);
        return eventually([&] { return tool.paths.size() == runs; });
    }

    [[nodiscard]] QStringList filesLeft() const { return QDir(folder.path()).entryList(QDir::Files); }

    QTemporaryDir folder;
    QStringList steps;
    FakeClock clock;
    FakeCaptureTool tool;
    ScriptedRecognizer recognizer;
    OCRService ocr{recognizer};
    ScreenCaptureService service{ocr, tool, clock, folder.path()};
};

TEST_F(ScreenCapture, a_drawn_region_becomes_text_step_by_step) {
    const auto ending = capture();
    EXPECT_THAT(steps, ElementsAre(u"before"_s));
    EXPECT_EQ(recognizer.preparations, 1) << "the recogniser gets ready while the user draws";
    clock.advance(149ms);
    EXPECT_TRUE(nextTurn());
    EXPECT_THAT(tool.paths, IsEmpty());
    clock.advance(1ms);
    EXPECT_TRUE(eventually([&] { return !tool.paths.isEmpty(); }));
    EXPECT_THAT(steps, ElementsAre(u"before"_s, u"draw"_s));

    tool.finish(0, "png");
    EXPECT_TRUE(eventually([&] { return ending->times > 0; }));
    EXPECT_THAT(steps, ElementsAre(u"before"_s, u"draw"_s, u"after"_s, u"recognise"_s));
    EXPECT_EQ(ending->result, Result(u"Xin chào"_s));
    EXPECT_THAT(filesLeft(), IsEmpty());
    EXPECT_EQ(std::get<QUrl>(recognizer.images.at(0)), QUrl::fromLocalFile(tool.paths.first()));
    EXPECT_EQ(QFileInfo(tool.paths.first()).path(), folder.path());

    EXPECT_EQ(captureThatEnds(0, "png").result, Result(u"Xin chào"_s));
    EXPECT_NE(tool.paths.first(), tool.paths.last());
    static const QRegularExpression name(
        uR"(/tralio_snip_[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\.png$)"_s);
    for (const QString& path : tool.paths)
        EXPECT_TRUE(name.match(path).hasMatch()) << path.toStdString();
}

TEST_F(ScreenCapture, a_capture_without_a_picture_is_no_text_and_no_failure) {
    const std::tuple<const char*, qint32, std::optional<QByteArray>> cases[] = {
        {"cancelled", 0, std::nullopt}, {"an empty file", 0, QByteArray()},
        {"a status other than zero, with a picture", 1, QByteArray("png")},
        {"not started", CaptureTool::notStarted, std::nullopt}};
    // What a tool leaves that is killed while it writes.
    tool.onRun = [this] {
        steps += u"draw"_s;
        writeFile(tool.paths.back() + u".Qx7Tp2"_s, "half a picture of the screen");
    };
    for (const auto& [what, status, picture] : cases) {
        steps.clear();
        const auto ending = captureThatEnds(status, picture);
        ASSERT_TRUE(ending.result) << what << ending.failure.toStdString();
        EXPECT_EQ(*ending.result, std::nullopt) << what;
        EXPECT_THAT(steps, ElementsAre(u"before"_s, u"draw"_s, u"after"_s)) << what;
        EXPECT_THAT(filesLeft(), IsEmpty()) << what;
    }
}

TEST_F(ScreenCapture, a_failed_recognition_is_passed_on_and_the_next_capture_works) {
    recognizer.answer = []() -> std::vector<TextObservation> { throw OCRError::invalidImage(); };
    EXPECT_EQ(captureThatEnds(0, "no png").error, OCRError::invalidImage());
    EXPECT_THAT(filesLeft(), IsEmpty());
    recognizer.reads({{{}, {u"đây"_s}}});
    EXPECT_EQ(captureThatEnds(0, "png").result, Result(u"đây"_s));
}

TEST_F(ScreenCapture, a_second_call_ends_at_once_until_the_first_has_its_text) {
    recognizer.isSlow = true;
    const auto first = capture();
    const auto expectRefused = [this] {
        const auto second = started(service.captureInteractiveAndRecognize([] { FAIL(); }, [] { FAIL(); }));
        EXPECT_EQ(second->times, 1);
        EXPECT_EQ(second->result.value_or(u"failed"_s), std::nullopt);
    };
    expectRefused();
    EXPECT_TRUE(draws());
    expectRefused();
    tool.finish(0, "png");
    EXPECT_TRUE(eventually([&] { return !recognizer.images.empty(); }));
    expectRefused();
    EXPECT_TRUE(eventually([&] { return first->times > 0; }));
    EXPECT_EQ(first->result, Result(u"Xin chào"_s));
    EXPECT_EQ(tool.paths.size(), 1);
}

TEST_F(ScreenCapture, that_is_read_when_the_program_ends_leaves_no_picture_and_takes_nothing_else) {
    const QString former = QDir::currentPath();
    const auto back = qScopeGuard([&] { QDir::setCurrent(former); });
    QDir::setCurrent(folder.path());
    writeFile(folder.filePath(u"of the user"_s), "kept");
    recognizer.isSlow = true;
    recognizer.onRecognize = {};
    std::optional<ScreenCaptureService> own(std::in_place, ocr, tool, clock, folder.path());
    const auto ending = started(own->captureInteractiveAndRecognize());
    EXPECT_TRUE(draws());
    tool.finish(0, "png");
    EXPECT_TRUE(eventually([&] { return !recognizer.images.empty(); }));
    EXPECT_TRUE(own->isReading());
    own.reset();
    EXPECT_THAT(filesLeft(), ElementsAre(u"of the user"_s));
    EXPECT_TRUE(eventually([&] { return ending->times > 0; }));
    EXPECT_THAT(filesLeft(), ElementsAre(u"of the user"_s));

    own.emplace(ocr, tool, clock, folder.path());
    const auto early = started(own->captureInteractiveAndRecognize());
    clock.advance(1s);
    own.reset();
    EXPECT_TRUE(eventually([&] { return early->times > 0; }));
    EXPECT_EQ(tool.paths.size(), 1) << "the second was ended before the user could draw";
}

TEST_F(ScreenCapture, what_a_killed_program_left_goes_and_what_came_since_or_is_of_others_stays) {
    for (const QString& name : {u"tralio_snip_A.png"_s, u"tralio_snip_B.png.Qx7Tp2"_s, u"a picture.png"_s})
        writeFile(folder.filePath(name), "png");
    const ScreenCaptureService next(ocr, tool, clock, folder.path());
    writeFile(folder.filePath(u"tralio_snip_C.png"_s), "png");
    clock.advance(5min);
    EXPECT_THAT(filesLeft(), testing::SizeIs(4)) << "another instance may be reading them";
    clock.advance(5min);
    EXPECT_THAT(filesLeft(), ElementsAre(u"a picture.png"_s, u"tralio_snip_C.png"_s));
}

}  // namespace
}  // namespace tralio
