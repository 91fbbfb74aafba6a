#pragma once

#include <QtCore>

#include <algorithm>
#include <chrono>
#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "support/event_loop.h"
#include "support/files.h"

// What every test includes: GoogleTest, Qt Core, the everyday parts of the standard library and of this
// folder, which no test includes again one by one, the matchers and literals in use all over, and how
// GoogleTest shows Qt's texts when an expectation fails: readable, not as lists of code units. It looks for
// these beside the types, in the global namespace.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toStdString() << '"';
}

namespace tralio {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Runs from the beginning of its life.
struct Stopwatch : QElapsedTimer {
    Stopwatch() { start(); }
};

}  // namespace tralio
