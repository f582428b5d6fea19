#pragma once

#include <QObject>

#include <utility>

/// An object whose changes views follow: a view marks itself dirty at `objectWillChange` and reads the
/// object afresh on the next turn of the loop, so many changes cost one rendering. Main thread.
class ObservableObject : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// Sent before a published field takes its new value.
    void objectWillChange();
};

/// A field of an ObservableObject that announces each change before it takes effect.
/// Setting the value that it has already announces nothing.
template <typename T> class Published {
public:
    Published(ObservableObject *owner, T initialValue) : m_owner(owner), m_value(std::move(initialValue)) {}

    [[nodiscard]] const T &get() const { return m_value; }

    void set(T value)
    {
        if (value == m_value) {
            return;
        }
        Q_EMIT m_owner->objectWillChange();
        m_value = std::move(value);
    }

    /// Announces and then lets `change` work on the value in place: for a large value of which little
    /// changes.
    template <typename Change> void modify(Change change)
    {
        Q_EMIT m_owner->objectWillChange();
        change(m_value);
    }

private:
    ObservableObject *m_owner;
    T m_value;
};
