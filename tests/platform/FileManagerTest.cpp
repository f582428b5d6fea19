#include "FileManager.h"

#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace {

const FileManager &fileManager()
{
    return FileManager::defaultManager();
}

void makeFile(const QByteArray &path, const QByteArray &contents = {})
{
    const int descriptor = ::open(path.constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0600);
    QVERIFY2(descriptor >= 0, path.constData());
    QCOMPARE(::write(descriptor, contents.constData(), size_t(contents.size())), contents.size());
    ::close(descriptor);
}

void makeFile(const QString &path, const QByteArray &contents = {})
{
    makeFile(QFile::encodeName(path), contents);
}

/// The names in a folder, sorted, or nothing if it can't be listed.
QByteArrayList
names(const QString &folder, FileManager::ListingOption option = FileManager::ListingOption::None)
{
    QByteArrayList list;
    const auto state = fileManager().contentsOfDirectory(
        folder, option, [&list](QByteArrayView name) { list.append(name.toByteArray()); });
    std::ranges::sort(list);
    return state ? list : QByteArrayList();
}

DirectoryState listed(const QString &folder)
{
    return fileManager()
        .contentsOfDirectory(folder, FileManager::ListingOption::None, [](QByteArrayView) {})
        .value_or(DirectoryState());
}

int listingErrorCode(const QString &folder)
{
    const auto state =
        fileManager().contentsOfDirectory(folder, FileManager::ListingOption::None, [](QByteArrayView) {});
    return state || state.error().domain != Error::cocoaDomain ? 0 : state.error().code;
}

bool isUnchangedSince(const QString &folder, const DirectoryState &state)
{
    const auto now = fileManager().directoryState(folder);
    return now && now->isUnchangedSince(state);
}

void setModificationTime(const QString &path, const QDateTime &time)
{
    const timespec times[] = {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT},
        {.tv_sec = time.toSecsSinceEpoch(), .tv_nsec = 0},
    };
    QCOMPARE(
        ::utimensat(
            AT_FDCWD, QFile::encodeName(path).constData(), static_cast<const timespec *>(times),
            AT_SYMLINK_NOFOLLOW),
        0);
}

using Change = void (*)(const QString &folder);

} // namespace

class FileManagerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listingHandsOverEveryNameAsItIs_data();
    void listingHandsOverEveryNameAsItIs();
    void listingSkipsHiddenFilesWhenAsked();
    void listingHandsOverMoreThanOneBufferful();
    void listingSaysWhyItFails();
    void unreadableFolderIsNoPermission();
    void folderThatVanishesAndReturns();
    void listingIsCompleteTwoSecondsAfterTheLastChange();
    void listingIsNeverCompleteWhenTimesAreInTheFuture();
    void listingOfAnotherFileSystemIsNeverComplete();
    void everyChangeOfTheFolderShows_data();
    void everyChangeOfTheFolderShows();
    void stateWithoutListingIsNeverUnchanged();

    void attributesOfARegularFile();
    void attributesOfASymbolicLinkAreItsOwn();
    void creationDateIsTheModificationTimeWhereThatIsEarlier();
    void creationDateIsTheBirthTimeWhereThatIsEarlier();
    void attributesOfWhatIsNotThere_data();
    void attributesOfWhatIsNotThere();

    void fileWithAWriterIsOpenForWriting();
    void fileOfAnotherProcessIsOpenForWriting();
    void fileWithoutAWriterIsFinished();
    void whatIsNoFileIsFinished();

private:
    /// A folder for each row of `everyChangeOfTheFolderShows`.
    QTemporaryDir m_folders;
};

void FileManagerTest::listingHandsOverEveryNameAsItIs_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("plain") << QByteArray("Screenshot.png");
    QTest::newRow("blank at both ends") << QByteArray(" a ");
    QTest::newRow("line break") << QByteArray("two\nlines.png");
    QTest::newRow("markup") << QByteArray("<b>&amp;\"'.png");
    QTest::newRow("percent and hash") << QByteArray("50%20#?.png");
    QTest::newRow("right to left") << QByteArray("\xE2\x80\xAEgnp.\xD7\xA9");
    QTest::newRow("255 bytes") << QByteArray(255, 'x');
    QTest::newRow("not UTF-8") << QByteArray("\xFF\xC0\x80.png");
    QTest::newRow("three dots") << QByteArray("...");
}

void FileManagerTest::listingHandsOverEveryNameAsItIs()
{
    QFETCH(const QByteArray, name);
    const TemporaryHome home;
    const QByteArray path = QFile::encodeName(home.desktop()) + '/' + name;
    makeFile(path);
    QCOMPARE(names(home.desktop()), QByteArrayList{name});
    // The toolkit can't remove a name that isn't UTF-8.
    QCOMPARE(::unlink(path.constData()), 0);
}

void FileManagerTest::listingSkipsHiddenFilesWhenAsked()
{
    const TemporaryHome home;
    makeFile(home.desktop() + QStringLiteral("/.hidden.png"));
    makeFile(home.desktop() + QStringLiteral("/..two dots.png"));
    makeFile(home.desktop() + QStringLiteral("/shown.png"));
    QDir(home.desktop()).mkdir(QStringLiteral("folder"));
    QCOMPARE(
        names(home.desktop(), FileManager::ListingOption::SkipsHiddenFiles),
        (QByteArrayList{"folder", "shown.png"}));
    QCOMPARE(
        names(home.desktop(), FileManager::ListingOption::None),
        (QByteArrayList{"..two dots.png", ".hidden.png", "folder", "shown.png"}));
}

void FileManagerTest::listingHandsOverMoreThanOneBufferful()
{
    const TemporaryHome home;
    // About 500 KiB of entries.
    QByteArrayList expected;
    for (int i = 1000; i < 3000; ++i) {
        expected.append(QByteArray(220, 'x') + QByteArray::number(i));
        makeFile(QFile::encodeName(home.desktop()) + '/' + expected.constLast());
    }
    QCOMPARE(names(home.desktop()), expected);
}

void FileManagerTest::listingSaysWhyItFails()
{
    const TemporaryHome home;
    const QString file = home.desktop() + QStringLiteral("/file");
    makeFile(file);
    QCOMPARE(listingErrorCode(home.path() + QStringLiteral("/missing")), Error::FileNoSuchFile);
    QCOMPARE(listingErrorCode(file), Error::FileNoSuchFile);
    QCOMPARE(listingErrorCode(file + QStringLiteral("/below")), Error::FileNoSuchFile);
    QCOMPARE(listingErrorCode(QString()), Error::FileNoSuchFile);
    QCOMPARE(
        listingErrorCode(home.desktop() + QChar(QChar::Null) + QStringLiteral("x")), Error::FileNoSuchFile);
}

void FileManagerTest::unreadableFolderIsNoPermission()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    const TemporaryHome home;
    const QByteArray folder = QFile::encodeName(home.desktop());
    QCOMPARE(::chmod(folder.constData(), 0300), 0);
    QCOMPARE(listingErrorCode(home.desktop()), Error::FileNoPermission);
    QCOMPARE(::chmod(folder.constData(), 0700), 0);
    QCOMPARE(listingErrorCode(home.desktop()), 0);
}

void FileManagerTest::folderThatVanishesAndReturns()
{
    const TemporaryHome home;
    QTRY_VERIFY_WITH_TIMEOUT(listed(home.desktop()).listingIsComplete, 10'000);
    const DirectoryState before = listed(home.desktop());
    const QString away = home.path() + QStringLiteral("/away");

    QVERIFY(QDir().rename(home.desktop(), away));
    QCOMPARE(listingErrorCode(home.desktop()), Error::FileNoSuchFile);
    QVERIFY(!isUnchangedSince(home.desktop(), before));
    QVERIFY(QDir().mkdir(home.desktop()));
    QVERIFY(!isUnchangedSince(home.desktop(), before));
}

void FileManagerTest::listingIsCompleteTwoSecondsAfterTheLastChange()
{
    const TemporaryHome home;
    const auto isYoung = [](const DirectoryState &state) {
        return QDateTime::currentMSecsSinceEpoch() - state.changedNs / 1'000'000 < 2000;
    };
    const DirectoryState first = listed(home.desktop());
    QVERIFY(!isYoung(first) || !first.listingIsComplete);
    QVERIFY(!isYoung(first) || !isUnchangedSince(home.desktop(), first));

    QTRY_VERIFY_WITH_TIMEOUT(listed(home.desktop()).listingIsComplete, 10'000);
    const DirectoryState settled = listed(home.desktop());
    QVERIFY(!isYoung(settled));
    QVERIFY(isUnchangedSince(home.desktop(), settled));

    makeFile(home.desktop() + QStringLiteral("/new"));
    QVERIFY(!isUnchangedSince(home.desktop(), settled));
    // The modification time alone set back doesn't hide that.
    setModificationTime(home.desktop(), QDateTime::currentDateTime().addDays(-1));
    const DirectoryState changed = listed(home.desktop());
    QVERIFY(!isYoung(changed) || !changed.listingIsComplete);
}

void FileManagerTest::listingIsNeverCompleteWhenTimesAreInTheFuture()
{
    const TemporaryHome home;
    setModificationTime(home.desktop(), QDateTime::currentDateTime().addDays(1));
    QVERIFY(QDir().mkdir(home.path() + QStringLiteral("/later")));
    // As soon as the later folder counts as settled, so would the Desktop by its change time.
    QTRY_VERIFY_WITH_TIMEOUT(listed(home.path() + QStringLiteral("/later")).listingIsComplete, 10'000);
    QVERIFY(!listed(home.desktop()).listingIsComplete);
}

void FileManagerTest::listingOfAnotherFileSystemIsNeverComplete()
{
    const QString folder = QStringLiteral("/proc/sys");
    if (!QFile::exists(folder)) {
        QSKIP("There is no /proc here");
    }
    const auto isOld = [&folder] {
        const auto state = fileManager().directoryState(folder);
        return state && QDateTime::currentMSecsSinceEpoch() - state->changedNs / 1'000'000 > 2500;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOld(), 10'000);
    QVERIFY(!names(folder).isEmpty());
    QVERIFY(!listed(folder).listingIsComplete);
}

void FileManagerTest::everyChangeOfTheFolderShows_data()
{
    QTest::addColumn<Change>("change");
    // All folders are made before the first of them has to settle.
    const auto addRow = [this](const char *name, Change change) {
        const QString folder = m_folders.filePath(QString::fromLatin1(name));
        QVERIFY(QDir().mkdir(folder));
        makeFile(folder + QStringLiteral("/old"));
        QTest::newRow(name) << change;
    };
    addRow("a file comes", [](const QString &folder) { makeFile(folder + QStringLiteral("/new")); });
    addRow("a file goes", [](const QString &folder) {
        QVERIFY(QFile::remove(folder + QStringLiteral("/old")));
    });
    addRow("a file is renamed", [](const QString &folder) {
        QVERIFY(QFile::rename(folder + QStringLiteral("/old"), folder + QStringLiteral("/other")));
    });
    addRow("a file is replaced", [](const QString &folder) {
        const QString spare = folder + QStringLiteral(" spare");
        makeFile(spare);
        const QString old = folder + QStringLiteral("/old");
        QCOMPARE(::rename(QFile::encodeName(spare).constData(), QFile::encodeName(old).constData()), 0);
    });
    addRow("permissions change", [](const QString &folder) {
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0711), 0);
    });
    addRow("the folder is replaced", [](const QString &folder) {
        QVERIFY(QDir().rename(folder, folder + QStringLiteral(" before")));
        QVERIFY(QDir().mkdir(folder));
    });
}

void FileManagerTest::everyChangeOfTheFolderShows()
{
    QFETCH(const Change, change);
    const QString folder = m_folders.filePath(QString::fromLatin1(QTest::currentDataTag()));
    QTRY_VERIFY_WITH_TIMEOUT(listed(folder).listingIsComplete, 10'000);
    const DirectoryState before = listed(folder);
    QVERIFY(isUnchangedSince(folder, before));
    change(folder);
    QVERIFY(!isUnchangedSince(folder, before));
}

void FileManagerTest::stateWithoutListingIsNeverUnchanged()
{
    const TemporaryHome home;
    const auto state = fileManager().directoryState(home.desktop());
    QVERIFY(state.has_value());
    QVERIFY(!state->isUnchangedSince(*state));
    const auto missing = fileManager().directoryState(home.path() + QStringLiteral("/missing"));
    QVERIFY(!missing && missing.error().isCocoa(Error::FileNoSuchFile));
}

void FileManagerTest::attributesOfARegularFile()
{
    const TemporaryHome home;
    const QString path = home.desktop() + QStringLiteral("/two\nlines.png");
    // A file system's clock may lag a tick behind.
    const QDateTime before = QDateTime::currentDateTime().addMSecs(-20);
    makeFile(path, QByteArray(1234, 'x'));
    const auto attributes = fileManager().attributesOfItem(path);
    QVERIFY(attributes.has_value());
    QVERIFY(attributes->isRegularFile);
    QCOMPARE(attributes->size, 1234);
    QVERIFY(*attributes->creationDate >= before);
    QVERIFY(*attributes->creationDate <= QDateTime::currentDateTime());
    QCOMPARE(fileManager().creationDate(QUrl::fromLocalFile(path)).value(), attributes->creationDate);
}

void FileManagerTest::attributesOfASymbolicLinkAreItsOwn()
{
    const TemporaryHome home;
    const QString link = home.desktop() + QStringLiteral("/link.png");
    QVERIFY(QFile::link(home.path() + QStringLiteral("/nowhere"), link));
    const auto attributes = fileManager().attributesOfItem(link);
    QVERIFY(attributes.has_value());
    QVERIFY(!attributes->isRegularFile);
    const auto folder = fileManager().attributesOfItem(home.desktop());
    QVERIFY(folder && !folder->isRegularFile);
}

void FileManagerTest::creationDateIsTheModificationTimeWhereThatIsEarlier()
{
    const TemporaryHome home;
    const QString path = home.desktop() + QStringLiteral("/restored.png");
    makeFile(path);
    const QDateTime old = QDateTime::fromSecsSinceEpoch(1'500'000'000);
    setModificationTime(path, old);
    QCOMPARE(*fileManager().attributesOfItem(path).value().creationDate, old);
}

void FileManagerTest::creationDateIsTheBirthTimeWhereThatIsEarlier()
{
    const TemporaryHome home;
    const QString path = home.desktop() + QStringLiteral("/edited.png");
    makeFile(path);
    const QDateTime later = QDateTime::currentDateTime().addDays(1);
    setModificationTime(path, later);
    const QDateTime created = *fileManager().attributesOfItem(path).value().creationDate;
    if (!QFileInfo(path).birthTime().isValid()) {
        QSKIP("This file system keeps no birth time");
    }
    QVERIFY(created <= QDateTime::currentDateTime());
}

void FileManagerTest::attributesOfWhatIsNotThere_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("below a file") << QStringLiteral("file/below");
    QTest::newRow("null character") << (QStringLiteral("file") + QChar(QChar::Null));
    QTest::newRow("dangling link's target") << QStringLiteral("link/below");
}

void FileManagerTest::attributesOfWhatIsNotThere()
{
    QFETCH(const QString, name);
    const TemporaryHome home;
    makeFile(home.desktop() + QStringLiteral("/file"));
    QFile::link(QStringLiteral("nowhere"), home.desktop() + QStringLiteral("/link"));
    const QString path = home.desktop() + u'/' + name;
    const auto attributes = fileManager().attributesOfItem(path);
    QVERIFY(!attributes && attributes.error().isCocoa(Error::FileNoSuchFile));
    const auto date = fileManager().creationDate(QUrl::fromLocalFile(path));
    QVERIFY(!date && date.error().isCocoa(Error::FileNoSuchFile));
    const auto remote = fileManager().creationDate(QUrl(QStringLiteral("https://example.org/file")));
    QVERIFY(!remote && remote.error().isCocoa(Error::FileNoSuchFile));
}

void FileManagerTest::fileWithAWriterIsOpenForWriting()
{
    const TemporaryHome home;
    QFile file(home.desktop() + QStringLiteral("/unfinished.png"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(fileManager().isOpenForWriting(file.fileName()));
    file.close();
    QVERIFY(!fileManager().isOpenForWriting(file.fileName()));
}

void FileManagerTest::fileOfAnotherProcessIsOpenForWriting()
{
    const TemporaryHome home;
    const QString path = home.desktop() + QStringLiteral("/unfinished.png");
    makeFile(path);
    QProcess writer;
    writer.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), QStringLiteral("exec 3>>\"$0\"; echo open; read line"), path});
    QVERIFY(writer.waitForReadyRead());
    QVERIFY(fileManager().isOpenForWriting(path));
    writer.closeWriteChannel();
    QVERIFY(writer.waitForFinished());
    QVERIFY(!fileManager().isOpenForWriting(path));
}

void FileManagerTest::fileWithoutAWriterIsFinished()
{
    const TemporaryHome home;
    QFile file(home.desktop() + QStringLiteral("/read.png"));
    makeFile(file.fileName());
    QVERIFY(!fileManager().isOpenForWriting(file.fileName()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!fileManager().isOpenForWriting(file.fileName()));
    // The test leaves nothing behind that would hold a writer up.
    QFile writer(file.fileName());
    QVERIFY(writer.open(QIODevice::ReadWrite));
}

void FileManagerTest::whatIsNoFileIsFinished()
{
    const TemporaryHome home;
    const QString pipe = home.desktop() + QStringLiteral("/pipe");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!fileManager().isOpenForWriting(pipe));
    QVERIFY(!fileManager().isOpenForWriting(home.desktop()));
    QVERIFY(!fileManager().isOpenForWriting(home.desktop() + QStringLiteral("/missing")));

    QFile target(home.desktop() + QStringLiteral("/target"));
    QVERIFY(target.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(target.fileName(), home.desktop() + QStringLiteral("/link")));
    QVERIFY(!fileManager().isOpenForWriting(home.desktop() + QStringLiteral("/link")));
}

QTEST_GUILESS_MAIN(FileManagerTest)
#include "FileManagerTest.moc"
