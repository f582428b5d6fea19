#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariantMap>

/// The structures that travel over `com.canonical.dbusmenu`, version 3.

/// `(ia{sv}av)`: an item with its children, each of which is the same in a variant.
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

/// `(ia{sv})`
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// `(ias)`: properties of an item that are back at their default.
struct DBusMenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// `(isvu)`
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuRemovedProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuRemovedProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

Q_DECLARE_METATYPE(DBusMenuLayout)
Q_DECLARE_METATYPE(DBusMenuItemProperties)
Q_DECLARE_METATYPE(DBusMenuRemovedProperties)
Q_DECLARE_METATYPE(DBusMenuEvent)

/// Before any of them is sent or received.
void registerDBusMenuTypes();
