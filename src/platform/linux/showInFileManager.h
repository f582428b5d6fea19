#pragma once

#include <QList>
#include <QUrl>

#include <functional>

/// Asks the desktop's file manager to show these files selected in their folders, by
/// `org.freedesktop.FileManager1.ShowItems` (File Manager DBus Interface). Nothing is waited for. `otherwise`
/// is called, later, if there is no such file manager, or if it refuses or keeps silent. GUI thread.
void showInFileManager(const QList<QUrl> &files, std::function<void()> otherwise);
