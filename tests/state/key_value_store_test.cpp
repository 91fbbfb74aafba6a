#include "state/key_value_store.h"

#include <gtest/gtest.h>

#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(KeyValueStoreTest,
     a_value_of_another_type_reads_as_absent_but_booleans_and_integers_read_as_each_other) {
    const MemoryKeyValueStore store({{u"text"_s, u"1"_s},
                                     {u"true"_s, true},
                                     {u"false"_s, false},
                                     {u"zero"_s, qint64{0}},
                                     {u"number"_s, qint64{-5}},
                                     {u"binary"_s, QByteArray("1")}});
    struct Readings {
        QString key;
        std::optional<QString> text;
        std::optional<bool> boolean;
        std::optional<qint64> integer;
        std::optional<QByteArray> data;
    };
    const Readings cases[] = {
        {u"text"_s, u"1"_s, {}, {}, {}}, {u"true"_s, {}, true, 1, {}},
        {u"false"_s, {}, false, 0, {}},  {u"zero"_s, {}, false, 0, {}},
        {u"number"_s, {}, true, -5, {}}, {u"binary"_s, {}, {}, {}, QByteArray("1")},
        {u"absent"_s, {}, {}, {}, {}},
    };
    for (const Readings& readings : cases) {
        EXPECT_EQ(store.text(readings.key), readings.text) << readings.key.toStdString();
        EXPECT_EQ(store.boolean(readings.key), readings.boolean) << readings.key.toStdString();
        EXPECT_EQ(store.integer(readings.key), readings.integer) << readings.key.toStdString();
        EXPECT_EQ(store.data(readings.key), readings.data) << readings.key.toStdString();
    }
}

}  // namespace
}  // namespace tralio
