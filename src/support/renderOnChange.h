#pragma once

#include "ObservableObject.h"

#include <functional>
#include <memory>
#include <utility>

/// Calls `render` on the next turn of the loop after a change of `model`, once for any number of changes, as
/// long as both live. `view` is what `render` belongs to. Main thread.
inline void renderOnChange(const ObservableObject &model, QObject &view, std::function<void()> render)
{
    const auto isDirty = std::make_shared<bool>(false);
    QObject::connect(
        &model, &ObservableObject::objectWillChange, &view, [&view, isDirty, render = std::move(render)] {
            if (std::exchange(*isDirty, true)) {
                return;
            }
            QMetaObject::invokeMethod(
                &view,
                [isDirty, render] {
                    *isDirty = false;
                    render();
                },
                Qt::QueuedConnection);
        });
}
