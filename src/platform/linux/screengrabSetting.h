#pragma once

#include <QString>

#include <optional>

/// The folder that the user has set for screengrab, LXQt's capture tool, which others use too.
[[nodiscard]] std::optional<QString> screengrabSetting();
