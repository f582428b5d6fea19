#pragma once

#include "StatusItem.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QPoint>

/// `(iiay)`: an image of the StatusNotifierItem protocol, ARGB32 in network byte order.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

/// `(sa(iiay)ss)`: what a panel shows when the pointer rests on the item.
struct StatusNotifierToolTip {
    QString iconName;
    QList<StatusNotifierPixmap> pixmaps;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip);

Q_DECLARE_METATYPE(StatusNotifierPixmap)
Q_DECLARE_METATYPE(StatusNotifierToolTip)

/// The status item as an object on the bus: `/StatusNotifierItem`, interface `org.kde.StatusNotifierItem`.
///
/// Not the toolkit's QSystemTrayIcon, whose D-Bus item drops a click's coordinates, and which decides for the
/// whole run at its first use whether there is a panel. Who registers it is StatusNotifierWatcherClient. GUI
/// thread; owned by the status item.
class StatusNotifierItem : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName NOTIFY NewIcon)
    Q_PROPERTY(QString IconThemePath READ iconThemePath NOTIFY NewIconThemePath)
    Q_PROPERTY(QList<StatusNotifierPixmap> IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDesc NOTIFY NewIcon)
    Q_PROPERTY(StatusNotifierToolTip ToolTip READ toolTip NOTIFY NewToolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    static inline const QString menuPath = QStringLiteral("/MenuBar");

    explicit StatusNotifierItem(QDBusConnection bus, QObject *parent = nullptr);
    ~StatusNotifierItem() override;
    Q_DISABLE_COPY_MOVE(StatusNotifierItem)

    void setImage(const StatusItemImage &image);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }

    [[nodiscard]] QString id() const { return QStringLiteral("org.deskbroom.Deskbroom"); }

    [[nodiscard]] QString title() const { return QStringLiteral("Deskbroom"); }

    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }

    [[nodiscard]] int windowId() const { return 0; }

    [[nodiscard]] QString iconName() const { return m_image.iconName; }

    [[nodiscard]] QString iconThemePath() const { return m_image.iconThemePath; }

    [[nodiscard]] QList<StatusNotifierPixmap> iconPixmap() const;

    [[nodiscard]] QString iconAccessibleDesc() const { return m_image.accessibilityDescription; }

    [[nodiscard]] StatusNotifierToolTip toolTip() const;

    /// A panel without this property takes the item for a mere menu.
    [[nodiscard]] bool itemIsMenu() const { return false; }

    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(menuPath); }

    // The methods of the protocol. The place is the panel's idea of it: see StatusItemPlace.h.
    Q_SCRIPTABLE void Activate(int x, int y) { Q_EMIT activated(QPoint(x, y)); }

    Q_SCRIPTABLE void SecondaryActivate(int x, int y) { Q_EMIT activated(QPoint(x, y)); }

    /// Called by panels that can't show the exported menu.
    Q_SCRIPTABLE void ContextMenu(int x, int y) { Q_EMIT menuRequested(QPoint(x, y)); }

    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    /// For the window that the next click opens (Wayland, xdg-activation).
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewAttentionIcon();
    Q_SCRIPTABLE void NewOverlayIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);
    Q_SCRIPTABLE void NewIconThemePath(const QString &path);

    void activated(QPoint reportedPlace);
    void menuRequested(QPoint reportedPlace);

private:
    QDBusConnection m_bus;
    StatusItemImage m_image;
};
