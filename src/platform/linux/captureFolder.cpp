#include "captureFolder.h"

#include "CaptureTool.h"
#include "FileStatus.h"

#include <QDir>

namespace {

bool isFolder(const QString &path)
{
    const auto status = FileStatus::ofFolder(path);
    return status && status->isFolder();
}

/// Makes the folder and those on the way to it, but nothing where a whole disk may be missing.
bool makeFolder(const QString &path)
{
    const QString home = QDir::homePath();
    const qsizetype lastSlash = path.lastIndexOf(u'/');
    const bool isInHome = path.startsWith(QString(home + u'/'));
    const qsizetype parentSize = isInHome ? home.size() : lastSlash;
    if (parentSize <= 0 || !isFolder(path.first(parentSize))) {
        return false;
    }
    constexpr mode_t mode = 0755;
    for (qsizetype end = parentSize; end < path.size();) {
        const qsizetype slash = path.indexOf(u'/', end + 1);
        end = slash < 0 ? path.size() : slash;
        // What is there already is no failure; whatever is, shows at the end.
        ::mkdir(nativePath(path.first(end)).constData(), mode);
    }
    return isFolder(path);
}

/// Nothing if the tool's folder isn't one in which a screenshot could appear.
std::optional<QString> usable(const CaptureTool &tool, const QString &path)
{
    const bool isThere =
        !path.isEmpty() &&
        (isFolder(path) || (tool.missingFolder == CaptureTool::MissingFolder::IsMade && makeFolder(path)));
    return isThere ? std::optional(path) : std::nullopt;
}

bool isOwnOf(const CaptureTool &tool, QStringView desktop)
{
    for (const QLatin1String own : tool.desktops.tokenize(u':')) {
        if (desktop.compare(own, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
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
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    for (const QStringView desktop : QStringView(desktops).tokenize(u':')) {
        bool hasTool = false;
        for (const CaptureTool &tool : desktopCaptureTools()) {
            if (!isOwnOf(tool, desktop)) {
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
