#include "platform/linux/desktop/text_scale.h"

#include "support/testing.h"

namespace tralio {
namespace {

/// A login at which the desktop's portal is not there yet, nor an X server.
struct TextScaleTest : testing::Test {
    TextScaleTest() {
        const QByteArray data = QFile::encodeName(folder.path());
        const std::pair<const char*, QByteArray> values[] = {{"XDG_DATA_HOME", data},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + data + "/none"}, {"DISPLAY", {}},
            {"XDG_CURRENT_DESKTOP", "GNOME"}, {"QT_QPA_PLATFORM", {}}};
        for (const auto& [name, value] : values) {
            before.emplace_back(name, qgetenv(name));
            qputenv(name, value);
        }
        QDir().mkpath(folder.filePath(u"tralio"_s));
    }
    ~TextScaleTest() override {
        for (const auto& [name, value] : before)
            qputenv(name, value);
    }
    /// How much everything is enlarged.
    static QByteArray scaleWith(const std::vector<QSize>& compositorScreens) {
        const TextScale scale([&] { return compositorScreens; });
        return qgetenv("QT_SCALE_FACTOR");
    }

    QTemporaryDir folder;
    std::vector<std::pair<const char*, QByteArray>> before;
};

TEST_F(TextScaleTest, is_what_the_portal_told_last_as_far_as_the_window_has_room) {
    EXPECT_EQ(scaleWith({}), QByteArray());
    for (const double told : {1.25, 2.0, 1.5}) {
        TextScale::remember(told);
        EXPECT_EQ(scaleWith({}).toDouble(), told);
    }
    TextScale::remember(1);
    EXPECT_TRUE(QDir(folder.filePath(u"tralio"_s)).isEmpty()) << "another desktop has none";
    TextScale::remember(1.5);
    const std::vector<QSize> small{{1920, 1080}, {640, 480}};
    EXPECT_EQ(scaleWith(small).toDouble(), 1.5) << "an X server tells of its own screens";
    qputenv("QT_QPA_PLATFORM", "wayland;xcb");
    EXPECT_NEAR(scaleWith(small).toDouble(), 480 / 440.0, .01);
    EXPECT_EQ(scaleWith({{640, 360}}), QByteArray()) << "never smaller than it is";
}

}  // namespace
}  // namespace tralio
