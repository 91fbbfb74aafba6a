#include "desktop/fixtures.h"

namespace tralio {
namespace {

constexpr QSize screenSize(1280, 1024);

/// The colour of every pixel of the page encodes its place.
QRgb pageColor(int x, int y) {
    return qRgb(x & 0xff, y & 0xff, (x >> 8) << 4 | y >> 8);
}

QImage page() {
    QImage image(screenSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, pageColor(x, y));
    return image;
}

/// The part of the page that a picture shows; null if it shows anything else.
QRect partOfPage(const QImage& picture) {
    if (picture.isNull())
        return {};
    const QRgb first = picture.pixel(0, 0);
    const QPoint begin(qRed(first) | qBlue(first) >> 4 << 8, qGreen(first) | (qBlue(first) & 0xf) << 8);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != pageColor(begin.x() + x, begin.y() + y))
                return {};
    }
    return {begin, picture.size()};
}

/// The region picker on a desktop with the page over the whole screen.
struct RegionPicker : testing::Test {
    VirtualDesktop desktop{VirtualDesktop::Tray::absent};
    QString path = desktop.home() + u"/picture.png"_s;
    QProcess picker;

    RegionPicker() {
        const QString file = desktop.home() + u"/page.png"_s;
        page().save(file);
        desktop.run(u"display"_s, {u"-window"_s, u"root"_s, file});
    }
    ~RegionPicker() override {
        picker.kill();
        picker.waitForFinished();
    }

    void start(const QString& output, const QStringList& settings = {}) {
        QProcessEnvironment environment = desktop.environment();
        for (const QString& setting : settings)
            environment.insert(setting.section(u'=', 0, 0), setting.section(u'=', 1));
        picker.setProcessEnvironment(environment);
        picker.start(QStringLiteral(TRALIO_SNIP), {u"-i"_s, output});
    }
    /// Starts the picker and waits until it is on the screen.
    void open(const QStringList& settings = {}) {
        start(path, settings);
        ASSERT_TRUE(waitUntil([this] { return desktop.isVisible(u"tralio-snip"_s); }));
    }
    /// Waits for its end. Returns the exit status.
    int finish() {
        if (!waitUntil([this] { return picker.state() == QProcess::NotRunning; }, 5))
            return -1;
        return picker.exitStatus() == QProcess::NormalExit ? picker.exitCode() : -1;
    }
    /// Drags from one pixel to another. Returns the part of the page that the file then shows.
    QRect taken(const QPoint& from, const QPoint& to) {
        desktop.drag(from, to);
        EXPECT_EQ(finish(), 0);
        const QImage picture(path);
        QFile::remove(path);
        ratio = picture.text(u"DevicePixelRatio"_s);
        return partOfPage(picture);
    }
    [[nodiscard]] bool hasFile() const { return QFileInfo::exists(path); }

    QString ratio;  ///< of the last picture
};

TEST_F(RegionPicker, takes_exactly_the_pixels_that_were_drawn_over_at_every_scale) {
    for (const QString& scale : {u"1"_s, u"1.5"_s, u"2"_s}) {
        open({u"QT_SCALE_FACTOR="_s + scale});
        EXPECT_EQ(taken({101, 203}, {700, 502}), QRect(101, 203, 600, 300)) << scale.toStdString();
        EXPECT_EQ(ratio, scale);
    }
    open();
    desktop.start(u"xterm"_s, {u"-geometry"_s, u"80x40+0+0"_s});
    ASSERT_TRUE(waitUntil([&] { return desktop.isVisible(u"xterm"_s); }));
    EXPECT_EQ(taken({1279, 1023}, {0, 0}), QRect(QPoint(), screenSize)) << "as it was when it opened";
    desktop.xdotool(u"search --class xterm windowkill"_s);
    ASSERT_TRUE(waitUntil([&] { return !desktop.isVisible(u"xterm"_s); }));

    // Two monitors of different scale.
    desktop.run(u"xrandr"_s, {u"--setmonitor"_s, u"left"_s, u"640/170x1024/270+0+0"_s, u"screen"_s});
    desktop.run(u"xrandr"_s, {u"--setmonitor"_s, u"right"_s, u"640/170x1024/270+640+0"_s, u"none"_s});
    for (const auto& [left, expected] :
        {std::pair(100, u"1"_s), {700, u"2"_s}, {600, u"2"_s}, {400, u"1"_s}}) {
        open({u"QT_SCREEN_SCALE_FACTORS=left=1;right=2"_s});
        const QRect drawn(left, 100, 300, 200);
        EXPECT_EQ(taken(drawn.topLeft(), drawn.bottomRight()), drawn);
        EXPECT_EQ(ratio, expected) << left;
    }
}

TEST_F(RegionPicker, misses_no_button_that_is_released_right_after_a_motion) {
    for (int time = 0; time < 60; ++time) {
        const QRect drawn(20 + time, 30, 400, 300 - time);
        open();
        ASSERT_EQ(taken(drawn.topLeft(), drawn.bottomRight()), drawn);
    }
}

TEST_F(RegionPicker, shows_the_rectangle_bright_its_size_beside_it_and_the_rest_dimmed_panels_too) {
    const QString panel = desktop.write(u"panel"_s,
        u"rounded = 0\nbackground_color = #ffffff 100\n"
        "panel_background_id = 1\npanel_items = C\n"_s);
    desktop.start(u"tint2"_s, {u"-c"_s, panel});
    QImage before;
    ASSERT_TRUE(waitUntil([&] {
        before = desktop.screenshot();
        return before.pixel(100, screenSize.height() - 4) == qRgb(255, 255, 255);
    }));

    open();
    desktop.xdotool(u"mousemove 200 200 mousedown 1 mousemove 300 300 mousemove 599 399"_s);
    const QRect drawn(200, 200, 400, 200);
    const QRect inner = drawn.adjusted(20, 20, -20, -20);  // without the handles
    QImage shown;
    const auto isDim = [&](const QPoint& place) {
        return qGray(shown.pixel(place)) <= qGray(before.pixel(place)) * 2 / 3 + 8;
    };
    const auto isDimmedAroundIt = [&] {
        for (int x = 0; x < screenSize.width(); ++x)
            for (const int y : {3, 170, 470, screenSize.height() - 4})  // the last one is within the panel
                if (!isDim({x, y}))
                    return false;
        return isDim({170, 300}) && isDim({730, 300});
    };
    // The hint takes a moment to fade.
    EXPECT_TRUE(waitUntil([&] {
        shown = desktop.screenshot();
        return partOfPage(shown.copy(inner)) == inner && isDimmedAroundIt();
    }));
    EXPECT_GT(qGray(shown.pixel(199, 250)), 200);  // the edge of the rectangle

    const QImage label = shown.copy(QRect(616, 416, 48, 14));
    int bright = 0;
    for (int y = 0; y < label.height(); ++y)
        for (int x = 0; x < label.width(); ++x)
            bright += qGray(label.pixel(x, y)) > 160;
    EXPECT_GT(bright, 50);
    desktop.xdotool(u"mouseup 1"_s);
    EXPECT_EQ(finish(), 0);
}

TEST_F(RegionPicker, leaves_no_file_when_cancelled) {
    const QStringList ways{u"key Escape"_s, u"mousemove 300 300 click 3"_s, u"mousemove 300 300 click 1"_s,
        u"mousemove 300 300 mousedown 1 mousemove 302 303 mouseup 1"_s,
        u"mousemove 300 300 mousedown 1 mousemove 500 500 key Escape mouseup 1"_s,
        u"mousemove 300 300 mousedown 1 mousemove 500 500 click 3 mouseup 1"_s,
        u"key Down key Down key Escape"_s};
    for (const QString& way : ways) {
        open();
        desktop.xdotool(way);
        EXPECT_EQ(finish(), 0) << way.toStdString();
        EXPECT_FALSE(hasFile()) << way.toStdString();
    }
}

TEST_F(RegionPicker, is_served_by_the_keyboard_alone_and_keeps_the_keys_to_itself) {
    desktop.startInFront(u"xterm"_s, u"xterm"_s, {u"-geometry"_s, u"20x5+900+700"_s});
    desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"50"_s});
    desktop.xdotool(u"mousemove 400 300 keydown Return"_s);
    open();
    desktop.xdotool(u"keyup Return"_s);  // the hot key's, which repeated
    desktop.run(u"xset"_s, {u"r"_s, u"rate"_s});
    desktop.type(u"touch typed\n"_s);  // the final Return places the rectangle
    desktop.xdotool(u"key Left key ctrl+Up key shift+Right key ctrl+shift+Down key Return"_s);
    ASSERT_EQ(finish(), 0);
    const QRect part = partOfPage(QImage(path));
    EXPECT_EQ(part.size(), QSize(361, 130));
    EXPECT_TRUE(part.contains(400, 300));
    desktop.type(u"touch after\n"_s);  // the terminal gets the keys again
    EXPECT_TRUE(waitUntil([&] { return QFileInfo::exists(desktop.home() + u"/after"_s); }));
    EXPECT_FALSE(QFileInfo::exists(desktop.home() + u"/typed"_s));
}

TEST_F(RegionPicker, waits_a_little_for_a_program_that_holds_the_input) {
    // A second picker keeps the input.
    open();
    QProcess second;
    second.setProcessEnvironment(desktop.environment());
    const Stopwatch waiting;
    second.start(QStringLiteral(TRALIO_SNIP), {u"-i"_s, path + u"2"_s});
    ASSERT_TRUE(second.waitForFinished(5000));
    EXPECT_GT(waiting.elapsed(), 900);
    EXPECT_NE(second.exitCode(), 0);
    EXPECT_TRUE(second.readAllStandardError().contains("another program"));

    second.start(QStringLiteral(TRALIO_SNIP), {u"-i"_s, path});
    ASSERT_TRUE(second.waitForStarted());
    desktop.press(u"Escape"_s);
    EXPECT_EQ(finish(), 0);
    ASSERT_TRUE(waitUntil([&] { return desktop.isVisible(u"tralio-snip"_s); }));
    desktop.drag({10, 10}, {109, 59});
    ASSERT_TRUE(second.waitForFinished(5000));
    EXPECT_EQ(partOfPage(QImage(path)), QRect(10, 10, 100, 50));
}

TEST_F(RegionPicker, says_what_is_wrong_before_the_user_draws) {
    const std::pair<QString, QStringList> cases[] = {{desktop.home() + u"/none/picture.png"_s, {}},
        {desktop.home(), {}}, {path, {u"DISPLAY=:4711"_s}}, {path, {u"XDG_SESSION_TYPE=wayland"_s}}};
    for (const auto& [output, settings] : cases) {
        start(output, settings);
        EXPECT_GT(finish(), 0);
        const QByteArray said = picker.readAllStandardError();
        EXPECT_TRUE(said.startsWith("tralio-snip: ")) << said.constData();
        EXPECT_EQ(said.count('\n'), 1) << said.constData();
        EXPECT_FALSE(hasFile());
    }
}

}  // namespace
}  // namespace tralio
