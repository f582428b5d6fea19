#include "StatusItem.h"

#include "DBusMenuExporter.h"
#include "DesktopPanels.h"
#include "StatusItemPlace.h"
#include "StatusNotifierItem.h"
#include "StatusNotifierWatcherClient.h"
#include "XEmbedStatusItem.h"
#include "print.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusError>
#include <QMenu>
#include <QPointer>

#include <optional>

namespace {

ClickUnit clickUnitOfDesktop()
{
    // Plasma hands over device pixels, the others what their toolkit calls a pixel.
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1String("KDE"))
               ? ClickUnit::DevicePixels
               : ClickUnit::LogicalPixels;
}

} // namespace

/// The item's two ways into a panel, one at a time: over the bus (StatusNotifierItem) where a panel listens
/// there, else as a window in an X11 tray. Starts with the first image.
class StatusItem::Presence final : public QObject {
public:
    explicit Presence(StatusItem &statusItem);

    void setImage(const StatusItemImage &image);
    void setMenu(QMenu *menu);
    [[nodiscard]] Anchor anchor() const;

private:
    enum class Stage { NotStarted, Started };

    void start();
    void chooseWay();
    void rememberClick(QPoint reportedPlace);
    [[nodiscard]] QList<PanelShape> panels() const;

    StatusItem &m_statusItem;
    Stage m_stage = Stage::NotStarted;
    QPointer<QMenu> m_menu;
    /// In global logical pixels, if it was a plausible one.
    std::optional<QPoint> m_lastClick;
    XEmbedStatusItem m_xembed;
    /// These are null without a session bus.
    std::unique_ptr<StatusNotifierItem> m_notifierItem;
    std::unique_ptr<DBusMenuExporter> m_menuExporter;
    std::unique_ptr<StatusNotifierWatcherClient> m_watcher;
};

StatusItem::Presence::Presence(StatusItem &statusItem) : m_statusItem(statusItem)
{
    connect(&m_xembed, &XEmbedStatusItem::clicked, &m_statusItem, &StatusItem::clicked);
    connect(&m_xembed, &XEmbedStatusItem::menuRequested, &m_statusItem, &StatusItem::menuRequested);
}

void StatusItem::Presence::setImage(const StatusItemImage &image)
{
    m_xembed.setImage(image);
    if (m_stage == Stage::NotStarted) {
        m_stage = Stage::Started;
        start();
    }
    if (m_notifierItem) {
        m_notifierItem->setImage(image);
    }
}

void StatusItem::Presence::start()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        print(QStringLiteral("No session bus for the status item: ") + bus.lastError().message());
        m_xembed.show();
        return;
    }
    m_notifierItem = std::make_unique<StatusNotifierItem>(bus);
    connect(m_notifierItem.get(), &StatusNotifierItem::activated, this, [this](QPoint reportedPlace) {
        rememberClick(reportedPlace);
        Q_EMIT m_statusItem.clicked();
    });
    connect(m_notifierItem.get(), &StatusNotifierItem::menuRequested, this, [this](QPoint reportedPlace) {
        rememberClick(reportedPlace);
        Q_EMIT m_statusItem.menuRequested();
    });
    m_menuExporter = std::make_unique<DBusMenuExporter>(bus, StatusNotifierItem::menuPath);
    m_menuExporter->setMenu(m_menu);
    m_watcher = std::make_unique<StatusNotifierWatcherClient>(bus);
    connect(m_watcher.get(), &StatusNotifierWatcherClient::hostChanged, this, &Presence::chooseWay);
}

void StatusItem::Presence::setMenu(QMenu *menu)
{
    m_menu = menu;
    if (m_menuExporter) {
        m_menuExporter->setMenu(menu);
    }
}

void StatusItem::Presence::chooseWay()
{
    // Another panel may put the item elsewhere.
    m_lastClick.reset();
    if (m_watcher->host() == StatusNotifierWatcherClient::Host::Present) {
        m_xembed.hide();
    } else {
        m_xembed.show();
    }
}

QList<PanelShape> StatusItem::Presence::panels() const
{
    return desktopPanels(m_watcher ? m_watcher->watcherProcess() : std::nullopt);
}

void StatusItem::Presence::rememberClick(QPoint reportedPlace)
{
    const QList<ScreenShape> screens = desktopScreens();
    const QList<PanelShape> allPanels = panels();
    // The pointer is where the click was; a key press on the panel leaves it anywhere.
    const QPoint pointer = QCursor::pos();
    if (isPointerPlaceKnown() && isPlausibleClick(pointer, screens, allPanels)) {
        m_lastClick = pointer;
    } else if (
        const auto place = plausibleReportedClick(reportedPlace, clickUnitOfDesktop(), screens, allPanels)) {
        m_lastClick = place;
    }
}

StatusItem::Anchor StatusItem::Presence::anchor() const
{
    if (const std::optional<QRect> item = m_xembed.geometry()) {
        return {.rectangle = *item, .source = Anchor::Source::Item};
    }
    return statusItemAnchor(m_lastClick, desktopScreens(), panels());
}

StatusItem::StatusItem(QObject *parent) : QObject(parent), m_presence(std::make_unique<Presence>(*this))
{
}

StatusItem::~StatusItem() = default;

void StatusItem::setImage(const StatusItemImage &image)
{
    m_presence->setImage(image);
}

void StatusItem::setMenu(QMenu *menu)
{
    m_presence->setMenu(menu);
}

StatusItem::Anchor StatusItem::anchor() const
{
    return m_presence->anchor();
}
