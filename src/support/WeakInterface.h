#pragma once

#include <QObject>
#include <QPointer>

#include <concepts>

/// A weak reference to an interface that some QObject implements: empty once that object is gone.
/// Main thread.
template <typename Interface> class WeakInterface final {
public:
    WeakInterface() = default;

    template <typename Object>
        requires std::derived_from<Object, Interface> && std::derived_from<Object, QObject>
    WeakInterface(Object *object) : m_object(object),
                                    m_interface(object)
    {
    }

    [[nodiscard]] Interface *get() const { return m_object ? m_interface : nullptr; }

private:
    QPointer<QObject> m_object;
    Interface *m_interface = nullptr;
};
