#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// How GoogleTest shows Qt's texts when an expectation fails: readable, not as lists of code units. It looks
// for these beside the types, which stand in the global namespace.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toStdString() << '"';
}
