#pragma once

#include <QString>
#include <QTemporaryDir>

/// A home for one benchmark, below the working folder: the temporary folder may be a memory file system,
/// and what counts is a disk's.
class TemporaryFolder final {
public:
    TemporaryFolder();

    [[nodiscard]] QString path() const { return m_folder.path(); }

    /// Fills a new subfolder with empty files, of which one in `stride` is a screenshot and the others are
    /// what people keep on a desktop. Answers its path.
    [[nodiscard]] QString makeFilled(const QString &name, int count, int stride) const;

    /// Sets HOME and the XDG variables to this folder.
    void becomeHome() const;

private:
    QTemporaryDir m_folder;
};
