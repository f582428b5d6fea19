#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

class QAction;

/// How an action looks as an item of `com.canonical.dbusmenu`: pure functions. A property that has its
/// default is left out.

/// The properties of `action`. Paints its icon.
[[nodiscard]] QVariantMap dbusMenuProperties(const QAction &action);

/// The toolkit marks the mnemonic by `&`, the protocol by `_`; each doubles its own mark.
[[nodiscard]] QString dbusMenuLabel(const QString &text);

/// One list of key names for each chord: modifiers as the protocol calls them, then the key by its X11
/// keysym's name, which is what panels look up. Empty for no shortcut.
[[nodiscard]] QList<QStringList> dbusMenuShortcut(const QKeySequence &shortcut);
