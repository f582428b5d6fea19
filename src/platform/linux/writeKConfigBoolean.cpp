#include "writeKConfigBoolean.h"

#include "FileStatus.h"
#include "kconfigText.h"
#include "replaceFile.h"
#include "settingsFile.h"

#include <QFile>
#include <QLockFile>

#include <unistd.h>

#include <cerrno>
#include <climits>

namespace {

std::unexpected<Error> failure(Error::CocoaCode code, const QString &description)
{
    return std::unexpected(
        Error{.domain = Error::cocoaDomain, .code = code, .localizedDescription = description});
}

/// What is at the end of the symbolic links that begin at the path, whether it is there or not. Links in a
/// circle lead somewhere among them, where nothing can be read.
QByteArray behindLinks(QByteArray path)
{
    constexpr int mostLinks = 40;
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    for (int links = 0; links < mostLinks; ++links) {
        const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
        if (length <= 0) {
            break;
        }
        const QByteArray next = target.first(length);
        path = next.startsWith('/') ? next : path.first(path.lastIndexOf('/') + 1) + next;
    }
    return path;
}

/// What the file holds; nothing if there is none yet. An error if it isn't ours to change.
Result<QByteArray> changeableContents(const QByteArray &path)
{
    auto contents = settingsFile::read(path);
    if (!contents) {
        return contents.error().isCocoa(Error::FileNoSuchFile) ? Result<QByteArray>() : contents;
    }
    if (contents->contains('\0') || !contents->isValidUtf8()) {
        return failure(Error::FileReadUnknown, QStringLiteral("Not a text file"));
    }
    if (::access(path.constData(), W_OK) != 0) {
        return std::unexpected(Error::fromErrno(errno, Error::FileWriteUnknown));
    }
    return contents;
}

/// The access rights that its replacement needs; an error if the file belongs to somebody else.
Result<mode_t> modeOf(const QByteArray &path)
{
    constexpr mode_t accessRights = 07777;
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0) {
        return FileReplacement::ownerOnly;
    }
    if (status.st_uid != ::geteuid()) {
        return std::unexpected(Error::fromErrno(EPERM, Error::FileWriteUnknown));
    }
    return status.st_mode & accessRights;
}

QByteArray lineBreakOf(QByteArrayView text)
{
    return text.contains("\r\n") ? "\r\n" : "\n";
}

/// With `line` as a line of its own behind `previous`. A file whose last line has no line break keeps it so.
QByteArray withLineBehind(const QByteArray &contents, QByteArrayView previous, const QByteArray &line)
{
    const qsizetype end = previous.data() + previous.size() - contents.constData();
    const bool isTerminated = previous.endsWith('\n');
    const QByteArray lineBreak = lineBreakOf(isTerminated ? previous : QByteArrayView(contents));
    const QByteArray added = isTerminated ? line + lineBreak : lineBreak + line;
    return QByteArray(contents).insert(end, added);
}

QByteArray withGroupAtEnd(const QByteArray &contents, const QByteArray &header, const QByteArray &line)
{
    const QByteArray lineBreak = lineBreakOf(contents);
    QByteArray before;
    if (!contents.isEmpty()) {
        before = contents + (contents.endsWith('\n') ? QByteArray() : lineBreak) + lineBreak;
    }
    return before + header + lineBreak + line + lineBreak;
}

/// In the place of an entry: its value, or all of it if it is one that deletes.
QByteArray withEntry(
    const QByteArray &contents, const kconfigText::Line &entry, QByteArrayView key, QByteArrayView value)
{
    const bool isDeleted = entry.options.contains('d');
    const QByteArrayView replaced = isDeleted ? entry.text : entry.value;
    const QByteArray replacement =
        isDeleted ? key.toByteArray() + '=' + value.toByteArray() : value.toByteArray();
    return QByteArray(contents).replace(replaced.data() - contents.constData(), replaced.size(), replacement);
}

Result<QByteArray>
changed(const QByteArray &contents, const QByteArray &group, const QByteArray &key, const QByteArray &value)
{
    const QByteArray header = '[' + group + ']';
    const auto found = kconfigText::find(contents, header, key);
    if (found.isImmutable) {
        return failure(Error::FileNoPermission, QStringLiteral("Marked as immutable"));
    }
    if (found.entry) {
        return withEntry(contents, *found.entry, key, value);
    }
    const QByteArray line = key + '=' + value;
    return found.endOfGroup ? withLineBehind(contents, found.endOfGroup->line, line)
                            : withGroupAtEnd(contents, header, line);
}

} // namespace

Result<void>
writeKConfigBoolean(const QString &path, const QByteArray &group, const QByteArray &key, bool value)
{
    constexpr int lockMilliseconds = 100;
    const QByteArray target = behindLinks(nativePath(path));
    QLockFile lock(QFile::decodeName(target) + QStringLiteral(".lock"));
    // Where the lock can't be made, the file can't either, or its folder is still to be made.
    if (!lock.tryLock(lockMilliseconds) && lock.error() == QLockFile::LockFailedError) {
        return failure(Error::FileInUse, QStringLiteral("Another program is changing it"));
    }
    const auto contents = changeableContents(target);
    if (!contents) {
        return std::unexpected(contents.error());
    }
    const auto mode = modeOf(target);
    if (!mode) {
        return std::unexpected(mode.error());
    }
    const auto next = changed(*contents, group, key, value ? "true" : "false");
    if (!next) {
        return std::unexpected(next.error());
    }
    if (*next == *contents) {
        return {};
    }
    return replaceFile(target, *next, {.durability = FileReplacement::Durability::IsSynced, .mode = *mode});
}
