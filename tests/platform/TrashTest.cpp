#include "FileManager.h"

#include "GioLeak.h"
#include "TemporaryHome.h"
#include "processEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

Result<void> trash(const QString &path)
{
    return FileManager::defaultManager().trashItem(QUrl::fromLocalFile(path));
}

void makeFile(const QString &path, const QByteArray &contents = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether this process has the library loaded.
bool isLoaded(QByteArrayView library)
{
    return contents(QStringLiteral("/proc/self/maps")).contains(library);
}

/// Even broken links are entries.
QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

/// `FileManager::trashItem` with the home Trash. One home for all, because GLib asks for it once in a
/// process; each test begins with an empty Trash and an empty Desktop.
class TrashTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void libraryIsLoadedWithTheFirstDeletion();
    void fileGoesToTheTrash_data();
    void fileGoesToTheTrash();
    void infoFileTellsWhereItWas();
    void equalNamesAreBothKept();
    void equalLongNamesAreBothKept();
    void symbolicLinkGoesAndItsTargetStays();
    void folderGoesWhole();
    void replacedFileGoes();
    void missingFileIsNoSuchFile();
    void trashThatCannotBeWritten_data();
    void trashThatCannotBeWritten();
    void folderThatCannotBeWritten();
    void trashIsMadeWhereItIsMissing();

private:
    [[nodiscard]] QString onDesktop(const QString &name) const { return m_home.desktop() + u'/' + name; }

    [[nodiscard]] QString trashFolder() const { return QFileInfo(m_home.trashedFiles()).path(); }

    [[nodiscard]] QStringList trashed() const { return entries(m_home.trashedFiles()); }

    [[nodiscard]] QStringList infos() const { return entries(trashFolder() + QStringLiteral("/info")); }

    TemporaryHome m_home;
};

void TrashTest::initTestCase()
{
    processEnvironment::prepare();
}

void TrashTest::init()
{
    for (const QString &folder : {trashFolder(), m_home.desktop()}) {
        QVERIFY(!QFile::exists(folder) || QDir(folder).removeRecursively());
    }
    QVERIFY(QDir().mkdir(m_home.desktop()));
}

void TrashTest::libraryIsLoadedWithTheFirstDeletion()
{
    QVERIFY(!isLoaded("libgio-2.0"));
    makeFile(onDesktop(QStringLiteral("a.png")));
    QVERIFY(trash(onDesktop(QStringLiteral("a.png"))).has_value());
    QVERIFY(isLoaded("libgio-2.0"));
    QVERIFY(!isLoaded("/gio/modules/"));
}

void TrashTest::fileGoesToTheTrash_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("Screenshot 1.png");
    QTest::newRow("line break") << QStringLiteral("two\nlines.png");
    QTest::newRow("markup") << QStringLiteral("<b>&amp;\"'.png");
    QTest::newRow("percent and hash") << QStringLiteral("50%20#?.png");
    QTest::newRow("right to left") << QStringLiteral("\u202Egnp.צילום.png");
    QTest::newRow("hidden") << QStringLiteral(".png");
    QTest::newRow("245 bytes") << QString(QString(241, u'x') + QStringLiteral(".png"));
}

void TrashTest::fileGoesToTheTrash()
{
    QFETCH(const QString, name);
    makeFile(onDesktop(name), "pixels");
    const auto moved = trash(onDesktop(name));
    QVERIFY2(moved.has_value(), moved ? "" : qPrintable(moved.error().description()));
    QCOMPARE(entries(m_home.desktop()), QStringList());
    QCOMPARE(trashed(), QStringList{name});
    QCOMPARE(contents(m_home.trashedFiles() + u'/' + name), QByteArray("pixels"));
    QCOMPARE(infos(), QStringList{name + QStringLiteral(".trashinfo")});
}

void TrashTest::infoFileTellsWhereItWas()
{
    makeFile(onDesktop(QStringLiteral("a b.png")));
    QVERIFY(trash(onDesktop(QStringLiteral("a b.png"))).has_value());
    const QByteArray info = contents(trashFolder() + QStringLiteral("/info/a b.png.trashinfo"));
    QVERIFY(info.startsWith("[Trash Info]\n"));
    QVERIFY(info.contains(QByteArray("\nPath=" + QFile::encodeName(m_home.desktop()) + "/a%20b.png\n")));
    QVERIFY(info.contains("\nDeletionDate="));
}

void TrashTest::equalNamesAreBothKept()
{
    const QString name = QStringLiteral("same.png");
    for (const QString &folder : {m_home.desktop(), m_home.pictures()}) {
        makeFile(folder + u'/' + name, folder.toUtf8());
        QVERIFY(trash(folder + u'/' + name).has_value());
    }
    QCOMPARE(trashed().size(), 2);
    QCOMPARE(infos().size(), 2);
    QSet<QByteArray> kept;
    for (const QString &trashedName : trashed()) {
        kept.insert(contents(m_home.trashedFiles() + u'/' + trashedName));
    }
    QCOMPARE(kept, (QSet<QByteArray>{m_home.desktop().toUtf8(), m_home.pictures().toUtf8()}));
}

void TrashTest::equalLongNamesAreBothKept()
{
    // 255 bytes, in which two of every three can't be cut at.
    const QString name = QString(83, u'長') + QStringLiteral("xx.png");
    QCOMPARE(name.toUtf8().size(), 255);
    for (const QByteArray &pixels : {QByteArray("first"), QByteArray("second")}) {
        makeFile(onDesktop(name), pixels);
        const auto moved = trash(onDesktop(name));
        QVERIFY2(moved.has_value(), moved ? "" : qPrintable(moved.error().description()));
    }
    QCOMPARE(entries(m_home.desktop()), QStringList());
    QCOMPARE(trashed().size(), 2);
    for (const QString &trashedName : trashed()) {
        QVERIFY(trashedName.startsWith(QString(70, u'長')) && trashedName.endsWith(QStringLiteral(".png")));
        QVERIFY(!trashedName.contains(QChar::ReplacementCharacter));
        // The info file still knows the whole name.
        const QByteArray info =
            contents(trashFolder() + QStringLiteral("/info/") + trashedName + QStringLiteral(".trashinfo"));
        QVERIFY(info.contains(QByteArray("/Desktop/" + name.toUtf8().toPercentEncoding() + '\n')));
    }
}

void TrashTest::symbolicLinkGoesAndItsTargetStays()
{
    makeFile(onDesktop(QStringLiteral("target.png")), "pixels");
    const QString link = onDesktop(QStringLiteral("link.png"));
    QVERIFY(QFile::link(onDesktop(QStringLiteral("target.png")), link));
    QVERIFY(trash(link).has_value());
    QCOMPARE(entries(m_home.desktop()), QStringList{QStringLiteral("target.png")});
    QVERIFY(QFileInfo(m_home.trashedFiles() + QStringLiteral("/link.png")).isSymLink());

    QVERIFY(QFile::link(QStringLiteral("nowhere"), link));
    QVERIFY(trash(link).has_value());
    QCOMPARE(trashed().size(), 2);
}

void TrashTest::folderGoesWhole()
{
    QVERIFY(QDir(m_home.desktop()).mkdir(QStringLiteral("shot.png")));
    makeFile(onDesktop(QStringLiteral("shot.png/inner")));
    QVERIFY(trash(onDesktop(QStringLiteral("shot.png"))).has_value());
    QCOMPARE(
        entries(m_home.trashedFiles() + QStringLiteral("/shot.png")), QStringList{QStringLiteral("inner")});
}

void TrashTest::replacedFileGoes()
{
    const QString path = onDesktop(QStringLiteral("a.png"));
    makeFile(path, "first");
    QVERIFY(QFile::remove(path));
    makeFile(path, "second");
    QVERIFY(trash(path).has_value());
    QCOMPARE(contents(m_home.trashedFiles() + QStringLiteral("/a.png")), QByteArray("second"));
}

void TrashTest::missingFileIsNoSuchFile()
{
    makeFile(onDesktop(QStringLiteral("file")));
    const QString paths[] = {
        onDesktop(QStringLiteral("gone.png")), onDesktop(QStringLiteral("file/below.png")), QString(),
        onDesktop(QStringLiteral("file") + QChar(QChar::Null) + QStringLiteral(".png"))};
    for (const QString &path : paths) {
        const auto moved = trash(path);
        QVERIFY(!moved && moved.error().isCocoa(Error::FileNoSuchFile));
    }
    QCOMPARE(entries(m_home.desktop()), QStringList{QStringLiteral("file")});
}

void TrashTest::trashThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("info") << QStringLiteral("/info");
    QTest::newRow("files") << QStringLiteral("/files");
    QTest::newRow("not there and not to be made") << QStringLiteral("/..");
}

void TrashTest::trashThatCannotBeWritten()
{
    if (::geteuid() == 0) {
        QSKIP("Root may write everywhere");
    }
    QFETCH(const QString, folder);
    const bool isMissing = folder == QStringLiteral("/..");
    QVERIFY(isMissing || QDir().mkpath(trashFolder() + QStringLiteral("/files")));
    QVERIFY(isMissing || QDir().mkpath(trashFolder() + QStringLiteral("/info")));
    const QByteArray locked =
        QFile::encodeName(isMissing ? QFileInfo(trashFolder()).path() : QString(trashFolder() + folder));

    for (const QString &name : {QStringLiteral("short.png"), QString(255, u'x')}) {
        makeFile(onDesktop(name));
        QCOMPARE(::chmod(locked.constData(), 0500), 0);
        const auto moved = trash(onDesktop(name));
        QCOMPARE(::chmod(locked.constData(), 0700), 0);
        QVERIFY(!moved);
        QVERIFY2(moved.error().isCocoa(Error::FileNoPermission), qPrintable(moved.error().description()));
        QVERIFY(QFile::exists(onDesktop(name)));
        QCOMPARE(infos(), QStringList());
    }
}

void TrashTest::folderThatCannotBeWritten()
{
    if (::geteuid() == 0) {
        QSKIP("Root may write everywhere");
    }
    makeFile(onDesktop(QStringLiteral("a.png")));
    const QByteArray desktop = QFile::encodeName(m_home.desktop());
    QCOMPARE(::chmod(desktop.constData(), 0500), 0);
    const auto moved = trash(onDesktop(QStringLiteral("a.png")));
    QCOMPARE(::chmod(desktop.constData(), 0700), 0);
    QVERIFY(!moved && moved.error().isCocoa(Error::FileNoPermission));
    QVERIFY(QFile::exists(onDesktop(QStringLiteral("a.png"))));
    QCOMPARE(infos(), QStringList());
}

void TrashTest::trashIsMadeWhereItIsMissing()
{
    QVERIFY(!QFile::exists(trashFolder()));
    makeFile(onDesktop(QString(255, u'x')));
    QVERIFY(trash(onDesktop(QString(255, u'x'))).has_value());
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(trashFolder()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0700U);
}

QTEST_GUILESS_MAIN(TrashTest)
#include "TrashTest.moc"
