#include "XEmbedStatusItem.h"

#include "X11Server.h"
#include "outlinedIcon.h"

#include <QCoreApplication>

namespace {

/// A panel that offers both trays takes over the two within moments of each other. Waiting this long before
/// the older one is used spares the icon a move, and the toolkit a wrong decision: at the first use of its
/// tray icon it settles for the rest of the run whether the icon goes over the bus or into X11 (Qt 6.4,
/// isDBusTrayAvailable).
constexpr std::chrono::milliseconds settlingTime(500);

} // namespace

XEmbedStatusItem::XEmbedStatusItem(QObject *parent) : QObject(parent)
{
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    connect(&m_settling, &QTimer::timeout, this, &XEmbedStatusItem::showIcon);
}

XEmbedStatusItem::~XEmbedStatusItem()
{
    hide();
}

void XEmbedStatusItem::setImage(const StatusItemImage &image)
{
    m_image = image.icon;
    if (m_icon) {
        m_icon->setIcon(outlinedIcon(m_image));
    }
}

void XEmbedStatusItem::show()
{
    xcb_connection_t *connection = x11::connection();
    if (m_wanted == Wanted::Yes || connection == nullptr) {
        return;
    }
    m_wanted = Wanted::Yes;
    if (m_traySelection == XCB_ATOM_NONE) {
        m_managerMessage = x11::atom(connection, "MANAGER");
        m_traySelection = x11::atom(connection, "_NET_SYSTEM_TRAY_S0");
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    if (isManagerThere()) {
        m_settling.start();
    }
}

void XEmbedStatusItem::hide()
{
    if (m_wanted == Wanted::No) {
        return;
    }
    m_wanted = Wanted::No;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    m_settling.stop();
    m_icon.reset();
}

std::optional<QRect> XEmbedStatusItem::geometry() const
{
    if (!m_icon || !isManagerThere()) {
        return std::nullopt;
    }
    const QRect rectangle = m_icon->geometry();
    return rectangle.isEmpty() ? std::nullopt : std::optional(rectangle);
}

bool XEmbedStatusItem::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result)
{
    Q_UNUSED(result)
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
        const auto *clientMessage = static_cast<const xcb_client_message_event_t *>(message);
        if (clientMessage->type == m_managerMessage && clientMessage->data.data32[1] == m_traySelection) {
            m_settling.start();
        }
    }
    return false;
}

bool XEmbedStatusItem::isManagerThere() const
{
    xcb_connection_t *connection = x11::connection();
    return connection != nullptr && x11::selectionOwner(connection, m_traySelection) != XCB_WINDOW_NONE;
}

void XEmbedStatusItem::showIcon()
{
    // Anew for each manager, so that nothing depends on how well an earlier window survived its panel.
    m_icon = std::make_unique<QSystemTrayIcon>(outlinedIcon(m_image));
    m_icon->setToolTip(QStringLiteral("Deskbroom"));
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &XEmbedStatusItem::activate);
    m_icon->show();
}

void XEmbedStatusItem::activate(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Context) {
        Q_EMIT menuRequested();
    } else if (reason != QSystemTrayIcon::DoubleClick) {
        // A double click has already been a click.
        Q_EMIT clicked();
    }
}
