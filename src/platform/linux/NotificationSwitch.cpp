#include "NotificationSwitch.h"

#include "KConfigFile.h"
#include "UserDirectories.h"
#include "currentDesktops.h"
#include "gsettings.h"
#include "settingsFile.h"

#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace {

const QString applicationId = QStringLiteral("org.deskbroom.Deskbroom");
const QString applicationName = QStringLiteral("Deskbroom");
/// As GNOME and Cinnamon spell the identifier in the path of its settings: lower case, dashes for the rest.
const QString applicationInPath = QStringLiteral("org-deskbroom-deskbroom");

/// `org.gnome.desktop.notifications.application` of gsettings-desktop-schemas. Its other key, `show-banners`,
/// leaves notifications in the list.
bool isOffInGnome()
{
    const QString path = QStringLiteral("/org/gnome/desktop/notifications/application/%1/");
    return gsettings::boolean(
               QStringLiteral("org.gnome.desktop.notifications.application"), QStringLiteral("enable"),
               path.arg(applicationInPath)) == false;
}

/// Cinnamon has had a switch for all programs alone, until the one for each was added.
bool isOffInCinnamon()
{
    const QString path = QStringLiteral("/org/cinnamon/desktop/notifications/application/%1/");
    return gsettings::boolean(
               QStringLiteral("org.cinnamon.desktop.notifications"),
               QStringLiteral("display-notifications")) == false ||
           gsettings::boolean(
               QStringLiteral("org.cinnamon.desktop.notifications.application"), QStringLiteral("enabled"),
               path.arg(applicationInPath)) == false;
}

/// A truth value as KConfig writes and reads it; `true` where it isn't set, the user's file coming first.
bool plasmaAllows(const QString &key)
{
    const QStringList groups{QStringLiteral("Applications"), applicationId};
    const QStringList truths{
        QStringLiteral("true"), QStringLiteral("on"), QStringLiteral("yes"), QStringLiteral("1")};
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        const QString path = folder + QStringLiteral("/plasmanotifyrc");
        if (const std::optional<QString> value = readKConfigEntry(path, groups, key)) {
            return truths.contains(value->toLower());
        }
    }
    return true;
}

/// Plasma has no single switch: what neither pops up nor enters the history is never seen.
bool isOffInPlasma()
{
    return !plasmaAllows(QStringLiteral("ShowPopups")) && !plasmaAllows(QStringLiteral("ShowInHistory"));
}

bool isProperty(const QXmlStreamReader &xml, QStringView name)
{
    return xml.name() == u"property" && xml.attributes().value(QStringLiteral("name")) == name;
}

/// Moves to the property of that name inside the element at hand.
bool enterProperty(QXmlStreamReader &xml, QStringView name)
{
    while (xml.readNextStartElement()) {
        if (isProperty(xml, name)) {
            return true;
        }
        xml.skipCurrentElement();
    }
    return false;
}

/// `/applications/muted_applications` of xfconf's channel, in the file that xfconf keeps it in.
bool isOffInXfce()
{
    const QString file = QStringLiteral("/xfce4/xfconf/xfce-perchannel-xml/xfce4-notifyd.xml");
    QXmlStreamReader xml(settingsFile::contents(configurationFolder() + file));
    if (!xml.readNextStartElement() || !enterProperty(xml, u"applications") ||
        !enterProperty(xml, u"muted_applications")) {
        return false;
    }
    while (xml.readNextStartElement()) {
        if (xml.attributes().value(QStringLiteral("value")) == applicationId) {
            return true;
        }
        xml.skipCurrentElement();
    }
    return false;
}

/// `blackList` of lxqt-notificationd, which goes by the program's name.
bool isOffInLxqt()
{
    const QString path = configurationFolder() + QStringLiteral("/lxqt/notifications.conf");
    const QString list =
        readKConfigEntry(path, {QStringLiteral("General")}, QStringLiteral("blackList")).value_or(QString());
    return std::ranges::any_of(list.split(u','), [](QString entry) {
        entry = entry.remove(u'"').trimmed();
        return entry == applicationName || entry == applicationId;
    });
}

struct Desktop {
    /// As XDG_CURRENT_DESKTOP has it.
    QLatin1String name;
    bool (*isOff)();
};

// MATE has none for a single program.
constexpr std::array<Desktop, 6> desktops = {{
    {QLatin1String("GNOME"), isOffInGnome},
    {QLatin1String("KDE"), isOffInPlasma},
    {QLatin1String("XFCE"), isOffInXfce},
    {QLatin1String("X-Cinnamon"), isOffInCinnamon},
    {QLatin1String("Cinnamon"), isOffInCinnamon},
    {QLatin1String("LXQt"), isOffInLxqt},
}};

} // namespace

NotificationSwitch readNotificationSwitch()
{
    for (const QString &name : currentDesktops()) {
        const auto *const desktop = std::ranges::find_if(desktops, [&name](const Desktop &known) {
            return name.compare(known.name, Qt::CaseInsensitive) == 0;
        });
        if (desktop != desktops.end()) {
            return desktop->isOff() ? NotificationSwitch::Off : NotificationSwitch::On;
        }
    }
    return NotificationSwitch::On;
}
