#include "jsonSettings.h"

#include "FileStatus.h"
#include "UserDirectories.h"
#include "print.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

namespace {

QString filePath(const QString &name)
{
    return configurationFolder() + QStringLiteral("/Deskbroom/") + name + QStringLiteral(".json");
}

/// Gives a damaged file a name of its own, so that the next change overwrites nothing.
bool setAside(const QString &path)
{
    constexpr int mostAttempts = 1000;
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        const QString suffix = attempt == 1 ? QString() : QString(u'-' + QString::number(attempt));
        const QString newPath = path + QStringLiteral(".damaged") + suffix;
        if (!QFile::exists(newPath)) {
            const bool renamed = QFile::rename(path, newPath);
            print(
                renamed ? QStringLiteral("Preferences are damaged and were set aside as ") + newPath
                        : QStringLiteral("Preferences are damaged: ") + path);
            return renamed;
        }
    }
    return false;
}

/// QSettings' reader. It holds the settings' own lock on the file while this runs.
bool read(QIODevice &device, QSettings::SettingsMap &values)
{
    const QJsonDocument document = QJsonDocument::fromJson(device.readAll());
    if (!document.isObject()) {
        const auto *const file = qobject_cast<QFile *>(&device);
        return file != nullptr && setAside(file->fileName());
    }
    const QJsonObject object = document.object();
    for (auto member = object.begin(); member != object.end(); ++member) {
        values.insert(member.key(), QJsonValue(member.value()));
    }
    return true;
}

/// QSettings' writer; the device is a temporary file that QSettings renames if this succeeds.
bool write(QIODevice &device, const QSettings::SettingsMap &values)
{
    QJsonObject object;
    for (auto value = values.begin(); value != values.end(); ++value) {
        object.insert(value.key(), value.value().toJsonValue());
    }
    const QByteArray json = QJsonDocument(object).toJson();
    return device.write(json) == json.size();
}

QSettings::Format jsonFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("json"), read, write, Qt::CaseSensitive);
    return format;
}

/// False for a FIFO, whose other end QSettings would wait for, and for a folder.
bool canBeSettings(const QString &path)
{
    const auto status = FileStatus::ofTarget(path);
    return !status || status->isRegularFile();
}

} // namespace

std::optional<QJsonValue> jsonSettings::value(const QString &name, const QString &key)
{
    const QString path = filePath(name);
    if (!canBeSettings(path)) {
        return std::nullopt;
    }
    const QVariant value = QSettings(path, jsonFormat()).value(key);
    return value.isValid() ? std::optional(value.toJsonValue()) : std::nullopt;
}

void jsonSettings::setValue(const QString &name, const QString &key, const QJsonValue &value)
{
    const QString path = filePath(name);
    QSettings::Status status = QSettings::AccessError;
    if (canBeSettings(path)) {
        QSettings settings(path, jsonFormat());
        settings.setValue(key, value);
        settings.sync();
        status = settings.status();
    }
    if (status != QSettings::NoError) {
        print(QStringLiteral("Failed to write preferences to ") + path);
    }
}
