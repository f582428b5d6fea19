#include "TemporaryHome.h"

#include <QDir>

namespace {

QString folderTemplate()
{
    const QString root = qEnvironmentVariable("DESKBROOM_TEST_ROOT", QDir::tempPath());
    return root + QStringLiteral("/deskbroom-test-XXXXXX");
}

} // namespace

TemporaryHome::TemporaryHome() : m_folder(folderTemplate())
{
    const auto set = [this](const char *variable, const QString &relativePath) {
        const QString folder = path() + relativePath;
        if (!QDir().mkpath(folder)) {
            qFatal("Can't make %s", qPrintable(folder));
        }
        qputenv(variable, folder.toUtf8());
    };
    set("HOME", QString());
    set("XDG_CONFIG_HOME", QStringLiteral("/.config"));
    set("XDG_DATA_HOME", QStringLiteral("/.local/share"));
    set("XDG_STATE_HOME", QStringLiteral("/.local/state"));
    set("XDG_CACHE_HOME", QStringLiteral("/.cache"));
    // What tells of the developer's own desktop and of where it saves screenshots.
    for (const char *const variable :
         {"XDG_CURRENT_DESKTOP", "XDG_SCREENSHOTS_DIR", "GRIM_DEFAULT_DIR", "HYPRSHOT_DIR"}) {
        qunsetenv(variable);
    }
    for (const QString &folder : {desktop(), pictures(), downloads()}) {
        QDir().mkpath(folder);
    }
}
