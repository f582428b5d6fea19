#include "CaptureTool.h"

#include "KConfigFile.h"
#include "QtSettingsFile.h"
#include "UserDirectories.h"
#include "folderFromSetting.h"
#include "keptSettings.h"
#include "screengrabSetting.h"
#include "settingsFile.h"

#include <QDir>

#include <libintl.h>

namespace {

template <ScreenshotSaving saving> ScreenshotSaving always()
{
    return saving;
}

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

bool isFileName(const QString &text)
{
    return !text.contains(u'/') && !text.contains(QChar::Null) && text != u"." && text != u"..";
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
    const auto chosen = folderFromSetting(
        keptSettings::string(QStringLiteral("io.elementary.screenshot"), QStringLiteral("folder-dir")));
    return chosen ? chosen : translatedScreenshots("io.elementary.screenshot");
}

std::optional<QString> gnomeScreenshotFolder()
{
    const auto chosen = folderFromSetting(keptSettings::string(
        QStringLiteral("org.gnome.gnome-screenshot"), QStringLiteral("auto-save-directory")));
    return chosen ? chosen : picturesOrHome();
}

std::optional<QString> mateScreenshotFolder()
{
    if (auto last = folderFromSetting(keptSettings::string(
            QStringLiteral("org.mate.screenshot"), QStringLiteral("last-save-directory")))) {
        return last;
    }
    const auto isHomeTheDesktop = keptSettings::boolean(
        QStringLiteral("org.mate.caja.preferences"), QStringLiteral("desktop-is-home-dir"));
    return isHomeTheDesktop.value_or(false) ? std::optional(QDir::homePath()) : std::nullopt;
}

std::optional<QString> spectacleEntry(const QString &group, const QString &key)
{
    return readKConfigEntry(configurationFolder() + QStringLiteral("/spectaclerc"), {group}, key);
}

/// Since 24.02. The name of its default folder is translated once and then stored, which also tells that this
/// generation was here; for whoever had used an earlier one, that one's folder was written down.
std::optional<QString> spectacleFolder()
{
    const QString group = QStringLiteral("ImageSave");
    if (auto chosen = folderFromSetting(spectacleEntry(group, QStringLiteral("imageSaveLocation")))) {
        return chosen;
    }
    const QString name =
        spectacleEntry(group, QStringLiteral("translatedScreenshotsFolder")).value_or(QString());
    if (name.isEmpty()) {
        return std::nullopt;
    }
    return isFileName(name) ? QString(pictures() + u'/' + name) : QString();
}

std::optional<QString> earlierSpectacleFolder()
{
    const auto chosen =
        folderFromSetting(spectacleEntry(QStringLiteral("Save"), QStringLiteral("defaultSaveLocation")));
    return chosen ? chosen : pictures();
}

std::optional<QString> xfceScreenshooterFolder()
{
    const auto chosen = folderFromSetting(readKConfigEntry(
        configurationFolder() + QStringLiteral("/xfce4/xfce4-screenshooter"), {},
        QStringLiteral("screenshot_dir")));
    return chosen ? chosen : picturesOrHome();
}

std::optional<QString> screengrabFolder()
{
    const auto chosen = screengrabSetting();
    return chosen ? chosen : QDir::homePath();
}

/// `autoSave` in screengrab's `src/core/config.cpp`; without it, it shows its window.
ScreenshotSaving screengrabSaving()
{
    const auto autoSave = readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/screengrab/screengrab.conf"), QStringLiteral("Base"),
        QStringLiteral("autoSave"));
    return autoSave == QStringLiteral("true") ? ScreenshotSaving::AtOnce : ScreenshotSaving::OnRequest;
}

/// Without blanks.
QByteArray cosmicSettings()
{
    return settingsFile::contents(
               configurationFolder() + QStringLiteral("/cosmic/com.system76.CosmicPortal/v1/screenshot"))
        .simplified()
        .replace(' ', QByteArray());
}

bool isCosmicCopying(const QByteArray &settings)
{
    return settings.contains("save_location:Clipboard");
}

ScreenshotSaving cosmicSaving()
{
    return isCosmicCopying(cosmicSettings()) ? ScreenshotSaving::OnRequest : ScreenshotSaving::AtOnce;
}

std::optional<QString> cosmicFolder()
{
    const QByteArray settings = cosmicSettings();
    if (isCosmicCopying(settings)) {
        return std::nullopt;
    }
    if (settings.contains("save_location:Documents")) {
        return userDirectory("XDG_DOCUMENTS_DIR", QStringLiteral("Documents"));
    }
    const QString chosen = qEnvironmentVariable("XDG_SCREENSHOTS_DIR");
    return chosen.startsWith(u'/') ? folderFromSetting(chosen)
                                   : QString(pictures() + QStringLiteral("/Screenshots"));
}

std::optional<QString> deepinEntry(const QString &key)
{
    return readQtSettingsEntry(
        configurationFolder() + QStringLiteral("/deepin/deepin-screen-recorder/deepin-screen-recorder.conf"),
        QStringLiteral("shot"), key);
}

std::optional<QString> deepinFolder()
{
    if (deepinEntry(QStringLiteral("save_ways")) == QStringLiteral("0")) {
        // It asks each time, beginning with this folder.
        return folderFromSetting(deepinEntry(QStringLiteral("save_ask_dir")));
    }
    const auto target = deepinEntry(QStringLiteral("save_op"));
    if (target == QStringLiteral("2")) {
        return pictures() + QStringLiteral("/Screenshots");
    }
    if (target == QStringLiteral("3")) {
        return folderFromSetting(deepinEntry(QStringLiteral("save_dir")));
    }
    // The clipboard, or the desktop.
    return std::nullopt;
}

/// It asks each time, and copies, unless both are set otherwise.
ScreenshotSaving deepinSaving()
{
    const bool hasFixedTarget = deepinEntry(QStringLiteral("save_ways")) == QStringLiteral("1");
    const QString target = deepinEntry(QStringLiteral("save_op")).value_or(QStringLiteral("0"));
    return hasFixedTarget && target != u"0" ? ScreenshotSaving::AtOnce : ScreenshotSaving::OnRequest;
}

} // namespace

std::span<const CaptureTool> desktopCaptureTools()
{
    using enum CaptureTool::MissingFolder;
    using enum ScreenshotSaving;
    static constexpr CaptureTool tools[] = {
        {QLatin1String("GNOME Shell"), QLatin1String("GNOME:Unity:Budgie"), IsMade, gnomeShellFolder,
         always<AtOnce>},
        {screenshotTools::spectacle, QLatin1String("KDE"), IsMade, spectacleFolder, always<AfterPreview>},
        {QLatin1String("Spectacle before 24.02"), QLatin1String("KDE"), StaysMissing, earlierSpectacleFolder,
         always<AfterPreview>},
        {screenshotTools::xfce, QLatin1String("XFCE"), StaysMissing, xfceScreenshooterFolder,
         always<OnRequest>},
        {screenshotTools::mate, QLatin1String("MATE"), StaysMissing, mateScreenshotFolder, always<OnRequest>},
        {QLatin1String("gnome-screenshot"), QLatin1String("X-Cinnamon:Cinnamon"), StaysMissing,
         gnomeScreenshotFolder, always<AtOnce>},
        {QLatin1String("screengrab"), QLatin1String("LXQt"), StaysMissing, screengrabFolder,
         screengrabSaving},
        {screenshotTools::elementary, QLatin1String("Pantheon"), IsMade, elementaryFolder, always<OnRequest>},
        {QLatin1String("COSMIC Screenshot"), QLatin1String("COSMIC"), IsMade, cosmicFolder, cosmicSaving},
        {QLatin1String("deepin-screen-recorder"), QLatin1String("Deepin:DDE"), IsMade, deepinFolder,
         deepinSaving},
    };
    return tools;
}
