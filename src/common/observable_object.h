#pragma once

#include <QObject>

#include <utility>

namespace tralio {

/// An object that notifies its observers before any of its observable members changes. They are not told
/// which one: they re-read what they need on the next turn of the event loop.
class ObservableObject : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void objectWillChange();
};

/// An observable member of an `ObservableObject`: `object.member()` reads, `object.member = value` announces
/// the change and then assigns. Every assignment is announced, even of an equal value.
template <typename T>
class Observable {
public:
    explicit Observable(ObservableObject& owner, T initial = {})
        : m_owner(owner), m_value(std::move(initial)) {}
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    [[nodiscard]] const T& operator()() const { return m_value; }

    Observable& operator=(T value) {
        Q_EMIT m_owner.objectWillChange();
        m_value = std::move(value);
        return *this;
    }

private:
    ObservableObject& m_owner;
    T m_value;
};

}  // namespace tralio
