#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>

class QObject;

/// The one way in which anything in the program moves. Where the desktop asks for reduced motion, fades are
/// short and everything else is at its end at once.
namespace Motion {

enum class Kind { Fade, Movement };

/// How the way is spread over the time. A linear one is for callers that have a curve of their own.
enum class Curve { EaseOut, EaseInOut, Linear };

/// Calls `step` with 0 now and then with what grows to 1 over the duration, on the main thread. It ends with
/// 1, or early and silently with `owner`.
void run(
    QObject &owner, std::chrono::milliseconds duration, Kind kind, Curve curve,
    std::function<void(qreal)> step);

/// The same with ease-out, as most things move.
void run(QObject &owner, std::chrono::milliseconds duration, Kind kind, std::function<void(qreal)> step);

/// What the desktop asks for.
[[nodiscard]] bool isReduced();

} // namespace Motion
