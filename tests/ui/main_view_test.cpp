#include <QTest>

#include "history/translation_history_store.h"
#include "ui/history/history_row.h"
#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "ui/kit/theme.h"
#include "ui/stage.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QString selectionMissing = u"Chưa cấp quyền Trợ năng"_s;
const QString captureMissing = u"Chưa cấp quyền Chụp màn hình"_s;

/// The whole window, in the hands of a user.
class MainWindow : public testing::Test {
protected:
    MainWindow() { Theme::setAppearance({.reducedMotion = true}); }
    ~MainWindow() override { Theme::setAppearance({}); }

    [[nodiscard]] bool shows(const QString& name) const { return stage.hasControl(name); }
    [[nodiscard]] bool isOnTab(const QString& tab) const {
        const auto found = stage.controls(tab);
        return !found.isEmpty() && found.constFirst()->isChecked();
    }

    Stage stage;
};

TEST_F(MainWindow, the_input_survives_a_change_of_the_tab_and_the_result_does_not) {
    stage.open();
    stage.model.translatesTo(u"kết quả"_s);
    stage.type(u"typed"_s);
    stage.press(Qt::Key_Return);
    stage.wait([this] { return shows(u"Sao chép"_s); });
    stage.click(u"Tác giả"_s);
    stage.click(u"Tralio"_s);
    EXPECT_EQ(stage.find<MultilineEnterInputView>()->toPlainText(), u"typed"_s);
    EXPECT_EQ(stage.find<ReadingArea>()->toPlainText(), QString());
}

TEST_F(MainWindow, only_what_reports_a_missing_permission_leads_to_the_settings) {
    stage.desktop.permissions.accessibility = true;
    stage.desktop.permissions.screenCapture = false;
    stage.open();
    EXPECT_TRUE(shows(captureMissing));
    stage.click(u"Bôi đen: ⌘ ⇧ D"_s);
    EXPECT_TRUE(isOnTab(u"Tralio"_s)) << "a chip that is fine led somewhere";
    for (const QString& trouble : {captureMissing, u"Chụp: ⌘ ⇧ S"_s}) {
        stage.click(trouble);
        EXPECT_TRUE(isOnTab(u"Cài đặt"_s));
        stage.click(u"Tralio"_s);
    }

    stage.desktop.permissions.screenCapture = true;
    stage.desktop.permissions.accessibility = false;
    stage.desktop.clock.advance(1s);
    stage.wait([this] { return shows(selectionMissing); });
    EXPECT_FALSE(shows(captureMissing));
}

TEST_F(MainWindow, an_offer_shows_until_it_is_dismissed_and_the_settings_keep_it) {
    stage.open();
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    stage.updates.updateInfo =
        AppUpdateInfo{u"1.1.0"_s, u"Nhanh hơn"_s, u"https://update.example.com/a.zip"_s, {}};
    stage.updates.isUpdateAvailable = true;
    stage.wait([this] { return shows(u"Cập nhật ngay"_s); });
    stage.click(u"Ẩn thông báo này"_s);
    EXPECT_FALSE(shows(u"Cập nhật ngay"_s));
    EXPECT_FALSE(stage.updates.isUpdateAvailable());
}

TEST_F(MainWindow, a_picked_entry_fills_the_input_without_being_translated) {
    TranslationHistoryStore(stage.store)
        .add(u"hello"_s, u"xin chào"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    stage.open();
    stage.click(u"Lịch sử"_s);
    QTest::mouseClick(stage.find<HistoryRow>(), Qt::LeftButton);
    stage.wait([this] { return isOnTab(u"Tralio"_s); });
    EXPECT_EQ(stage.find<MultilineEnterInputView>()->toPlainText(), u"hello"_s);
    EXPECT_TRUE(stage.model.requests().isEmpty());
}

TEST_F(MainWindow, the_walk_through_lies_over_everything_until_it_is_ended_for_good) {
    stage.store.setValue(u"hasCompletedOnboarding"_s, false);
    stage.open();
    EXPECT_FALSE(shows(u"Cài đặt"_s));
    stage.click(u"Bỏ qua"_s);
    EXPECT_FALSE(shows(u"Bỏ qua"_s));
    EXPECT_TRUE(isOnTab(u"Tralio"_s));
    EXPECT_EQ(stage.store.boolean(u"hasCompletedOnboarding"_s), true);
}

}  // namespace
}  // namespace tralio
