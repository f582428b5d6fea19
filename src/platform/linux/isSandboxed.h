#pragma once

/// Whether the program runs in a Flatpak, where other programs are reached through the desktop's portals.
[[nodiscard]] bool isSandboxed();
