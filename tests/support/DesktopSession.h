#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QStringList>
#include <QTemporaryDir>

class TemporaryHome;

/// A desktop's session as its programs find it, with what its user has set. In contents and values `%HOME%`
/// stands for the home folder; paths are relative to it.
struct DesktopSession {
    struct Setting {
        QString schema;
        QString key;
        /// In GVariant's text format.
        QString value;
    };

    using Files = QMap<QString, QByteArray>;

    /// As in `XDG_CURRENT_DESKTOP`.
    QByteArray desktop;
    // The braces are for sessions that name only some members.
    // NOLINTBEGIN(readability-redundant-member-init)
    Files files = {};
    QList<Setting> settings = {};
    QMap<QByteArray, QByteArray> environment = {};
    QStringList folders = {};
    /// The folder that the test expects: the home folder itself if empty, else with a leading slash.
    QString expected = {};
    // NOLINTEND(readability-redundant-member-init)

    /// Makes it the session of this process. It has a Pictures folder in its `user-dirs.dirs`, unless `files`
    /// has another such file.
    void start(const TemporaryHome &home) const;
};

Q_DECLARE_METATYPE(DesktopSession)

/// GSettings as they are on the machine, with a few more schemas of programs that tests don't install, kept
/// in a file of the temporary home instead of the desktop's database.
class PrivateSettings final {
public:
    /// `schemas`: the elements of the schema file.
    explicit PrivateSettings(const QByteArray &schemas);

    /// Lets programs of this process see the additional schemas, or hides them.
    void show() const;
    void hide() const;

    static void set(const DesktopSession::Setting &setting);

private:
    QTemporaryDir m_folder;
};
