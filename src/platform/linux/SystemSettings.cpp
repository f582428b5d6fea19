#include "SystemSettings.h"

#include "processEnvironment.h"
#include "startDetached.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace {

using SystemSettings::Command;
using SystemSettings::Pane;

const QString applicationIdentifier = QStringLiteral("org.deskbroom.Deskbroom");
const QString failure = QStringLiteral("Failed to open System Settings: ");

/// How long a settings program may take to list its pages.
constexpr int listMilliseconds = 3000;

struct Desktop {
    /// Entries of XDG_CURRENT_DESKTOP.
    QStringList names;
    Command overview;
    Command privacy;
    Command notifications;
};

/// This program's page has the switch itself, but is only there if the desktop entry is.
Command gnomeNotifications()
{
    const QString program = QStringLiteral("gnome-control-center");
    const QString entry = QStandardPaths::locate(
        QStandardPaths::ApplicationsLocation, applicationIdentifier + QStringLiteral(".desktop"));
    if (entry.isEmpty()) {
        return {.program = program, .arguments = {QStringLiteral("notifications")}};
    }
    return {.program = program, .arguments = {QStringLiteral("applications"), applicationIdentifier}};
}

/// In a Flatpak, what a program may touch is set on a page of its own.
Command plasmaPrivacy()
{
    const QString program = QStringLiteral("systemsettings");
    if (qEnvironmentVariableIsEmpty("FLATPAK_ID")) {
        return {.program = program, .arguments = {QStringLiteral("kcm_recentFiles")}};
    }
    // The names up to and after Plasma 6.
    return {
        .program = program,
        .arguments = {},
        .pages = {QStringLiteral("kcm_app-permissions"), QStringLiteral("kcm_flatpak")}};
}

std::vector<Desktop> knownDesktops()
{
    return {
        {.names = {QStringLiteral("GNOME")},
         .overview = {.program = QStringLiteral("gnome-control-center"), .arguments = {}},
         // All of it on one page from GNOME 45 on; before that, the page on file history and Trash.
         .privacy =
             {.program = QStringLiteral("gnome-control-center"),
              .arguments = {},
              .pages = {QStringLiteral("privacy"), QStringLiteral("usage")}},
         .notifications = gnomeNotifications()},
        {.names = {QStringLiteral("KDE")},
         .overview = {.program = QStringLiteral("systemsettings"), .arguments = {}},
         .privacy = plasmaPrivacy(),
         .notifications =
             {.program = QStringLiteral("systemsettings"),
              .arguments =
                  {QStringLiteral("kcm_notifications"), QStringLiteral("--args"),
                   QStringLiteral("--desktop-entry ") + applicationIdentifier}}},
        {.names = {QStringLiteral("XFCE")},
         .overview = {.program = QStringLiteral("xfce4-settings-manager"), .arguments = {}},
         .privacy = {.program = QStringLiteral("xfce4-settings-manager"), .arguments = {}},
         .notifications = {.program = QStringLiteral("xfce4-notifyd-config"), .arguments = {}}},
        {.names = {QStringLiteral("X-Cinnamon"), QStringLiteral("Cinnamon")},
         .overview = {.program = QStringLiteral("cinnamon-settings"), .arguments = {}},
         .privacy =
             {.program = QStringLiteral("cinnamon-settings"), .arguments = {QStringLiteral("privacy")}},
         .notifications =
             {.program = QStringLiteral("cinnamon-settings"),
              .arguments = {QStringLiteral("notifications")}}},
        {.names = {QStringLiteral("MATE")},
         .overview = {.program = QStringLiteral("mate-control-center"), .arguments = {}},
         .privacy = {.program = QStringLiteral("mate-control-center"), .arguments = {}},
         .notifications = {.program = QStringLiteral("mate-notification-properties"), .arguments = {}}},
        {.names = {QStringLiteral("LXQt")},
         .overview = {.program = QStringLiteral("lxqt-config"), .arguments = {}},
         .privacy = {.program = QStringLiteral("lxqt-config"), .arguments = {}},
         .notifications = {.program = QStringLiteral("lxqt-config-notificationd"), .arguments = {}}},
    };
}

const Command &commandOf(const Desktop &desktop, Pane pane)
{
    switch (pane) {
    case Pane::Overview:
        return desktop.overview;
    case Pane::Privacy:
        return desktop.privacy;
    case Pane::Notifications:
        return desktop.notifications;
    }
    Q_UNREACHABLE();
}

/// The first of the pages that the program's list has, one to a line.
QStringList listedPage(const QStringList &pages, const QByteArray &list)
{
    QStringList listed;
    for (const QByteArray &line : list.split('\n')) {
        // Plasma writes what the page is about after its name.
        listed.append(QString::fromUtf8(line.trimmed().split(' ').constFirst()));
    }
    const auto page =
        std::ranges::find_if(pages, [&listed](const QString &name) { return listed.contains(name); });
    return page == pages.end() ? QStringList() : QStringList(*page);
}

/// A program that fails to answer is started without a page.
bool startOnListedPage(const Command &command)
{
    auto *const list = new QProcess(QCoreApplication::instance());
    list->setProcessEnvironment(processEnvironment::forChildren());
    list->setStandardInputFile(QProcess::nullDevice());
    list->setStandardErrorFile(QProcess::nullDevice());
    const auto go = [list, command] {
        list->deleteLater();
        startDetached(
            command.program, command.arguments + listedPage(command.pages, list->readAllStandardOutput()),
            failure);
    };
    QObject::connect(list, &QProcess::finished, list, go);
    QObject::connect(list, &QProcess::errorOccurred, list, [go](QProcess::ProcessError error) {
        // Every other error is followed by the signal above.
        if (error == QProcess::FailedToStart) {
            go();
        }
    });
    QTimer::singleShot(listMilliseconds, list, &QProcess::kill);
    list->start(command.program, {QStringLiteral("--list")});
    return true;
}

} // namespace

bool SystemSettings::isLink(const QUrl &url)
{
    return url.scheme() == QStringLiteral("x-apple.systempreferences");
}

SystemSettings::Pane SystemSettings::paneOf(const QUrl &link)
{
    const QString anchor = link.hasQuery() ? link.query() : link.fragment();
    if (link.path() == QStringLiteral("com.apple.preference.security") &&
        anchor == QStringLiteral("Privacy_AllFiles")) {
        return Pane::Privacy;
    }
    return link.path() == QStringLiteral("com.apple.preference.notifications") ? Pane::Notifications
                                                                               : Pane::Overview;
}

std::expected<SystemSettings::Command, QString> SystemSettings::command(Pane pane)
{
    const QString current = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const std::vector<Desktop> known = knownDesktops();
    for (const QString &name : current.split(u':', Qt::SkipEmptyParts)) {
        const auto desktop = std::ranges::find_if(
            known, [&name](const Desktop &candidate) { return candidate.names.contains(name); });
        if (desktop == known.end()) {
            continue;
        }
        Command command = commandOf(*desktop, pane);
        const QString path = QStandardPaths::findExecutable(command.program);
        if (path.isEmpty()) {
            return std::unexpected(command.program + QStringLiteral(" isn't installed"));
        }
        command.program = path;
        return command;
    }
    return std::unexpected(
        current.isEmpty() ? QStringLiteral("no desktop is running")
                          : QString(QStringLiteral("the desktop isn't known: ") + current));
}

bool SystemSettings::start(const Command &command)
{
    return command.pages.isEmpty() ? startDetached(command.program, command.arguments, failure)
                                   : startOnListedPage(command);
}
