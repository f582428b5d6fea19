#pragma once

#include "SettingsIconBadge.h"

#include <array>

/// The pages of the settings window, in the sidebar's order.
enum class SettingsSection {
    General,
    Gallery,
    About,
};

namespace settingsSections {

inline constexpr std::array all = {
    SettingsSection::General, SettingsSection::Gallery, SettingsSection::About};

/// What the sidebar calls it.
[[nodiscard]] QString title(SettingsSection section);

/// What it is under in the sidebar; empty for what stands on its own.
[[nodiscard]] QString header(SettingsSection section);

[[nodiscard]] SettingsIconBadge badge(SettingsSection section);

} // namespace settingsSections
