#pragma once

#include "DBusMenuTypes.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>

class QAction;
class QMenu;

/// Puts a menu on the bus (`com.canonical.dbusmenu`, version 3), so that a panel can show it as its own.
///
/// Follows the menu's actions: several changes in one turn of the event loop are announced at its end,
/// together. What no panel has asked for isn't computed. A click on an item that is disabled, hidden or gone
/// by now is ignored; the others trigger their action on the next turn of the loop, so that no panel waits
/// for what the action does. GUI thread; owned by the status item. The menu isn't owned and may go first.
class DBusMenuExporter : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    explicit DBusMenuExporter(QDBusConnection bus, QString path, QObject *parent = nullptr);
    ~DBusMenuExporter() override;
    Q_DISABLE_COPY_MOVE(DBusMenuExporter)

    /// Null leaves an empty menu.
    void setMenu(QMenu *menu);

    [[nodiscard]] uint version() const { return 3; }

    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }

    [[nodiscard]] QString textDirection() const;

    [[nodiscard]] QStringList iconThemePath() const { return {}; }

    // The methods of the protocol. Item 0 is the menu itself; no names of properties mean all of them.
    Q_SCRIPTABLE uint
    GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, DBusMenuLayout &layout);
    Q_SCRIPTABLE QList<DBusMenuItemProperties>
    GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<DBusMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(
        const QList<DBusMenuItemProperties> &updated, const QList<DBusMenuRemovedProperties> &removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parentId);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Change { Properties, Layout };

    void noteChange(Change change);
    /// Whether there was something to announce.
    bool announceChanges();
    void announceProperties();
    [[nodiscard]] int idOf(QAction *action);
    /// The menu that an id stands for: the root's, or an action's; null for an item without a menu.
    [[nodiscard]] QMenu *menuOf(int id) const;
    [[nodiscard]] bool exists(int id) const;
    [[nodiscard]] QVariantMap publishedProperties(int id, const QStringList &names);
    [[nodiscard]] DBusMenuLayout layoutOf(int id, int recursionDepth, const QStringList &propertyNames);
    bool handleEvent(int id, const QString &name);
    void refuse(const QString &reason) const;
    void refuseId(int id) const;

    QDBusConnection m_bus;
    QString m_path;
    QPointer<QMenu> m_menu;
    QMap<int, QPointer<QAction>> m_actions;
    int m_lastId = 0;
    uint m_revision = 1;
    QSet<Change> m_changes;
    /// What panels know of the items they asked about.
    QHash<int, QVariantMap> m_published;
};
