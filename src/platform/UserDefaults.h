#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The user's own settings: typed values under string keys, in `$XDG_CONFIG_HOME/Deskbroom/Deskbroom.json`.
///
/// A value keeps its type (`true`, `5`, bytes as `{"data": "<base64>"}`), an absent key differs from a stored
/// zero, and keys that this version doesn't know survive. A change is on disk, by temporary file and rename,
/// when the setter returns. Any thread and several processes: an object holds nothing, each call looks at
/// the file afresh (a few microseconds while it stays as it is).
///
/// A file that can't be understood is set aside under the name `Deskbroom.json.damaged` (`.damaged-2` and so
/// on if there is one), and the defaults apply. A value that can't be written may hold in this process until
/// it can be: then the next change writes it too. Both print one line.
class UserDefaults final {
public:
    static UserDefaults &standard();

    [[nodiscard]] bool contains(const QString &key) const;

    /// 0 if the key is absent or holds something else than a whole number.
    [[nodiscard]] qint64 integer(const QString &key) const;

    /// False if the key is absent or holds something else than a boolean.
    [[nodiscard]] bool boolean(const QString &key) const;

    /// None if the key is absent or holds something else than bytes.
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const;

    void setInteger(const QString &key, qint64 value);
    void setBoolean(const QString &key, bool value);
    void setData(const QString &key, const QByteArray &value);
};
