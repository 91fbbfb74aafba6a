#include <QLocale>
#include <QSignalSpy>
#include <QTimeZone>

#include <ctime>

#include "history_panel_support.h"

namespace tralio {
namespace {

using HistoryStateTest = HistoryPanel;

/// Moves the desktop to another time zone, for as long as it lives.
class TimeZone final {
public:
    explicit TimeZone(const char* name) : m_before(qgetenv("TZ")) { set(name); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { set(m_before); }

private:
    static void set(const QByteArray& name) {
        name.isNull() ? qunsetenv("TZ") : qputenv("TZ", name);
        tzset();
    }
    QByteArray m_before;
};

TEST_F(HistoryStateTest, the_entry_copied_last_is_marked_for_a_second_and_a_half) {
    const TranslationItem first = add(u"one"_s);
    const TranslationItem second = add(u"two"_s);
    panel->copyToClipboard(first);
    EXPECT_EQ(desktop.pasteboard.content, u"ONE"_s);
    EXPECT_EQ(panel->copiedId(), first.id);
    desktop.clock.advance(1s);
    QSignalSpy changes(panel.get(), &ObservableObject::objectWillChange);
    panel->copyToClipboard(second);
    EXPECT_EQ(panel->copiedId(), second.id);
    desktop.clock.advance(1499ms);
    EXPECT_EQ(panel->copiedId(), second.id) << "taken away with the mark of the first";
    desktop.clock.advance(1ms);
    EXPECT_EQ(panel->copiedId(), std::nullopt);
    EXPECT_EQ(changes.size(), 2);

    panel->copyToClipboard(first);
    panel.reset();
    desktop.clock.advance(2s);  // the panel has gone with its mark
}

TEST_F(HistoryStateTest, a_time_shows_its_day_unless_that_is_today_where_the_user_is) {
    const QLocale before;
    QLocale::setDefault(QLocale::c());
    const TimeZone hanoi("Asia/Ho_Chi_Minh");
    const auto utc = [](const QDate& day, const QTime& time) {
        return QDateTime(day, time, QTimeZone::utc());
    };
    now = utc({2026, 11, 24}, {18, 0});  // one o'clock of the 25th
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 24}, {17, 0, 0})), u"00:00"_s);
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 25}, {16, 59, 59})), u"23:59"_s);
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 24}, {16, 59, 59})), u"24/11 23:59"_s);
    EXPECT_EQ(panel->formatDate(utc({2025, 12, 31}, {16, 59})), u"31/12 23:59"_s);
    EXPECT_EQ(panel->formatDate(utc({2025, 11, 25}, {2, 5})), u"25/11 09:05"_s);
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 25}, {17, 0})), u"26/11 00:00"_s);
    TranslationItem beyondAllTime;
    beyondAllTime.timestamp = 1e300;
    EXPECT_EQ(panel->formatDate(beyondAllTime.date()), QString());

    const TimeZone london("Europe/London");
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 24}, {16, 59})), u"16:59"_s);
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(panel->formatDate(utc({2026, 11, 24}, {16, 59})), u"١٦:٥٩"_s);
    QLocale::setDefault(before);
}

}  // namespace
}  // namespace tralio
