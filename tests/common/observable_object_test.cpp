#include "common/observable_object.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

class Counter final : public ObservableObject {
public:
    Observable<QString> name{*this, u"one"_s};
    Observable<int> number{*this};
};

TEST(ObservableTest, observers_are_told_once_per_assignment_and_before_it) {
    Counter counter;
    QStringList seen;
    QObject::connect(&counter, &ObservableObject::objectWillChange, &counter,
        [&] { seen += u"%1 %2"_s.arg(counter.name()).arg(counter.number()); });
    counter.name = u"two"_s;
    counter.number = 2;
    counter.number = 2;  // equal, and announced all the same
    EXPECT_EQ(seen, QStringList({u"one 0"_s, u"two 0"_s, u"two 2"_s}));
    EXPECT_EQ(counter.name(), u"two"_s);
}

}  // namespace
}  // namespace tralio
