#pragma once

#include "Sheet.h"

#include <QString>

#include <functional>

/// What the gallery's sheets say, and what their answers do.
namespace gallerySheets {

/// That something lies on the clipboard now. `message` holds file names as they are.
[[nodiscard]] SheetDescription copied(const QString &message, std::function<void()> onDismissed);

/// Whether that many screenshots are to go to the Trash.
[[nodiscard]] SheetDescription
deletion(qsizetype count, const std::function<void(bool isConfirmed)> &onAnswer);

} // namespace gallerySheets
