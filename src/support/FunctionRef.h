#pragma once

#include <memory>
#include <type_traits>
#include <utility>

template <typename Signature> class FunctionRef;

/// A callable as a parameter, called while the function that got it runs and never kept beyond: two
/// pointers, no allocation, no copy of what the callable captured.
template <typename Return, typename... Arguments> class FunctionRef<Return(Arguments...)> final {
public:
    template <typename Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef> &&
                 std::is_invocable_r_v<Return, Callable &, Arguments...>)
    // Implicit, so that a call reads as if the callable itself were the parameter.
    FunctionRef(
        Callable &&callable) // NOLINT(bugprone-forwarding-reference-overload,google-explicit-constructor)
        : m_callable(const_cast<void *>(static_cast<const void *>(std::addressof(callable)))),
          m_call([](void *object, Arguments... arguments) -> Return {
              return (*static_cast<std::remove_reference_t<Callable> *>(object))(
                  std::forward<Arguments>(arguments)...);
          })
    {
    }

    Return operator()(Arguments... arguments) const
    {
        return m_call(m_callable, std::forward<Arguments>(arguments)...);
    }

private:
    void *m_callable;
    Return (*m_call)(void *, Arguments...);
};
