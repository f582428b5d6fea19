#pragma once

#include "FileManager.h"

#include <QString>

#include <array>

/// The keys under which the program keeps its settings in `UserDefaults::standard()`, and the choices that
/// it offers for them. Each is written at the moment it changes.
namespace preferences {

/// Integer, minutes; absent: 5. Whatever integer is stored is used.
inline const QString timeframeInMinutes = QStringLiteral("timeframeInMinutes");
/// Boolean; absent: false.
inline const QString autoCopyToClipboard = QStringLiteral("autoCopyToClipboard");
/// Boolean; absent: false.
inline const QString hasCompletedOnboarding = QStringLiteral("hasCompletedOnboarding");
/// Data: the bookmark of the folder to watch; absent: no folder granted.
inline const QString desktopFolderBookmark = FileManager::folderBookmarkPreference;

inline constexpr int defaultTimeframeInMinutes = 5;

/// The deletion delays that a user can pick from, in minutes.
inline constexpr std::array<int, 5> timeframeChoices = {1, 5, 10, 30, 60};

} // namespace preferences
