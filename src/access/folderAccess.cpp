#include "folderAccess.h"

#include "FileManager.h"
#include "SecurityScopedAccess.h"
#include "print.h"
#include "storedBookmark.h"

Result<qsizetype> folderAccess::entryCount(const FileManager &fileManager, const QString &path)
{
    qsizetype count = 0;
    const auto state = fileManager.contentsOfDirectory(
        path, FileManager::ListingOption::None, [&count](QByteArrayView /*name*/) { ++count; });
    if (!state) {
        return std::unexpected(state.error());
    }
    return count;
}

bool folderAccess::verify(
    const FileManager &fileManager, const QString &bookmarkKey, const QByteArray &bookmark)
{
    const QString failure = QStringLiteral("Error verifying access: ");
    const auto url = storedBookmark::resolve(bookmarkKey, bookmark);
    if (!url) {
        print(failure + url.error().description());
        return false;
    }
    auto access = SecurityScopedAccess::start(*url);
    if (!access) {
        print(QStringLiteral("Could not start accessing security-scoped resource"));
        return false;
    }
    const auto count = entryCount(fileManager, url->path());
    if (!count) {
        access.reset();
        print(failure + count.error().description());
        return false;
    }
    print(QStringLiteral("Successfully accessed %1 files in ").arg(*count) + url->path());
    return true;
}
