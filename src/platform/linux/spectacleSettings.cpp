#include "spectacleSettings.h"

#include "KConfigFile.h"
#include "UserDirectories.h"
#include "writeKConfigBoolean.h"

namespace {

const QString fileName = QStringLiteral("spectaclerc");
constexpr char group[] = "General";
constexpr char key[] = "autoSaveImage";

KConfigEntry autoSaveImage()
{
    return readCascadedKConfigEntry(fileName, {QString::fromLatin1(group)}, QString::fromLatin1(key));
}

/// As KConfig spells a boolean, in whatever case.
std::optional<bool> asBoolean(const QString &text)
{
    const QString spelling = text.toLower();
    for (const char *const truth : {"true", "on", "yes", "1"}) {
        if (spelling == QLatin1String(truth)) {
            return true;
        }
    }
    for (const char *const untruth : {"false", "off", "no", "0"}) {
        if (spelling == QLatin1String(untruth)) {
            return false;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QJsonValue> spectacleSettings::showThumbnail()
{
    const auto text = autoSaveImage().value;
    if (!text) {
        return std::nullopt;
    }
    const auto isSavedAtOnce = asBoolean(*text);
    return isSavedAtOnce ? QJsonValue(!*isSavedAtOnce) : QJsonValue(*text);
}

Result<void> spectacleSettings::setShowThumbnail(bool isShown)
{
    if (autoSaveImage().isImmutable) {
        return std::unexpected(Error{
            .domain = Error::cocoaDomain,
            .code = Error::FileNoPermission,
            .localizedDescription = QStringLiteral("Marked as immutable"),
        });
    }
    return writeKConfigBoolean(configurationFolder() + u'/' + fileName, group, key, !isShown);
}
