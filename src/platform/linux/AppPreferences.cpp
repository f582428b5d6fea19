#include "AppPreferences.h"

#include "currentDesktops.h"
#include "jsonSettings.h"
#include "print.h"
#include "spectacleSettings.h"

#include <QJsonObject>

namespace {

const QString settingsName = QStringLiteral("AppPreferences");

bool isSpectacles(const QString &key, const QString &applicationID)
{
    return applicationID == AppPreferences::screenshotTool && key == AppPreferences::showThumbnail &&
           currentDesktops().contains(QStringLiteral("KDE"), Qt::CaseInsensitive);
}

void setSpectaclesValue(const QJsonValue &value)
{
    const QString failure = QStringLiteral("Failed to write Spectacle's preferences: ");
    if (!value.isBool()) {
        print(failure + QStringLiteral("not a boolean"));
        return;
    }
    if (const auto written = spectacleSettings::setShowThumbnail(value.toBool()); !written) {
        print(failure + written.error().description());
    }
}

QJsonObject storedValues(const QString &applicationID)
{
    return jsonSettings::value(settingsName, applicationID).value_or(QJsonValue()).toObject();
}

} // namespace

std::optional<QJsonValue> AppPreferences::copyAppValue(const QString &key, const QString &applicationID)
{
    if (isSpectacles(key, applicationID)) {
        return spectacleSettings::showThumbnail();
    }
    const QJsonValue value = storedValues(applicationID).value(key);
    return value.isUndefined() ? std::nullopt : std::optional(value);
}

void AppPreferences::setValue(const QString &key, const QJsonValue &value, const QString &applicationID)
{
    if (isSpectacles(key, applicationID)) {
        setSpectaclesValue(value);
        return;
    }
    QJsonObject values = storedValues(applicationID);
    values.insert(key, value);
    jsonSettings::setValue(settingsName, applicationID, values);
}

void AppPreferences::appSynchronize(const QString & /*applicationID*/)
{
}
