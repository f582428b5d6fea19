#include "DBusMenuExporter.h"

#include "DBusMenuItem.h"

#include <QAction>
#include <QActionEvent>
#include <QGuiApplication>
#include <QMenu>

#include <utility>

namespace {

constexpr int rootId = 0;

QVariantMap only(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap chosen;
    for (const QString &name : names) {
        if (properties.contains(name)) {
            chosen.insert(name, properties.value(name));
        }
    }
    return chosen;
}

/// What of `now` isn't the same in `before`.
QVariantMap difference(const QVariantMap &now, const QVariantMap &before)
{
    QVariantMap changed;
    for (auto property = now.begin(); property != now.end(); ++property) {
        if (before.value(property.key()) != property.value()) {
            changed.insert(property.key(), property.value());
        }
    }
    return changed;
}

QStringList missing(const QVariantMap &now, const QVariantMap &before)
{
    QStringList names;
    for (auto property = before.begin(); property != before.end(); ++property) {
        if (!now.contains(property.key())) {
            names.append(property.key());
        }
    }
    return names;
}

} // namespace

DBusMenuExporter::DBusMenuExporter(QDBusConnection bus, QString path, QObject *parent)
    : QObject(parent),
      m_bus(std::move(bus)),
      m_path(std::move(path))
{
    registerDBusMenuTypes();
    m_bus.registerObject(
        m_path, this,
        QDBusConnection::ExportScriptableInvokables | QDBusConnection::ExportScriptableSignals |
            QDBusConnection::ExportAllProperties);
}

DBusMenuExporter::~DBusMenuExporter()
{
    m_bus.unregisterObject(m_path);
}

void DBusMenuExporter::setMenu(QMenu *menu)
{
    if (m_menu) {
        m_menu->removeEventFilter(this);
    }
    m_menu = menu;
    m_actions.clear();
    m_published.clear();
    if (m_menu) {
        m_menu->installEventFilter(this);
    }
    noteChange(Change::Layout);
}

QString DBusMenuExporter::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

bool DBusMenuExporter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ActionAdded) {
        noteChange(Change::Layout);
    } else if (event->type() == QEvent::ActionRemoved) {
        const QAction *removed = static_cast<QActionEvent *>(event)->action();
        m_actions.removeIf([removed](const auto &entry) { return !*entry || *entry == removed; });
        noteChange(Change::Layout);
    } else if (event->type() == QEvent::ActionChanged) {
        noteChange(Change::Properties);
    }
    return QObject::eventFilter(watched, event);
}

void DBusMenuExporter::noteChange(Change change)
{
    if (m_changes.isEmpty()) {
        QMetaObject::invokeMethod(this, &DBusMenuExporter::announceChanges, Qt::QueuedConnection);
    }
    m_changes.insert(change);
}

bool DBusMenuExporter::announceChanges()
{
    const QSet<Change> changes = std::exchange(m_changes, {});
    if (changes.contains(Change::Layout)) {
        ++m_revision;
        Q_EMIT LayoutUpdated(m_revision, rootId);
    }
    if (!changes.isEmpty()) {
        announceProperties();
    }
    return !changes.isEmpty();
}

void DBusMenuExporter::announceProperties()
{
    m_published.removeIf([this](const auto &entry) { return !exists(entry.key()); });
    QList<DBusMenuItemProperties> updated;
    QList<DBusMenuRemovedProperties> removed;
    for (auto known = m_published.begin(); known != m_published.end(); ++known) {
        if (known.key() == rootId) {
            continue;
        }
        const QVariantMap now = dbusMenuProperties(*m_actions.value(known.key()));
        if (const QVariantMap changed = difference(now, known.value()); !changed.isEmpty()) {
            updated.append({.id = known.key(), .properties = changed});
        }
        if (const QStringList gone = missing(now, known.value()); !gone.isEmpty()) {
            removed.append({.id = known.key(), .names = gone});
        }
        known.value() = now;
    }
    if (!updated.isEmpty() || !removed.isEmpty()) {
        Q_EMIT ItemsPropertiesUpdated(updated, removed);
    }
}

int DBusMenuExporter::idOf(QAction *action)
{
    if (const int id = m_actions.key(action); id != rootId) {
        return id;
    }
    m_actions.insert(++m_lastId, action);
    if (auto *submenu = action->menu<QMenu *>()) {
        submenu->installEventFilter(this);
    }
    return m_lastId;
}

QMenu *DBusMenuExporter::menuOf(int id) const
{
    if (id == rootId) {
        return m_menu;
    }
    const QAction *action = m_actions.value(id);
    return action == nullptr ? nullptr : action->menu<QMenu *>();
}

bool DBusMenuExporter::exists(int id) const
{
    return id == rootId || m_actions.value(id) != nullptr;
}

QVariantMap DBusMenuExporter::publishedProperties(int id, const QStringList &names)
{
    QVariantMap &properties = m_published[id];
    properties = id == rootId ? QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}}
                              : dbusMenuProperties(*m_actions.value(id));
    return only(properties, names);
}

DBusMenuLayout DBusMenuExporter::layoutOf(int id, int recursionDepth, const QStringList &propertyNames)
{
    DBusMenuLayout layout = {.id = id, .properties = publishedProperties(id, propertyNames), .children = {}};
    const QMenu *menu = menuOf(id);
    if (menu == nullptr || recursionDepth == 0) {
        return layout;
    }
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        layout.children.append(layoutOf(idOf(action), recursionDepth - 1, propertyNames));
    }
    return layout;
}

void DBusMenuExporter::refuse(const QString &reason) const
{
    if (calledFromDBus()) {
        sendErrorReply(QDBusError::InvalidArgs, reason);
    }
}

void DBusMenuExporter::refuseId(int id) const
{
    refuse(QStringLiteral("No menu item has the id %1").arg(id));
}

uint DBusMenuExporter::GetLayout(
    int parentId, int recursionDepth, const QStringList &propertyNames, DBusMenuLayout &layout)
{
    if (exists(parentId)) {
        layout = layoutOf(parentId, recursionDepth, propertyNames);
    } else {
        refuseId(parentId);
    }
    return m_revision;
}

QList<DBusMenuItemProperties>
DBusMenuExporter::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    const QList<int> asked = ids.isEmpty() ? QList<int>{rootId} + m_actions.keys() : ids;
    QList<DBusMenuItemProperties> group;
    for (const int id : asked) {
        if (exists(id)) {
            group.append({.id = id, .properties = publishedProperties(id, propertyNames)});
        }
    }
    return group;
}

QDBusVariant DBusMenuExporter::GetProperty(int id, const QString &name)
{
    const QVariant value = exists(id) ? publishedProperties(id, {}).value(name) : QVariant();
    if (!value.isValid()) {
        refuse(QStringLiteral("No menu item %1 has a property %2").arg(id).arg(name));
        return QDBusVariant(QString());
    }
    return QDBusVariant(value);
}

bool DBusMenuExporter::handleEvent(int id, const QString &name)
{
    if (!exists(id)) {
        return false;
    }
    QAction *action = m_actions.value(id);
    if (name == QLatin1String("clicked") && action != nullptr && action->isEnabled() && action->isVisible() &&
        !action->isSeparator()) {
        QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
    } else if (name == QLatin1String("closed") && menuOf(id) != nullptr) {
        Q_EMIT menuOf(id)->aboutToHide();
    }
    return true;
}

void DBusMenuExporter::Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp)
{
    Q_UNUSED(data)
    Q_UNUSED(timestamp)
    if (!handleEvent(id, eventId)) {
        refuseId(id);
    }
}

QList<int> DBusMenuExporter::EventGroup(const QList<DBusMenuEvent> &events)
{
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (!handleEvent(event.id, event.name)) {
            unknown.append(event.id);
        }
    }
    return unknown;
}

bool DBusMenuExporter::AboutToShow(int id)
{
    if (!exists(id)) {
        refuseId(id);
        return false;
    }
    if (QMenu *menu = menuOf(id)) {
        Q_EMIT menu->aboutToShow();
    }
    return announceChanges();
}

QList<int> DBusMenuExporter::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> changed;
    for (const int id : ids) {
        if (!exists(id)) {
            idErrors.append(id);
        } else if (AboutToShow(id)) {
            changed.append(id);
        }
    }
    return changed;
}
