#pragma once

#include "Error.h"

#include <QJsonValue>

#include <optional>

/// What Spectacle, Plasma's screenshot tool, keeps in its settings (`spectaclerc`), in this program's words.
/// Any thread.
namespace spectacleSettings {

/// Whether a new screenshot is shown and isn't saved before the user says so: the opposite of Spectacle's
/// `[General] autoSaveImage` (`spectacle.kcfg`; false if it isn't set). None where nobody has set it; a text
/// where it is set to what isn't a boolean. Read afresh, the system's own settings included.
[[nodiscard]] std::optional<QJsonValue> showThumbnail();

/// Changes the user's own file alone. Spectacle looks at it when it is next started. An error where the
/// system's settings forbid it, or as for `writeKConfigBoolean`.
[[nodiscard]] Result<void> setShowThumbnail(bool isShown);

} // namespace spectacleSettings
