#include "captureFolder.h"

#include "CaptureTool.h"
#include "FileStatus.h"
#include "currentDesktops.h"

#include <QDir>

#include <algorithm>

namespace {

bool isFolder(const QString &path)
{
    const auto status = FileStatus::ofTarget(path);
    return status && status->isFolder();
}

/// How much of the path must be there for the rest to be made: the home folder, or outside of it the folder
/// above, because a whole disk may be missing there.
qsizetype neededSize(const QString &path)
{
    const QString home = QDir::homePath();
    const bool isInHome = path.startsWith(QString(home + u'/'));
    return isInHome ? home.size() : path.lastIndexOf(u'/');
}

bool canBeMade(const QString &path)
{
    QString deepest = path;
    while (!deepest.isEmpty() && !FileStatus::ofItem(deepest)) {
        deepest.truncate(std::max<qsizetype>(deepest.lastIndexOf(u'/'), 0));
    }
    return deepest.size() < path.size() && deepest.size() >= neededSize(path) && isFolder(deepest);
}

/// Nothing if the tool's folder isn't one in which a screenshot could appear.
std::optional<QString> usable(const CaptureTool &tool, const QString &path)
{
    const bool isUsable =
        !path.isEmpty() &&
        (isFolder(path) || (tool.missingFolder == CaptureTool::MissingFolder::IsMade && canBeMade(path)));
    return isUsable ? std::optional(path) : std::nullopt;
}

std::optional<QString> folderOfStandaloneTool()
{
    for (const CaptureTool &tool : standaloneCaptureTools()) {
        const auto folder = tool.folder();
        if (const auto path = folder ? usable(tool, *folder) : std::nullopt) {
            return path;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> captureFolder()
{
    for (const QString &desktop : currentDesktops()) {
        bool hasTool = false;
        for (const CaptureTool &tool : desktopCaptureTools()) {
            if (!tool.isOwnOf(desktop)) {
                continue;
            }
            hasTool = true;
            if (const auto folder = tool.folder()) {
                return usable(tool, *folder);
            }
        }
        // The desktop's own tool decides, also when it decides for no folder.
        if (hasTool) {
            return std::nullopt;
        }
    }
    return folderOfStandaloneTool();
}

void makeCaptureFolder()
{
    const auto folder = captureFolder();
    if (!folder || isFolder(*folder)) {
        return;
    }
    constexpr mode_t mode = 0755;
    for (qsizetype end = neededSize(*folder); end < folder->size();) {
        const qsizetype slash = folder->indexOf(u'/', end + 1);
        end = slash < 0 ? folder->size() : slash;
        // What is there already is no failure; whatever is shows when the folder is listed.
        ::mkdir(nativePath(folder->first(end)).constData(), mode);
    }
}
