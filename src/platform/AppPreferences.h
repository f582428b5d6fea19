#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

/// Settings of another program, by its application identifier and their keys; values keep their types. Any
/// thread; nothing is kept, each call looks afresh.
///
/// What the identifier and the key of the system's screenshot tool (`com.apple.screencapture`,
/// `show-thumbnail`) mean depends on the session: on Plasma they are Spectacle's own setting. Everything else
/// is kept in a file of this program's, `$XDG_CONFIG_HOME/Deskbroom/AppPreferences.json`, an object for each
/// identifier, which no other program reads.
class AppPreferences final {
public:
    AppPreferences() = delete;

    /// The identifier of the system's screenshot tool, and its key for whether it shows a screenshot before
    /// it saves it: a boolean.
    static inline const QString screenshotTool = QStringLiteral("com.apple.screencapture");
    static inline const QString showThumbnail = QStringLiteral("show-thumbnail");

    /// The value that counts for the current user; none if there is none.
    [[nodiscard]] static std::optional<QJsonValue>
    copyAppValue(const QString &key, const QString &applicationID);

    /// A value that can't be written, or that the other program's setting can't hold, is dropped with one
    /// printed line: the next `copyAppValue` tells what counts.
    static void setValue(const QString &key, const QJsonValue &value, const QString &applicationID);

    /// Has the values that were set take effect outside of this process. Here they are on the disk already
    /// when `setValue` returns.
    static void appSynchronize(const QString &applicationID);
};
