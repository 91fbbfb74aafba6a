#include "platform/linux/tray/status_notifier_item.h"
#include "platform/linux/tray/tray_menu.h"
#include "platform/scripted_tray.h"
#include "support/private_bus.h"

namespace tralio {
namespace {

/// A tray that asks for the menu of an item, over a bus.
struct TrayMenuTest : testing::Test {
    TrayMenuTest() {
        QObject::connect(
            &menu, &TrayMenu::chosen, &menu, [this](int index) { chosen += index; });
    }

    QDBusMessage call(const QString& method, const QVariantList& arguments) const {
        auto question = QDBusMessage::createMethodCall(
            item.baseService(), TrayMenu::path().path(), u"com.canonical.dbusmenu"_s, method);
        question.setArguments(arguments);
        const QDBusPendingCall asked = tray.asyncCall(question);
        EXPECT_TRUE(eventually([&] { return asked.isFinished(); }));
        return asked.reply();
    }
    TrayMenuLayout layout(int parent, int depth, const QStringList& names) const {
        const QDBusMessage answer = call(u"GetLayout"_s, {parent, depth, names});
        EXPECT_EQ(answer.signature(), u"u(ia{sv}av)"_s);
        return qdbus_cast<TrayMenuLayout>(answer.arguments().value(1));
    }
    static QVariantMap entry(const QVariant& child) { return qdbus_cast<TrayMenuLayout>(child).properties; }

    PrivateBus bus;
    QDBusConnection item = bus.connect();
    QDBusConnection tray = bus.connect();
    TrayMenu menu{{u"Mở_Tralio"_s, QString(), u"Thoát"_s}, item};
    QList<int> chosen;
};

TEST_F(TrayMenuTest, tells_its_entries_in_order_and_as_much_of_them_as_is_asked_for) {
    const TrayMenuLayout whole = layout(0, -1, {});
    EXPECT_EQ(whole.properties.value(u"children-display"_s), u"submenu"_s);
    ASSERT_EQ(whole.children.size(), 3);
    EXPECT_EQ(entry(whole.children[0]).value(u"label"_s), u"Mở__Tralio"_s)
        << "one line would be a mnemonic's";
    EXPECT_EQ(entry(whole.children[1]).value(u"type"_s), u"separator"_s);
    EXPECT_TRUE(layout(0, 0, {}).children.isEmpty());
    EXPECT_TRUE(entry(layout(0, 1, {u"enabled"_s}).children[0]).isEmpty());
    EXPECT_EQ(layout(3, -1, {}).properties.value(u"label"_s), u"Thoát"_s);

    const QDBusMessage group =
        call(u"GetGroupProperties"_s, {QVariant::fromValue(QList<int>{3, 99}), QStringList{u"label"_s}});
    EXPECT_EQ(group.signature(), u"a(ia{sv})"_s);
    const auto items = qdbus_cast<TrayMenuItems>(group.arguments().value(0));
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].id, 3);
    EXPECT_EQ(call(u"GetProperty"_s, {3, u"label"_s}).arguments().value(0).value<QDBusVariant>().variant(),
        u"Thoát"_s);
    EXPECT_EQ(call(u"AboutToShow"_s, {0}).arguments(), QVariantList{false});
}

TEST_F(TrayMenuTest, a_click_chooses_and_nothing_else_does) {
    const auto tell = [this](int id, const QString& event) {
        return call(u"Event"_s, {id, event, QVariant::fromValue(QDBusVariant(0)), 0U}).type();
    };
    EXPECT_EQ(tell(0, u"opened"_s), QDBusMessage::ReplyMessage);
    EXPECT_EQ(tell(3, u"hovered"_s), QDBusMessage::ReplyMessage);
    for (const int entry : {2, 0, 3})  // the line, the menu itself, and one that is an entry
        EXPECT_EQ(tell(entry, u"clicked"_s), QDBusMessage::ReplyMessage) << entry;
    for (const int nothing : {4, -1})
        EXPECT_EQ(tell(nothing, u"clicked"_s), QDBusMessage::ErrorMessage) << nothing;
    EXPECT_TRUE(eventually([this] { return !chosen.isEmpty(); }));

    const TrayMenuEvents events{{1, u"clicked"_s, QDBusVariant(0), 0}, {7, u"clicked"_s, QDBusVariant(0), 0}};
    EXPECT_EQ(
        qdbus_cast<QList<int>>(call(u"EventGroup"_s, {QVariant::fromValue(events)}).arguments().value(0)),
        QList{7});
    EXPECT_TRUE(eventually([this] { return chosen.size() == 2; }));
    EXPECT_THAT(chosen, ElementsAre(2, 0));
    for (const auto& [method, arguments] : {std::pair(u"GetLayout"_s, QVariantList{9, -1, QStringList()}),
             std::pair(u"GetProperty"_s, QVariantList{2, u"label"_s}),
             std::pair(u"AboutToShow"_s, QVariantList{9})})
        EXPECT_EQ(call(method, arguments).type(), QDBusMessage::ErrorMessage) << qPrintable(method);
}

TEST(StatusNotifierItem, a_late_answer_to_an_earlier_question_changes_nothing) {
    PrivateBus bus;
    ScriptedTray tray(bus.connect());
    tray.isPrompt = false;
    StatusNotifierItem item(u"Tralio"_s, QIcon(), bus.connect());
    std::optional<bool> present;
    QObject::connect(
        &item, &StatusNotifierItem::trayChanged, &item, [&](bool there) { present = there; });

    ASSERT_TRUE(eventually([&] { return tray.questions.size() == 1; }));
    tray.announceHost();
    ASSERT_TRUE(eventually([&] { return tray.questions.size() == 2; }));
    tray.answer(tray.questions.last(), true);
    ASSERT_TRUE(eventually([&] { return present == true; }));
    tray.answer(tray.questions.first(), false);
    tray.announceHost();
    ASSERT_TRUE(eventually([&] { return tray.questions.size() == 3; }));
    EXPECT_EQ(present, true) << "the answer before it has been heard by now";
}

}  // namespace
}  // namespace tralio
