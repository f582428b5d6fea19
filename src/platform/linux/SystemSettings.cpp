#include "SystemSettings.h"

#include "currentDesktops.h"
#include "isSandboxed.h"
#include "processEnvironment.h"
#include "startDetached.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
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

Command run(const QString &program, const QStringList &arguments = {})
{
    return {.program = program, .arguments = arguments, .pages = {}};
}

Command runOnFirstOf(const QString &program, const QStringList &pages)
{
    return {.program = program, .arguments = {}, .pages = pages};
}

Desktop gnome()
{
    const QString program = QStringLiteral("gnome-control-center");
    const QString entry = QStandardPaths::locate(
        QStandardPaths::ApplicationsLocation, applicationIdentifier + QStringLiteral(".desktop"));
    return {
        .names = {QStringLiteral("GNOME")},
        .overview = run(program),
        // All of it on one page from GNOME 45 on; before that, the page on file history and Trash.
        .privacy = runOnFirstOf(program, {QStringLiteral("privacy"), QStringLiteral("usage")}),
        // This program's page has the switch itself, but is only there if the desktop entry is.
        .notifications = entry.isEmpty()
                             ? run(program, {QStringLiteral("notifications")})
                             : run(program, {QStringLiteral("applications"), applicationIdentifier}),
    };
}

Desktop plasma()
{
    const QString program = QStringLiteral("systemsettings");
    // In a Flatpak, what a program may touch has a page of its own, named anew in the course of Plasma 6.
    return {
        .names = {QStringLiteral("KDE")},
        .overview = run(program),
        .privacy = isSandboxed()
                       ? runOnFirstOf(
                             program, {QStringLiteral("kcm_app-permissions"), QStringLiteral("kcm_flatpak")})
                       : run(program, {QStringLiteral("kcm_recentFiles")}),
        .notifications =
            run(program, {QStringLiteral("kcm_notifications"), QStringLiteral("--args"),
                          QStringLiteral("--desktop-entry ") + applicationIdentifier}),
    };
}

Desktop cinnamon()
{
    const QString program = QStringLiteral("cinnamon-settings");
    return {
        .names = {QStringLiteral("X-Cinnamon"), QStringLiteral("Cinnamon")},
        .overview = run(program),
        .privacy = run(program, {QStringLiteral("privacy")}),
        .notifications = run(program, {QStringLiteral("notifications")}),
    };
}

/// A desktop that has a program for each kind of settings, and none about privacy.
Desktop ofPrograms(const QString &name, const QString &overview, const QString &notifications)
{
    return {
        .names = {name},
        .overview = run(overview),
        .privacy = run(overview),
        .notifications = run(notifications),
    };
}

std::vector<Desktop> knownDesktops()
{
    return {
        gnome(),
        plasma(),
        cinnamon(),
        ofPrograms(
            QStringLiteral("XFCE"), QStringLiteral("xfce4-settings-manager"),
            QStringLiteral("xfce4-notifyd-config")),
        ofPrograms(
            QStringLiteral("MATE"), QStringLiteral("mate-control-center"),
            QStringLiteral("mate-notification-properties")),
        ofPrograms(
            QStringLiteral("LXQt"), QStringLiteral("lxqt-config"),
            QStringLiteral("lxqt-config-notificationd")),
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
    const QStringList current = currentDesktops();
    const std::vector<Desktop> known = knownDesktops();
    for (const QString &name : current) {
        const auto desktop = std::ranges::find_if(known, [&name](const Desktop &candidate) {
            return candidate.names.contains(name, Qt::CaseInsensitive);
        });
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
                          : QString(QStringLiteral("the desktop isn't known: ") + current.join(u':')));
}

bool SystemSettings::start(const Command &command)
{
    return command.pages.isEmpty() ? startDetached(command.program, command.arguments, failure)
                                   : startOnListedPage(command);
}
