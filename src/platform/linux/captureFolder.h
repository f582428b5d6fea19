#pragma once

#include <QString>

#include <optional>

/// The folder in which the running session's capture tool saves by itself, asked for afresh at every call:
/// on a desktop with a tool of its own, that tool's; elsewhere that of the first tool which the user has set
/// one for (docs/capture-tools.md). It may be missing if the tool would make it with its next screenshot.
///
/// Nothing if no tool is known, if the tool has no folder (it copies to the clipboard, it saves on the
/// desktop), or if its folder isn't there and wouldn't be made.
///
/// A few reads of small files; on the desktops that keep the setting in GSettings some ten milliseconds at
/// first and after a change in the desktop's settings. Any thread.
[[nodiscard]] std::optional<QString> captureFolder();

/// Makes that folder, as the tool would, if it isn't there. Nothing happens if it can't be made. Any thread.
void makeCaptureFolder();
