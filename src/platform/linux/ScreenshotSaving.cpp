#include "ScreenshotSaving.h"

#include "CaptureTool.h"
#include "currentDesktops.h"

#include <algorithm>

namespace {

/// Null: none of the session's desktops has one. The generations of a desktop's tool do the same and count as
/// the first of them.
const CaptureTool *ownToolOfDesktop()
{
    const std::span<const CaptureTool> tools = desktopCaptureTools();
    for (const QString &desktop : currentDesktops()) {
        const auto tool = std::ranges::find_if(
            tools, [&desktop](const CaptureTool &candidate) { return candidate.isOwnOf(desktop); });
        if (tool != tools.end()) {
            return &*tool;
        }
    }
    return nullptr;
}

} // namespace

ScreenshotSaving screenshotSaving()
{
    const CaptureTool *const tool = ownToolOfDesktop();
    return tool != nullptr ? tool->saving() : ScreenshotSaving::Unknown;
}

QString screenshotTool()
{
    if (const CaptureTool *const own = ownToolOfDesktop()) {
        return own->name;
    }
    const std::span<const CaptureTool> tools = standaloneCaptureTools();
    const auto tool = std::ranges::find_if(
        tools, [](const CaptureTool &candidate) { return candidate.folder().has_value(); });
    return tool != tools.end() ? QString(tool->name) : QString();
}
