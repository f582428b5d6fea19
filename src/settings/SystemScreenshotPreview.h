#pragma once

/// The switch "Disable floating screenshot preview": whether the system's screenshot tool saves a new
/// screenshot at once instead of showing it first. It belongs to that tool: nothing is kept here, each call
/// reads or writes the tool's own setting (AppPreferences). Main thread.
class SystemScreenshotPreview final {
public:
    SystemScreenshotPreview() = delete;

    /// False also where the tool's setting isn't set or isn't a boolean.
    [[nodiscard]] static bool isDisabled();

    /// Always sets the value, also the one that counts without one. What can't be written is printed; the
    /// next `isDisabled` tells what holds.
    static void setDisabled(bool isDisabled);
};
