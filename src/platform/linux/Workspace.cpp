#include "Workspace.h"

#include "SystemSettings.h"
#include "isSandboxed.h"
#include "openThroughPortal.h"
#include "print.h"
#include "showInFileManager.h"
#include "startDetached.h"

#include <QFileInfo>
#include <QSet>

#include <utility>

namespace {

bool openWithDesktop(const QUrl &url, const QString &failure)
{
    return startDetached(QStringLiteral("xdg-open"), {QString::fromLatin1(url.toEncoded())}, failure);
}

QString failureToShow(const QUrl &url)
{
    return QStringLiteral("Failed to show ") + url.toDisplayString() + QStringLiteral(": ");
}

QUrl folderOf(const QUrl &file)
{
    return QUrl::fromLocalFile(QFileInfo(file.toLocalFile()).path());
}

QList<QUrl> localFiles(const QList<QUrl> &urls)
{
    QList<QUrl> files;
    for (const QUrl &url : urls) {
        // A host's name before the path would make it a file of another machine.
        if (url.isLocalFile() && url.host().isEmpty()) {
            files.append(url);
        } else {
            print(failureToShow(url) + QStringLiteral("not a local file"));
        }
    }
    return files;
}

QList<QUrl> firstOfEachFolder(const QList<QUrl> &files)
{
    QSet<QUrl> folders;
    QList<QUrl> first;
    for (const QUrl &file : files) {
        if (const QUrl folder = folderOf(file); !folders.contains(folder)) {
            folders.insert(folder);
            first.append(file);
        }
    }
    return first;
}

} // namespace

Workspace &Workspace::shared()
{
    static Workspace workspace;
    return workspace;
}

void Workspace::setOwnSettings(std::function<void()> show)
{
    m_ownSettings = std::move(show);
}

bool Workspace::open(const QUrl &url)
{
    const QString failure = QStringLiteral("Failed to open ") + url.toDisplayString() + QStringLiteral(": ");
    // Without a scheme it could be taken for an option or a file name.
    if (!url.isValid() || url.isRelative()) {
        print(failure + (url.errorString().isEmpty() ? QStringLiteral("not a URL") : url.errorString()));
        return false;
    }
    if (SystemSettings::isLink(url)) {
        return openSystemSettings(url);
    }
    if (isSandboxed()) {
        return openThroughPortal(url, PortalRequest::Open, failure);
    }
    return openWithDesktop(url, failure);
}

bool Workspace::activateFileViewerSelecting(const QList<QUrl> &urls)
{
    const QList<QUrl> files = localFiles(urls);
    if (files.isEmpty()) {
        return false;
    }
    const QList<QUrl> onePerFolder = firstOfEachFolder(files);
    if (isSandboxed()) {
        // It shows one file at a time.
        qsizetype asked = 0;
        for (const QUrl &file : onePerFolder) {
            asked += openThroughPortal(file, PortalRequest::ShowInFolder, failureToShow(file)) ? 1 : 0;
        }
        return asked > 0;
    }
    showInFileManager(files, [onePerFolder] {
        for (const QUrl &file : onePerFolder) {
            openWithDesktop(folderOf(file), failureToShow(file));
        }
    });
    return true;
}

bool Workspace::openSystemSettings(const QUrl &link) const
{
    const auto command = SystemSettings::command(SystemSettings::paneOf(link));
    if (command) {
        return SystemSettings::start(*command);
    }
    if (m_ownSettings) {
        m_ownSettings();
        return true;
    }
    print(QStringLiteral("Failed to open System Settings: ") + command.error());
    return false;
}
