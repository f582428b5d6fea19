#include "HomeTrash.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <QDateTime>
#include <QDir>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace {

constexpr QByteArrayView infoSuffix = ".trashinfo";

QString trashFolder()
{
    const QString configured = qEnvironmentVariable("XDG_DATA_HOME");
    return (QDir::isAbsolutePath(configured) ? configured
                                             : QDir::homePath() + QStringLiteral("/.local/share")) +
           QStringLiteral("/Trash");
}

/// Opens a folder and makes it before where it is missing, for the user alone as the specification asks.
FileDescriptor openFolder(const QString &path)
{
    const QByteArray native = nativePath(path);
    for (qsizetype slash = native.indexOf('/', 1); slash > 0; slash = native.indexOf('/', slash + 1)) {
        ::mkdir(native.first(slash).constData(), S_IRWXU);
    }
    ::mkdir(native.constData(), S_IRWXU);
    return FileDescriptor(::open(native.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

QByteArray info(const QByteArray &path)
{
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") +
           "\nDeletionDate=" + QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1() + '\n';
}

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const auto count = ::write(descriptor, bytes.data(), size_t(bytes.size()));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.sliced(std::max<qsizetype>(count, 0));
    }
    return true;
}

/// A new info file, which reserves its name in the Trash; removed again unless it is kept.
class InfoFile final {
public:
    InfoFile(const FileDescriptor &folder, QByteArray name)
        : m_folder(folder.get()),
          m_name(std::move(name)),
          m_file(::openat(
              m_folder, m_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR))
    {
    }

    Q_DISABLE_COPY_MOVE(InfoFile)

    ~InfoFile()
    {
        if (m_file.isValid() && !m_isKept) {
            ::unlinkat(m_folder, m_name.constData(), 0);
        }
    }

    [[nodiscard]] bool isCreated() const { return m_file.isValid(); }

    /// Whether the bytes are on the disk.
    [[nodiscard]] bool write(QByteArrayView bytes) const
    {
        return writeAll(m_file.get(), bytes) && ::fsync(m_file.get()) == 0;
    }

    void keep() { m_isKept = true; }

private:
    int m_folder;
    QByteArray m_name;
    FileDescriptor m_file;
    bool m_isKept = false;
};

/// One attempt under one name: 0, EEXIST if the name is taken, or another error number.
int takeAs(
    const QByteArray &name, const QByteArray &path, const FileDescriptor &files, const FileDescriptor &infos)
{
    InfoFile infoFile(infos, name + infoSuffix);
    if (!infoFile.isCreated() || !infoFile.write(info(path)) ||
        ::renameat2(AT_FDCWD, path.constData(), files.get(), name.constData(), RENAME_NOREPLACE) != 0) {
        return errno;
    }
    infoFile.keep();
    return 0;
}

/// Cuts text that is UTF-8, or nearly so, to a length without tearing a character apart.
QByteArray cut(const QByteArray &text, qsizetype length)
{
    if (text.size() <= length) {
        return text;
    }
    const auto isContinuation = [](char byte) { return (uchar(byte) & 0xC0U) == 0x80U; };
    // No character has more than three of them; in other encodings there may be no end of such bytes.
    const qsizetype shortest = length - 3;
    while (length > shortest && isContinuation(text[length])) {
        --length;
    }
    return text.first(length);
}

} // namespace

QByteArray HomeTrash::nameInTrash(const QByteArray &name, int attempt)
{
    constexpr qsizetype longest = NAME_MAX - infoSuffix.size();
    const qsizetype dot = name.lastIndexOf('.');
    // A suffix longer than any type's is part of the name.
    const bool hasSuffix = dot > 0 && name.size() - dot <= 16;
    const QByteArray number = attempt > 1 ? '.' + QByteArray::number(attempt) : QByteArray();
    const QByteArray suffix = number + (hasSuffix ? name.sliced(dot) : QByteArray());
    return cut(hasSuffix ? name.first(dot) : name, longest - suffix.size()) + suffix;
}

int HomeTrash::take(const QByteArray &path)
{
    const FileDescriptor files = openFolder(trashFolder() + QStringLiteral("/files"));
    if (!files.isValid()) {
        return errno;
    }
    const FileDescriptor infos = openFolder(trashFolder() + QStringLiteral("/info"));
    if (!infos.isValid()) {
        return errno;
    }
    const QByteArray name = path.sliced(path.lastIndexOf('/') + 1);
    for (int attempt = 1;; ++attempt) {
        const int errorNumber = takeAs(nameInTrash(name, attempt), path, files, infos);
        if (errorNumber != EEXIST) {
            return errorNumber;
        }
    }
}
