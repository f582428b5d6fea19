#include "UserDefaults.h"

#include "print.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QStandardPaths>

namespace {

const QString dataMember = QStringLiteral("data");

QString filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Deskbroom/Deskbroom.json");
}

/// An object of the one member "data" that is base64 stands for bytes; every other value for itself.
QVariant fromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    if (object.size() == 1 && object.value(dataMember).isString()) {
        const auto bytes = QByteArray::fromBase64Encoding(
            object.value(dataMember).toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (bytes.decodingStatus == QByteArray::Base64DecodingStatus::Ok) {
            return bytes.decoded;
        }
    }
    return value.toVariant();
}

QJsonValue toJson(const QVariant &value)
{
    if (value.typeId() == QMetaType::QByteArray) {
        return QJsonObject{{dataMember, QString::fromLatin1(value.toByteArray().toBase64())}};
    }
    return QJsonValue::fromVariant(value);
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
        values.insert(member.key(), fromJson(member.value()));
    }
    return true;
}

/// QSettings' writer; the device is a temporary file that QSettings renames if this succeeds.
bool write(QIODevice &device, const QSettings::SettingsMap &values)
{
    QJsonObject object;
    for (auto value = values.begin(); value != values.end(); ++value) {
        object.insert(value.key(), toJson(value.value()));
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

QVariant storedValue(const QString &key)
{
    return QSettings(filePath(), jsonFormat()).value(key);
}

void store(const QString &key, const QVariant &value)
{
    QSettings settings(filePath(), jsonFormat());
    settings.setValue(key, value);
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        print(QStringLiteral("Failed to write preferences to ") + settings.fileName());
    }
}

} // namespace

UserDefaults &UserDefaults::standard()
{
    static UserDefaults instance;
    return instance;
}

bool UserDefaults::contains(const QString &key) const
{
    return storedValue(key).isValid();
}

qint64 UserDefaults::integer(const QString &key) const
{
    return toJson(storedValue(key)).toInteger();
}

bool UserDefaults::boolean(const QString &key) const
{
    return toJson(storedValue(key)).toBool();
}

std::optional<QByteArray> UserDefaults::data(const QString &key) const
{
    const QVariant value = storedValue(key);
    return value.typeId() == QMetaType::QByteArray ? std::optional(value.toByteArray()) : std::nullopt;
}

void UserDefaults::setInteger(const QString &key, qint64 value)
{
    store(key, value);
}

void UserDefaults::setBoolean(const QString &key, bool value)
{
    store(key, value);
}

void UserDefaults::setData(const QString &key, const QByteArray &value)
{
    store(key, value);
}
