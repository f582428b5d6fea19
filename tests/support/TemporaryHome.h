#pragma once

#include <QString>
#include <QTemporaryDir>

/// A home of its own for a test: HOME and every XDG base and user directory point into a temporary folder
/// that goes with the object, and the session is that of no known desktop. Make it before anything asks for a
/// standard folder.
///
/// The folder lies under `DESKBROOM_TEST_ROOT` if that is set, else under the system's temporary folder.
class TemporaryHome final {
public:
    TemporaryHome();

    [[nodiscard]] QString path() const { return m_folder.path(); }

    [[nodiscard]] QString desktop() const { return path() + QStringLiteral("/Desktop"); }

    [[nodiscard]] QString pictures() const { return path() + QStringLiteral("/Pictures"); }

    [[nodiscard]] QString downloads() const { return path() + QStringLiteral("/Downloads"); }

    [[nodiscard]] QString trashedFiles() const
    {
        return path() + QStringLiteral("/.local/share/Trash/files");
    }

private:
    QTemporaryDir m_folder;
};
