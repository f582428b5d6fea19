#pragma once

#include <QString>
#include <QUrl>

/// Asks `org.freedesktop.portal.OpenURI` to open the URL, as a sandboxed program must. Files are handed over
/// as descriptors, because their paths mean nothing outside. Answers whether it was asked; nothing is waited
/// for. A failure, also one that comes later, prints one line that begins with `reason`.
bool openThroughPortal(const QUrl &url, const QString &reason);
