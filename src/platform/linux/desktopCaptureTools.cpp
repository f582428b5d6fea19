#include "CaptureTool.h"

#include "KConfigFile.h"
#include "QtSettingsFile.h"
#include "UserDirectories.h"
#include "folderFromSetting.h"
#include "keptSettings.h"
#include "settingsFile.h"

#include <QDir>

#include <libintl.h>

namespace {

/// The Pictures folder as GLib's programs find it: without an entry there is none, and they take the home
/// folder.
QString picturesOrHome()
{
    return configuredUserDirectory("XDG_PICTURES_DIR").value_or(QDir::homePath());
}

/// The Pictures folder as Qt's programs find it.
QString pictures()
{
    return userDirectory("XDG_PICTURES_DIR", QStringLiteral("Pictures"));
}

/// The folder `Screenshots`, as the program with that catalogue of translations calls it in the user's
/// language: that of the process's locale, as for the program itself.
QString translatedScreenshots(const char *domain)
{
    return picturesOrHome() + u'/' + QString::fromUtf8(::dgettext(domain, "Screenshots"));
}

std::optional<QString> gnomeShellFolder()
{
    return translatedScreenshots("gnome-shell");
}

std::optional<QString> elementaryFolder()
{
    const QString chosen =
        keptSettings::string(QStringLiteral("io.elementary.screenshot"), QStringLiteral("folder-dir"))
            .value_or(QString());
    return chosen.isEmpty() ? translatedScreenshots("io.elementary.screenshot") : folderFromSetting(chosen);
}

std::optional<QString> gnomeScreenshotFolder()
{
    const QString chosen =
        keptSettings::string(
            QStringLiteral("org.gnome.gnome-screenshot"), QStringLiteral("auto-save-directory"))
            .value_or(QString());
    return chosen.isEmpty() ? picturesOrHome() : folderFromSetting(chosen);
}

std::optional<QString> mateScreenshotFolder()
{
    const QString last =
        keptSettings::string(QStringLiteral("org.mate.screenshot"), QStringLiteral("last-save-directory"))
            .value_or(QString());
    if (!last.isEmpty()) {
        return folderFromSetting(last);
    }
    const bool isHomeTheDesktop =
        keptSettings::boolean(
            QStringLiteral("org.mate.caja.preferences"), QStringLiteral("desktop-is-home-dir"))
            .value_or(false);
    return isHomeTheDesktop ? std::optional(QDir::homePath()) : std::nullopt;
}

QString spectacleFile()
{
    return configurationFolder() + QStringLiteral("/spectaclerc");
}

/// Since 24.02. The name of its default folder is translated once and then stored, which also tells that this
/// generation was here; whoever had used an earlier one got that one's folder written down.
std::optional<QString> spectacleFolder()
{
    const QStringList group{QStringLiteral("ImageSave")};
    if (const auto chosen = readKConfigEntry(spectacleFile(), group, QStringLiteral("imageSaveLocation"));
        chosen && !chosen->isEmpty()) {
        return folderFromSetting(*chosen);
    }
    const auto name = readKConfigEntry(spectacleFile(), group, QStringLiteral("translatedScreenshotsFolder"));
    if (!name || name->isEmpty()) {
        return std::nullopt;
    }
    return name->contains(u'/') ? QString() : QString(pictures() + u'/' + *name);
}

std::optional<QString> earlierSpectacleFolder()
{
    const auto chosen =
        readKConfigEntry(spectacleFile(), {QStringLiteral("Save")}, QStringLiteral("defaultSaveLocation"));
    return chosen && !chosen->isEmpty() ? folderFromSetting(*chosen) : pictures();
}

std::optional<QString> xfceScreenshooterFolder()
{
    const auto chosen = readKConfigEntry(
        configurationFolder() + QStringLiteral("/xfce4/xfce4-screenshooter"), {},
        QStringLiteral("screenshot_dir"));
    return chosen && !chosen->isEmpty() ? folderFromSetting(*chosen) : picturesOrHome();
}

std::optional<QString> screengrabFolder()
{
    const auto chosen = readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/screengrab/screengrab.conf"), QStringLiteral("Base"),
        QStringLiteral("defDir"));
    return chosen && !chosen->isEmpty() ? folderFromSetting(*chosen) : QDir::homePath();
}

/// The word behind `save_location:`; empty if there is none.
QByteArray cosmicSaveLocation()
{
    const QByteArray contents = settingsFile::contents(
        configurationFolder() + QStringLiteral("/cosmic/com.system76.CosmicPortal/v1/screenshot"));
    constexpr QByteArrayView key = "save_location:";
    const qsizetype found = contents.indexOf(key);
    if (found < 0) {
        return {};
    }
    const QByteArray rest = contents.sliced(found + key.size()).trimmed();
    const qsizetype end =
        std::ranges::find_if_not(rest, [](char c) { return c >= 'A' && c <= 'z'; }) - rest.begin();
    return rest.first(end);
}

std::optional<QString> cosmicFolder()
{
    const QByteArray location = cosmicSaveLocation();
    if (location == "Clipboard") {
        return std::nullopt;
    }
    if (location == "Documents") {
        return userDirectory("XDG_DOCUMENTS_DIR", QStringLiteral("Documents"));
    }
    const QString chosen = qEnvironmentVariable("XDG_SCREENSHOTS_DIR");
    return chosen.startsWith(u'/') ? folderFromSetting(chosen)
                                   : QString(pictures() + QStringLiteral("/Screenshots"));
}

std::optional<QString> deepinFolder()
{
    const auto entry = [](const char16_t *key) {
        return readQtSettingsEntry(
                   configurationFolder() +
                       QStringLiteral("/deepin/deepin-screen-recorder/deepin-screen-recorder.conf"),
                   QStringLiteral("shot"), QString::fromUtf16(key))
            .value_or(QString());
    };
    const auto chosen = [](const QString &folder) {
        return folder.isEmpty() ? std::nullopt : std::optional(folderFromSetting(folder));
    };
    constexpr QStringView asksEachTime = u"0";
    if (entry(u"save_ways") == asksEachTime) {
        return chosen(entry(u"save_ask_dir"));
    }
    constexpr QStringView savesInPictures = u"2";
    constexpr QStringView savesInChosenFolder = u"3";
    const QString target = entry(u"save_op");
    if (target == savesInPictures) {
        return pictures() + QStringLiteral("/Screenshots");
    }
    // What is left is the clipboard and the desktop.
    return target == savesInChosenFolder ? chosen(entry(u"save_dir")) : std::nullopt;
}

} // namespace

std::span<const CaptureTool> desktopCaptureTools()
{
    using enum CaptureTool::MissingFolder;
    static constexpr CaptureTool tools[] = {
        {QLatin1String("GNOME Shell"), QLatin1String("GNOME:Unity:Budgie"), IsMade, gnomeShellFolder},
        {QLatin1String("Spectacle"), QLatin1String("KDE"), IsMade, spectacleFolder},
        {QLatin1String("Spectacle before 24.02"), QLatin1String("KDE"), StaysMissing, earlierSpectacleFolder},
        {QLatin1String("xfce4-screenshooter"), QLatin1String("XFCE"), StaysMissing, xfceScreenshooterFolder},
        {QLatin1String("mate-screenshot"), QLatin1String("MATE"), StaysMissing, mateScreenshotFolder},
        {QLatin1String("gnome-screenshot"), QLatin1String("X-Cinnamon"), StaysMissing, gnomeScreenshotFolder},
        {QLatin1String("screengrab"), QLatin1String("LXQt"), StaysMissing, screengrabFolder},
        {QLatin1String("elementary Screenshot"), QLatin1String("Pantheon"), IsMade, elementaryFolder},
        {QLatin1String("COSMIC Screenshot"), QLatin1String("COSMIC"), IsMade, cosmicFolder},
        {QLatin1String("deepin-screen-recorder"), QLatin1String("Deepin:DDE"), IsMade, deepinFolder},
    };
    return tools;
}
