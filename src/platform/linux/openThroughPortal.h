#pragma once

#include <QString>
#include <QUrl>

/// What becomes of a file; another URL can only be opened.
enum class PortalRequest { Open, ShowInFolder };

/// Asks `org.freedesktop.portal.OpenURI` for it, as a sandboxed program must. Files are handed over as
/// descriptors, because their paths mean nothing outside. Answers whether it was asked; nothing is waited
/// for. A failure, also one that comes later, prints one line that begins with `reason`.
bool openThroughPortal(const QUrl &url, PortalRequest request, const QString &reason);
