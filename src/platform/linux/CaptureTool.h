#pragma once

#include "ScreenshotSaving.h"

#include <QLatin1String>
#include <QString>

#include <optional>
#include <span>

/// A program that takes screenshots and saves them by itself, and where.
struct CaptureTool {
    /// What the tool does when the folder that it saves in isn't there.
    enum class MissingFolder { IsMade, StaysMissing };

    /// The folder as the environment and the tool's settings give it at this moment, whether it is there or
    /// not. Nothing if the tool has no place of its own, or isn't set up. An empty path if it is set to what
    /// can't be a folder here.
    using FolderFunction = std::optional<QString> (*)();

    /// What it does with a new screenshot, from what can be known without asking another process.
    using SavingFunction = ScreenshotSaving (*)();

    QLatin1String name;
    /// The desktops whose own tool it is, as `XDG_CURRENT_DESKTOP` names them, with colons between; empty for
    /// a tool that belongs to none.
    QLatin1String desktops;
    MissingFolder missingFolder = MissingFolder::StaysMissing;
    FolderFunction folder = nullptr;
    /// Null for a tool that belongs to no desktop: nothing tells whether it is the one in use.
    SavingFunction saving = nullptr;

    /// Whether it is the own tool of a desktop with that name, in whatever case.
    [[nodiscard]] bool isOwnOf(QStringView desktop) const;
};

/// The tools that come with a desktop. Where a desktop has several, which are generations of one tool, the
/// first that has a folder counts.
[[nodiscard]] std::span<const CaptureTool> desktopCaptureTools();

/// The tools for sessions without one of their own. They have a folder only where the user has set one:
/// whether they are in use otherwise, nothing tells.
[[nodiscard]] std::span<const CaptureTool> standaloneCaptureTools();
