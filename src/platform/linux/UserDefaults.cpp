#include "UserDefaults.h"

#include "jsonSettings.h"

#include <QJsonObject>

namespace {

const QString settingsName = QStringLiteral("Deskbroom");
const QString dataMember = QStringLiteral("data");

std::optional<QJsonValue> storedValue(const QString &key)
{
    return jsonSettings::value(settingsName, key);
}

void store(const QString &key, const QJsonValue &value)
{
    jsonSettings::setValue(settingsName, key, value);
}

} // namespace

UserDefaults &UserDefaults::standard()
{
    static UserDefaults instance;
    return instance;
}

bool UserDefaults::contains(const QString &key) const
{
    return storedValue(key).has_value();
}

qint64 UserDefaults::integer(const QString &key) const
{
    return storedValue(key).value_or(QJsonValue()).toInteger();
}

bool UserDefaults::boolean(const QString &key) const
{
    return storedValue(key).value_or(QJsonValue()).toBool();
}

std::optional<QByteArray> UserDefaults::data(const QString &key) const
{
    // An object of the one member "data" that is base64 stands for bytes.
    const QJsonObject object = storedValue(key).value_or(QJsonValue()).toObject();
    if (object.size() != 1 || !object.value(dataMember).isString()) {
        return std::nullopt;
    }
    auto bytes = QByteArray::fromBase64Encoding(
        object.value(dataMember).toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return bytes.decodingStatus == QByteArray::Base64DecodingStatus::Ok
               ? std::optional(std::move(bytes.decoded))
               : std::nullopt;
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
    store(key, QJsonObject{{dataMember, QString::fromLatin1(value.toBase64())}});
}
