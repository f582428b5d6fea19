#include "Bookmark.h"

#include "BookmarkData.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace {

using Bookmark::Origin;

QUrl fileUrl(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

QByteArray makeBookmark(const QString &path, Origin origin = Origin::Automatic)
{
    return Bookmark::make(fileUrl(path), origin).value_or(QByteArray());
}

/// The code of the error in the bookmarks' own domain; 0 if there is none.
int bookmarkErrorCode(const QByteArray &bytes)
{
    const auto resolved = Bookmark::resolve(bytes);
    return resolved || resolved.error().domain != Bookmark::errorDomain ? 0 : resolved.error().code;
}

/// The bytes with a checksum that is right again after they were changed.
QByteArray withChecksum(const QByteArray &content)
{
    return content + QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

QByteArray withoutChecksum(const QByteArray &bookmark)
{
    return bookmark.chopped(QCryptographicHash::hashLength(QCryptographicHash::Sha256));
}

} // namespace

class BookmarkTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void folderAtItsPathIsFresh_data();
    void folderAtItsPathIsFresh();
    void remembersWhoPickedTheFolder();
    void aPickedFolderIsKnownWhereverItIs();
    void onlyAPickedFolderIsAPickedOne();
    void staysFreshWhenContentsChange();
    void folderBehindASymbolicLinkKeepsTheLinksUrl();
    void renamedFolderIsStaleWithItsNewUrl();
    void folderMovedElsewhereIsFoundByKeptAccess();
    void folderMovedElsewhereIsNotFoundWithoutKeptAccess();
    void keptAccessToAnotherFolderMisleadsNobody();
    void folderInTheTrashIsGone();
    void replacedFolderIsStaleWithItsUrl();
    void replacedFolderIsStaleWithTheUrlOfTheOneThatMoved();
    void returnedFolderIsFreshAgain();
    void missingFolderIsNoSuchFile();
    void removedFolderIsNotFoundByKeptAccess();
    void fileAtThePathIsNoFolder();
    void unreachableFolderIsNoPermission();
    void cannotBeMadeOfWhatIsNoFolder();

    void foreignBytesAreDamaged_data();
    void foreignBytesAreDamaged();
    void everyChangedByteIsNoticed();
    void everyCutIsNoticed();
    void newerVersionSaysSo();
    void rightChecksumOverRubbishIsDamaged();
    void randomBytesAreDamaged();

    void identityWithoutBirthTimeAsksTheFileSystem();
    void identityAsksTheHandle();
};

void BookmarkTest::cleanup()
{
    SecurityScopedAccess::keep(std::nullopt);
}

void BookmarkTest::folderAtItsPathIsFresh_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("Screenshots");
    QTest::newRow("line break") << QStringLiteral("two\nlines");
    QTest::newRow("percent and hash") << QStringLiteral("50%20#?");
    QTest::newRow("right to left") << QStringLiteral("\u202Eתמונות");
    QTest::newRow("255 bytes") << QString(255, u'x');
}

void BookmarkTest::folderAtItsPathIsFresh()
{
    QFETCH(const QString, name);
    const TemporaryHome home;
    const QString path = home.path() + u'/' + name;
    QVERIFY(QDir().mkdir(path));
    // A URL of a folder may end in a slash; the resolved one never does.
    for (const QString &spelling : {path, QString(path + u'/')}) {
        const auto resolved = Bookmark::resolve(makeBookmark(spelling));
        QVERIFY(resolved.has_value());
        QCOMPARE(resolved->url, fileUrl(path));
        QVERIFY(!resolved->isStale);
    }
}

void BookmarkTest::remembersWhoPickedTheFolder()
{
    const TemporaryHome home;
    QVERIFY(!Bookmark::resolve(makeBookmark(home.desktop(), Origin::Automatic))->pickedByUser);
    const QByteArray picked = makeBookmark(home.desktop(), Origin::PickedByUser);
    QVERIFY(Bookmark::resolve(picked)->pickedByUser);
    QVERIFY(QDir().rename(home.desktop(), home.path() + QStringLiteral("/Other")));
    QVERIFY(Bookmark::resolve(picked)->pickedByUser);
}

void BookmarkTest::aPickedFolderIsKnownWhereverItIs()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop(), Origin::PickedByUser);
    QCOMPARE(Bookmark::pickedFolder(bookmark), fileUrl(home.desktop()));
    const QString renamed = home.path() + QStringLiteral("/renamed");
    QVERIFY(QDir().rename(home.desktop(), renamed));
    QCOMPARE(Bookmark::pickedFolder(bookmark), fileUrl(renamed));
    // As when its drive is unplugged: it is where it was, and can't be listed.
    QVERIFY(QDir().rmdir(renamed));
    QCOMPARE(Bookmark::pickedFolder(bookmark), fileUrl(home.desktop()));
}

void BookmarkTest::onlyAPickedFolderIsAPickedOne()
{
    const TemporaryHome home;
    QVERIFY(!Bookmark::pickedFolder(makeBookmark(home.desktop(), Origin::Automatic)));
    QVERIFY(!Bookmark::pickedFolder("no bookmark"));
    QCOMPARE(Bookmark::origin(makeBookmark(home.desktop(), Origin::Automatic)), Origin::Automatic);
    QCOMPARE(Bookmark::origin(makeBookmark(home.desktop(), Origin::PickedByUser)), Origin::PickedByUser);
    QCOMPARE(Bookmark::origin("no bookmark"), Origin::Automatic);
}

void BookmarkTest::staysFreshWhenContentsChange()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    QVERIFY(QDir(home.desktop()).mkdir(QStringLiteral("new")));
    QCOMPARE(::chmod(QFile::encodeName(home.desktop()).constData(), 0711), 0);
    QVERIFY(!Bookmark::resolve(bookmark)->isStale);
}

void BookmarkTest::folderBehindASymbolicLinkKeepsTheLinksUrl()
{
    const TemporaryHome home;
    const QString link = home.path() + QStringLiteral("/link");
    QVERIFY(QFile::link(home.desktop(), link));
    const QByteArray bookmark = makeBookmark(link);
    QCOMPARE(Bookmark::resolve(bookmark)->url, fileUrl(link));
    QVERIFY(!Bookmark::resolve(bookmark)->isStale);

    QVERIFY(QFile::remove(link));
    QVERIFY(QFile::link(home.pictures(), link));
    const auto retargeted = Bookmark::resolve(bookmark);
    QVERIFY(retargeted && retargeted->isStale);
}

void BookmarkTest::renamedFolderIsStaleWithItsNewUrl()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    const QString renamed = home.path() + QStringLiteral("/Schreibtisch\n50%");
    QVERIFY(QDir().rename(home.desktop(), renamed));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(resolved && resolved->isStale);
    QCOMPARE(resolved->url, fileUrl(renamed));
}

void BookmarkTest::folderMovedElsewhereIsFoundByKeptAccess()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(fileUrl(home.desktop())));
    const QString moved = home.pictures() + QStringLiteral("/moved");
    QVERIFY(QDir().rename(home.desktop(), moved));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(resolved && resolved->isStale);
    QCOMPARE(resolved->url, fileUrl(moved));
}

void BookmarkTest::folderMovedElsewhereIsNotFoundWithoutKeptAccess()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    QVERIFY(QDir().rename(home.desktop(), home.pictures() + QStringLiteral("/moved")));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(!resolved && resolved.error().isCocoa(Error::FileNoSuchFile));
}

void BookmarkTest::keptAccessToAnotherFolderMisleadsNobody()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(fileUrl(home.pictures())));
    QVERIFY(!Bookmark::resolve(bookmark)->isStale);
    QVERIFY(QDir().rmdir(home.desktop()));
    QVERIFY(!Bookmark::resolve(bookmark));
}

void BookmarkTest::folderInTheTrashIsGone()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop(), Origin::PickedByUser);
    SecurityScopedAccess::keep(SecurityScopedAccess::start(fileUrl(home.desktop())));
    QVERIFY(QDir().mkpath(home.trashedFiles()));
    QVERIFY(QDir().rename(home.desktop(), home.trashedFiles() + QStringLiteral("/Desktop")));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(!resolved && resolved.error().isCocoa(Error::FileNoSuchFile));
}

void BookmarkTest::replacedFolderIsStaleWithItsUrl()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    // Made again in the same place it may get the same inode: birth time and handle tell.
    QVERIFY(QDir().rmdir(home.desktop()));
    QVERIFY(QDir().mkdir(home.desktop()));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(resolved && resolved->isStale);
    QCOMPARE(resolved->url, fileUrl(home.desktop()));
}

void BookmarkTest::replacedFolderIsStaleWithTheUrlOfTheOneThatMoved()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop(), Origin::PickedByUser);
    const QByteArray automatic = makeBookmark(home.desktop(), Origin::Automatic);
    const QString renamed = home.path() + QStringLiteral("/renamed");
    QVERIFY(QDir().rename(home.desktop(), renamed));
    QVERIFY(QDir().mkdir(home.desktop()));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(resolved && resolved->isStale);
    QCOMPARE(resolved->url, fileUrl(renamed));
    // A folder that nobody picked counts by its name.
    QVERIFY(Bookmark::resolve(automatic)->isStale);
    QCOMPARE(Bookmark::resolve(automatic)->url, fileUrl(home.desktop()));
}

void BookmarkTest::returnedFolderIsFreshAgain()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    const QString away = home.pictures() + QStringLiteral("/away");
    QVERIFY(QDir().rename(home.desktop(), away));
    QVERIFY(!Bookmark::resolve(bookmark));
    QVERIFY(QDir().rename(away, home.desktop()));
    QVERIFY(!Bookmark::resolve(bookmark)->isStale);
}

void BookmarkTest::missingFolderIsNoSuchFile()
{
    const TemporaryHome home;
    const QString folder = home.path() + QStringLiteral("/one/two");
    QVERIFY(QDir().mkpath(folder));
    const QByteArray bookmark = makeBookmark(folder);
    QVERIFY(QDir().rmdir(folder));
    const auto gone = Bookmark::resolve(bookmark);
    QVERIFY(!gone && gone.error().isCocoa(Error::FileNoSuchFile));
    QVERIFY(QDir().rmdir(home.path() + QStringLiteral("/one")));
    const auto goneWithParent = Bookmark::resolve(bookmark);
    QVERIFY(!goneWithParent && goneWithParent.error().isCocoa(Error::FileNoSuchFile));
}

void BookmarkTest::removedFolderIsNotFoundByKeptAccess()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(fileUrl(home.desktop())));
    QVERIFY(QDir().rmdir(home.desktop()));
    // The system now names the held folder by its last path and " (deleted)".
    QVERIFY(QDir().mkdir(home.desktop() + QStringLiteral(" (deleted)")));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(!resolved && resolved.error().isCocoa(Error::FileNoSuchFile));
}

void BookmarkTest::fileAtThePathIsNoFolder()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    QVERIFY(QDir().rmdir(home.desktop()));
    QFile file(home.desktop());
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto resolved = Bookmark::resolve(bookmark);
    QVERIFY(!resolved && resolved.error().isCocoa(Error::FileNoSuchFile));
}

void BookmarkTest::unreachableFolderIsNoPermission()
{
    if (::geteuid() == 0) {
        QSKIP("Root may enter every folder");
    }
    const TemporaryHome home;
    const QString folder = home.desktop() + QStringLiteral("/inner");
    QVERIFY(QDir().mkdir(folder));
    const QByteArray bookmark = makeBookmark(folder);
    const QByteArray parent = QFile::encodeName(home.desktop());
    QCOMPARE(::chmod(parent.constData(), 0), 0);
    const auto resolved = Bookmark::resolve(bookmark);
    QCOMPARE(::chmod(parent.constData(), 0700), 0);
    QVERIFY(!resolved && resolved.error().isCocoa(Error::FileNoPermission));
}

void BookmarkTest::cannotBeMadeOfWhatIsNoFolder()
{
    const TemporaryHome home;
    QFile file(home.desktop() + QStringLiteral("/file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QUrl urls[] = {
        fileUrl(file.fileName()), fileUrl(home.path() + QStringLiteral("/missing")), QUrl(),
        QUrl(QStringLiteral("https://example.org/folder"))};
    for (const QUrl &url : urls) {
        const auto bookmark = Bookmark::make(url, Origin::Automatic);
        QVERIFY(!bookmark && bookmark.error().isCocoa(Error::FileNoSuchFile));
    }
}

void BookmarkTest::foreignBytesAreDamaged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("one") << QByteArray("x");
    QTest::newRow("text") << QByteArray("/home/user/Desktop");
    QTest::newRow("zeros") << QByteArray(200, '\0');
    QTest::newRow("a checksum alone") << withChecksum({});
    QTest::newRow("another platform's")
        << QByteArray("book" + QByteArray(4, '\0') + "mark" + QByteArray(500, 'x'));
}

void BookmarkTest::foreignBytesAreDamaged()
{
    QFETCH(const QByteArray, bytes);
    QCOMPARE(bookmarkErrorCode(bytes), Bookmark::Damaged);
}

void BookmarkTest::everyChangedByteIsNoticed()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    QVERIFY(!bookmark.isEmpty());
    for (qsizetype i = 0; i < bookmark.size(); ++i) {
        QByteArray changed = bookmark;
        changed[i] = char(uchar(changed[i]) ^ 0x10U);
        QCOMPARE(bookmarkErrorCode(changed), Bookmark::Damaged);
    }
}

void BookmarkTest::everyCutIsNoticed()
{
    const TemporaryHome home;
    const QByteArray bookmark = makeBookmark(home.desktop());
    for (qsizetype length = 0; length < bookmark.size(); ++length) {
        QCOMPARE(bookmarkErrorCode(bookmark.first(length)), Bookmark::Damaged);
    }
    QCOMPARE(bookmarkErrorCode(bookmark + 'x'), Bookmark::Damaged);
    QCOMPARE(bookmarkErrorCode(withChecksum(withoutChecksum(bookmark) + 'x')), Bookmark::Damaged);
}

void BookmarkTest::newerVersionSaysSo()
{
    const TemporaryHome home;
    QByteArray content = withoutChecksum(makeBookmark(home.desktop()));
    // Magic word of four bytes, version of two.
    content[5] = char(content[5] + 1);
    QCOMPARE(bookmarkErrorCode(withChecksum(content)), Bookmark::NewerVersion);
    QCOMPARE(
        bookmarkErrorCode(withChecksum(content + "more than this version knows")), Bookmark::NewerVersion);
}

void BookmarkTest::rightChecksumOverRubbishIsDamaged()
{
    const TemporaryHome home;
    const QByteArray content = withoutChecksum(makeBookmark(home.desktop()));
    for (qsizetype length = 1; length < content.size(); ++length) {
        QCOMPARE(bookmarkErrorCode(withChecksum(content.first(length))), Bookmark::Damaged);
    }
    BookmarkData relative;
    relative.path = "Desktop";
    QCOMPARE(bookmarkErrorCode(relative.encoded()), Bookmark::Damaged);
}

void BookmarkTest::randomBytesAreDamaged()
{
    const TemporaryHome home;
    const QByteArray content = withoutChecksum(makeBookmark(home.desktop()));
    QRandomGenerator random(20'240'607);
    for (int round = 0; round < 5000; ++round) {
        QByteArray bytes(random.bounded(300), Qt::Uninitialized);
        std::ranges::generate(bytes, [&random] { return char(random.bounded(256)); });
        QCOMPARE(bookmarkErrorCode(bytes), Bookmark::Damaged);

        // With the right beginning and a right checksum, the fields themselves are rubbish: any answer will
        // do that isn't a crash, and none is a fresh folder.
        const auto resolved = Bookmark::resolve(withChecksum(content.first(6) + bytes));
        QVERIFY(!resolved || resolved->isStale);
    }
}

void BookmarkTest::identityWithoutBirthTimeAsksTheFileSystem()
{
    const FolderIdentity known{.fileSystem = 1, .inode = 2, .birthNs = 3, .handle = {}};
    FolderIdentity other = known;
    other.fileSystem = 9;
    QVERIFY(known.isSameFolder(other));
    other.birthNs = std::nullopt;
    QVERIFY(!known.isSameFolder(other));
    other.fileSystem = 1;
    QVERIFY(known.isSameFolder(other));
    other.inode = 9;
    QVERIFY(!known.isSameFolder(other));
}

void BookmarkTest::identityAsksTheHandle()
{
    const FolderIdentity known{.fileSystem = 1, .inode = 2, .birthNs = {}, .handle = "1:a"};
    FolderIdentity other = known;
    QVERIFY(known.isSameFolder(other));
    other.handle = "1:b";
    QVERIFY(!known.isSameFolder(other));
    other.handle.clear();
    QVERIFY(known.isSameFolder(other));
}

QTEST_GUILESS_MAIN(BookmarkTest)
#include "BookmarkTest.moc"
