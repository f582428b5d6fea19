#include "CaptureTool.h"

#include "QtSettingsFile.h"
#include "UserDirectories.h"
#include "folderFromSetting.h"
#include "screengrabSetting.h"
#include "settingsFile.h"

#include <QDir>
#include <QXmlStreamReader>

namespace {

template <const char *variable> std::optional<QString> folderInEnvironment()
{
    return folderFromSetting(qEnvironmentVariable(variable));
}

std::optional<QString> flameshotFolder()
{
    return folderFromSetting(readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/flameshot/flameshot.ini"), QStringLiteral("General"),
        QStringLiteral("savePath")));
}

std::optional<QString> ksnipFolder()
{
    return folderFromSetting(readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/ksnip/ksnip.conf"), QStringLiteral("Application"),
        QStringLiteral("SaveDirectory")));
}

/// The attribute `folder` of the element `general`.
std::optional<QString> shutterFolder()
{
    const QByteArray contents =
        settingsFile::contents(QDir::homePath() + QStringLiteral("/.shutter/settings.xml"));
    QXmlStreamReader reader(contents);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"general") {
            return folderFromSetting(reader.attributes().value(QLatin1String("folder")).toString());
        }
    }
    return std::nullopt;
}

constexpr char screenshotsVariable[] = "XDG_SCREENSHOTS_DIR";
constexpr char grimVariable[] = "GRIM_DEFAULT_DIR";
constexpr char hyprshotVariable[] = "HYPRSHOT_DIR";

} // namespace

std::span<const CaptureTool> standaloneCaptureTools()
{
    using enum CaptureTool::MissingFolder;
    static constexpr CaptureTool tools[] = {
        {QLatin1String("grimblast, grimshot"), {}, StaysMissing, folderInEnvironment<screenshotsVariable>},
        {QLatin1String("grim"), {}, StaysMissing, folderInEnvironment<grimVariable>},
        {QLatin1String("hyprshot"), {}, StaysMissing, folderInEnvironment<hyprshotVariable>},
        {screenshotTools::flameshot, {}, StaysMissing, flameshotFolder},
        {QLatin1String("ksnip"), {}, StaysMissing, ksnipFolder},
        {QLatin1String("Shutter"), {}, StaysMissing, shutterFolder},
        {QLatin1String("screengrab"), {}, StaysMissing, screengrabSetting},
    };
    return tools;
}
