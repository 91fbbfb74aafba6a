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

// Included by every test instead of single headers: GoogleTest, Qt Core, common parts of the standard library
// and of this folder, and common matchers and literals. Also prints Qt's strings in failed expectations as
// text and not as lists of code units; GoogleTest finds these functions beside the types, in the global
// namespace.

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
