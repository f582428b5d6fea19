#include "Workspace.h"

#include "SystemSettings.h"
#include "isSandboxed.h"
#include "openThroughPortal.h"
#include "print.h"
#include "startDetached.h"

#include <utility>

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
        return openThroughPortal(url, failure);
    }
    return startDetached(QStringLiteral("xdg-open"), {QString::fromLatin1(url.toEncoded())}, failure);
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
