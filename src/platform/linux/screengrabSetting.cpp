#include "screengrabSetting.h"

#include "QtSettingsFile.h"
#include "UserDirectories.h"
#include "folderFromSetting.h"

std::optional<QString> screengrabSetting()
{
    return folderFromSetting(readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/screengrab/screengrab.conf"), QStringLiteral("Base"),
        QStringLiteral("defDir")));
}
