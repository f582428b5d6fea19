#pragma once

#include "Error.h"

#include <QUrl>

#include <functional>

/// Lets the programs that are still writing a file finish before it is taken away from them.
///
/// A value without state, made where it is used. It blocks its thread while it waits, up to two seconds:
/// never on the main thread.
class FileCoordinator final {
public:
    /// Calls `accessor` with the item's URL, once and on this thread, as soon as nobody writes to the item,
    /// and returns what it returned. Without a call: Cocoa error 4 if there is no item, 516 if a writer
    /// still holds it after two seconds.
    [[nodiscard]] Result<void> coordinateWritingForDeleting(
        const QUrl &url, const std::function<Result<void>(const QUrl &)> &accessor) const;
};
