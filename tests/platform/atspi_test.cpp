#include <atomic>

#include "common/text_limit.h"
#include "platform/linux/atspi/atspi_search.h"
#include "platform/scripted_bus_object.h"
#include "support/private_bus.h"

namespace tralio {
namespace {

/// Accessible objects written down as data, which answer on a bus from a thread of their own, as another
/// program would. They are also the list of applications of that bus.
struct ScriptedAccessibles final : ScriptedBusObject {
    struct Object {
        AtspiRole role = AtspiRole::panel;
        QList<AtspiState> states{};
        QStringList children{};  ///< paths
        QString parent{};
        /// Absent where the object knows of no text.
        std::optional<QList<std::pair<int, int>>> selections{};
        QString text{};
        bool keepsItsText = false;  ///< answers no question for it
        QString keyBinding{};
        QString toolkit{};
        QVariant rubbish{};  ///< which it answers where a list is asked for
    };

    /// The list of applications holds the one at `/application`.
    ScriptedAccessibles(QDBusConnection bus, QHash<QString, Object> objects)
        : ScriptedBusObject(std::move(bus), u"org.a11y.atspi.Registry"_s, u"/"_s),
          m_objects(std::move(objects)) {
        m_objects[AtspiBus::desktop().path.path()].children = {u"/application"_s};
        qDBusRegisterMetaType<AtspiReference>();
        qDBusRegisterMetaType<QList<AtspiReference>>();
        qDBusRegisterMetaType<QList<uint>>();
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~ScriptedAccessibles() override {
        m_thread.quit();
        m_thread.wait();
    }

    [[nodiscard]] AtspiReference at(const QString& path) const { return {address(), QDBusObjectPath(path)}; }

    std::atomic<int> presses = 0;    ///< of all objects
    std::atomic<int> askedText = 0;  ///< the characters that were asked for in all

private:
    void take(const QDBusMessage& call) override {
        const auto object = m_objects.constFind(call.path());
        const QString asked = call.member() == u"Get" ? call.arguments().value(1).toString() : call.member();
        const auto answers =
            object == m_objects.cend() ? QHash<QString, QVariantList>() : answersOf(*object, call);
        const auto found = answers.constFind(asked);
        presses += found != answers.cend() && asked == u"DoAction";
        if (asked == u"GetText")
            askedText += call.arguments().value(1).toInt() - call.arguments().value(0).toInt();
        send(found != answers.cend() ? call.createReply(*found)
                                     : call.createErrorReply(QDBusError::UnknownMethod, u"not known"_s));
    }
    [[nodiscard]] QHash<QString, QVariantList> answersOf(const Object& object, const QDBusMessage& call) {
        const auto number = [&call](int which) { return call.arguments().value(which).toInt(); };
        uint bits = 0;
        for (const AtspiState state : object.states)
            bits |= 1U << static_cast<uint>(state);
        QList<AtspiReference> children;
        for (const QString& path : object.children)
            children += at(path);
        const auto unlessRubbish = [&object](const QVariant& list) {
            return QVariantList{object.rubbish.isValid() ? object.rubbish : list};
        };
        QHash<QString, QVariantList> answers{{u"Name"_s, {variant(QString())}},
            {u"ToolkitName"_s, {variant(object.toolkit)}}, {u"GetRole"_s, {static_cast<uint>(object.role)}},
            {u"GetState"_s, unlessRubbish(QVariant::fromValue(QList<uint>{bits, 0}))},
            {u"GetChildren"_s, unlessRubbish(QVariant::fromValue(children))}, {u"DoAction"_s, {true}}};
        if (object.selections) {
            const auto range = object.selections->value(number(0));
            answers[u"GetNSelections"_s] = {static_cast<int>(object.selections->size())};
            answers[u"GetSelection"_s] = {range.first, range.second};
        }
        if (!object.parent.isEmpty())
            answers[u"Parent"_s] = {variant(QVariant::fromValue(at(object.parent)))};
        if (!object.keepsItsText)
            answers[u"GetText"_s] = {object.text.mid(number(0), number(1) - number(0))};
        if (!object.keyBinding.isNull())
            answers[u"GetKeyBinding"_s] = {object.keyBinding};
        return answers;
    }

    QHash<QString, Object> m_objects;
    QThread m_thread;
};

using Objects = QHash<QString, ScriptedAccessibles::Object>;
using Ranges = QList<std::pair<int, int>>;

struct GivenPrimary final : PrimarySelection {
    std::optional<PrimaryText> textOf(qint32 /*processId*/, QDeadlineTimer /*deadline*/) override {
        return mark;
    }

    std::optional<PrimaryText> mark;
};

/// An application that answers by the accessibility bus.
struct Atspi : testing::Test {
    void script(const Objects& objects) {
        application.emplace(daemon.connect(), objects);
        bus.connectTo(daemon.address());
        ASSERT_TRUE(bus.isOpen());
    }
    [[nodiscard]] std::shared_ptr<const AtspiContext> context() {
        const auto pid = static_cast<qint32>(QCoreApplication::applicationPid());
        return std::make_shared<AtspiContext>(AtspiContext{{bus, TimeBudget(5000)}, primary, pid, QString()});
    }
    [[nodiscard]] AtspiElement element(const QString& path) { return {application->at(path), context()}; }

    PrivateBus daemon;
    std::optional<ScriptedAccessibles> application;
    AtspiBus bus;
    GivenPrimary primary;
};

TEST_F(Atspi, a_list_of_another_type_is_none) {
    const QVariant rubbish[] = {7U, u"text"_s, QVariant::fromValue(QList<int>{1}), QStringList{u"a"_s},
        QVariant::fromValue(AtspiReference{u":1.1"_s, QDBusObjectPath(u"/a"_s)}),
        QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(u"/a"_s)}),
        QVariant::fromValue(QDBusVariant(7))};
    for (const QVariant& each : rubbish) {
        script({{u"/object"_s, {.rubbish = each}}});
        const AtspiReference object = application->at(u"/object"_s);
        EXPECT_THAT(childrenOf(object, *context()), IsEmpty()) << each.typeName();
        EXPECT_FALSE(statesOf(object, *context()).contains(AtspiState::active)) << each.typeName();
    }
}

TEST_F(Atspi, a_menu_item_tells_its_shortcut_in_either_toolkits_words_and_presses_unless_greyed) {
    const std::tuple<QString, AtspiState, std::optional<QString>, bool> cases[] = {
        {u"c;<Alt>e:c;<Primary><Control>c"_s, AtspiState::enabled, u"c"_s, true},
        {u"Ctrl+C"_s, AtspiState::sensitive, u"C"_s, true},
        {u"c;<Alt>i:c;<Control><Alt>c"_s, AtspiState::enabled, std::nullopt, true},
        {u"Ctrl+Shift+C"_s, AtspiState::enabled, std::nullopt, true},
        {u"c"_s, AtspiState::showing, std::nullopt, false},  // greyed
        {QString(), AtspiState::enabled, std::nullopt, true},
    };
    for (const auto& [binding, state, character, presses] : cases) {
        script({{u"/item"_s, {.role = AtspiRole::menuItem, .states = {state}, .keyBinding = binding}}});
        EXPECT_EQ(element(u"/item"_s).commandCharacter(), character) << binding.toStdString();
        EXPECT_EQ(element(u"/item"_s).press(), presses) << binding.toStdString();
        EXPECT_EQ(application->presses, presses ? 1 : 0) << binding.toStdString();
    }
}

TEST_F(Atspi, an_element_that_counts_its_selections_is_believed_before_an_older_primary) {
    const auto text = [](AtspiRole role, const std::optional<Ranges>& selections) {
        return ScriptedAccessibles::Object{.role = role,
            .children = {u"/first"_s, u"/second"_s},
            .parent = u"/page"_s,
            .selections = selections,
            .text = u"one two three"_s};
    };
    script({{u"/entry"_s, text(AtspiRole::entry, Ranges{{4, 7}})},
        {u"/backwards"_s, text(AtspiRole::text, Ranges{{7, 4}, {3, 3}, {8, 13}})},
        {u"/empty"_s, text(AtspiRole::entry, Ranges())}, {u"/page"_s, text(AtspiRole::panel, Ranges())},
        {u"/password"_s, text(AtspiRole::passwordText, Ranges{{0, 3}})},
        {u"/button"_s, text(AtspiRole::panel, std::nullopt)},
        {u"/first"_s, text(AtspiRole::paragraph, Ranges{{4, 7}})},
        {u"/second"_s, text(AtspiRole::paragraph, Ranges())}, {u"/alone"_s, {.children = {u"/lone"_s}}},
        {u"/silent"_s, {.role = AtspiRole::entry, .selections = Ranges{{4, 7}}, .keepsItsText = true}},
        {u"/lone"_s, {.role = AtspiRole::heading, .parent = u"/alone"_s, .selections = Ranges()}}});
    primary.mark = PrimaryText{u"zero one two"_s};
    const std::tuple<QString, std::optional<QString>, std::optional<QString>> cases[] = {
        {u"/entry"_s, u"two"_s, std::nullopt}, {u"/backwards"_s, u"two\nthree"_s, std::nullopt},
        {u"/empty"_s, std::nullopt, std::nullopt}, {u"/page"_s, std::nullopt, std::nullopt},
        {u"/button"_s, std::nullopt, u"zero one two"_s}, {u"/first"_s, u"zero one two"_s, std::nullopt},
        {u"/second"_s, std::nullopt, u"zero one two"_s},  // the one beside it is marked
        {u"/lone"_s, std::nullopt, std::nullopt}, {u"/gone"_s, std::nullopt, u"zero one two"_s},
        {u"/silent"_s, std::nullopt, u"zero one two"_s},  // counts one, and fails to tell it
    };
    for (const auto& [path, own, beside] : cases) {
        AtspiElement asked = element(path);
        EXPECT_EQ(asked.selectedText(), own) << path.toStdString();
        EXPECT_EQ(asked.selectedDocumentText(), beside) << path.toStdString();
        EXPECT_FALSE(asked.holdsPassword()) << path.toStdString();
    }
    EXPECT_TRUE(element(u"/password"_s).holdsPassword());
}

TEST_F(Atspi, no_more_of_a_long_selection_is_asked_for_than_is_taken) {
    const int most = static_cast<int>(longestText);
    const Ranges cases[] = {{{0, most + 9}}, {{9, most - 1}, {0, most}}, {{5, most}, {0, 5}, {1, 2}}};
    for (const Ranges& ranges : cases) {
        script({{u"/entry"_s,
            {.role = AtspiRole::entry, .selections = ranges, .text = QString(most + 9, u'a')}}});
        EXPECT_TRUE(isTooLong(element(u"/entry"_s).selectedText().value_or(QString())));
        EXPECT_EQ(application->askedText, most);
    }
}

TEST_F(Atspi, an_application_that_dies_in_the_middle_has_nothing_selected_at_once) {
    script({{u"/entry"_s, {.role = AtspiRole::entry, .selections = Ranges{{0, 3}}, .text = u"one"_s}},
        {u"/copy"_s, {.states = {AtspiState::enabled}}}});
    AtspiElement counted = element(u"/entry"_s);
    AtspiElement copy = element(u"/copy"_s);
    EXPECT_FALSE(counted.holdsPassword());
    application.reset();
    const Stopwatch time;
    EXPECT_EQ(counted.selectedText(), std::nullopt);
    EXPECT_FALSE(counted.hasNoSelection()) << "it has not said so";
    EXPECT_FALSE(copy.press());
    EXPECT_LT(time.elapsed(), 1000);
}

TEST_F(Atspi, an_element_says_whether_it_is_a_terminal_where_its_toolkit_knows_of_terminals) {
    const auto answer = [this](AtspiRole role, const QString& toolkit) {
        script({{AtspiBus::desktop().path.path(), {.toolkit = toolkit}}, {u"/focus"_s, {.role = role}}});
        return isTerminal(application->at(u"/focus"_s), *context());
    };
    EXPECT_EQ(answer(AtspiRole::terminal, u"gtk"_s), true);
    EXPECT_EQ(answer(AtspiRole::text, u"GTK"_s), false);
    EXPECT_EQ(answer(AtspiRole::paragraph, u"Qt"_s), false);
    EXPECT_EQ(answer(AtspiRole::panel, u"gtk"_s), std::nullopt) << "which may be drawn as one";
    EXPECT_EQ(answer(AtspiRole::entry, u"Chromium"_s), std::nullopt) << "which types into one";
}

TEST_F(Atspi, the_focus_is_searched_in_the_active_window_among_what_shows) {
    using State = AtspiState;
    const auto focused = [](const QList<State>& more) {
        return ScriptedAccessibles::Object{.states = QList<State>{State::focused} + more};
    };
    script({{u"/application"_s, {.children = {u"/other"_s, u"/window"_s}}},
        {u"/other"_s, {.children = {u"/elsewhere"_s}}}, {u"/elsewhere"_s, focused({State::focusable})},
        {u"/window"_s, {.states = {State::active}, .children = {u"/tab"_s, u"/hidden"_s, u"/shown"_s}}},
        {u"/tab"_s, focused({})}, {u"/hidden"_s, {.children = {u"/below"_s}}},
        {u"/below"_s, focused({State::focusable})},
        {u"/shown"_s, {.states = {State::showing}, .children = {u"/field"_s}}},
        {u"/field"_s, focused({State::focusable})}});
    EXPECT_EQ(searchFocus(*context()), application->at(u"/field"_s));
    // Remembered, it need not be searched.
    bus.rememberFocus(application->at(u"/below"_s));
    EXPECT_EQ(searchFocus(*context()), application->at(u"/below"_s));
}

}  // namespace
}  // namespace tralio
