#include "HomeTrash.h"

#include "TemporaryHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

namespace {

QByteArray makeFile(const TemporaryHome &home, const QByteArray &name, const QByteArray &contents = {})
{
    const QByteArray path = QFile::encodeName(home.desktop()) + '/' + name;
    QFile file(QFile::decodeName(path));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(contents);
    }
    return path;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString infoFolder(const TemporaryHome &home)
{
    return home.path() + QStringLiteral("/.local/share/Trash/info");
}

} // namespace

class HomeTrashTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameInTrash_data();
    void nameInTrash();
    void moveLeavesFileAndInfo();
    void nothingInTheTrashIsReplaced();
    void failureLeavesNothingBehind();
};

void HomeTrashTest::nameInTrash_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("attempt");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray x = "x";
    QTest::newRow("first") << QByteArray("a.png") << 1 << QByteArray("a.png");
    QTest::newRow("second") << QByteArray("a.png") << 2 << QByteArray("a.2.png");
    QTest::newRow("without suffix") << QByteArray("shot") << 3 << QByteArray("shot.3");
    QTest::newRow("hidden") << QByteArray(".png") << 2 << QByteArray(".png.2");
    QTest::newRow("longest that is whole") << x.repeated(245) << 1 << x.repeated(245);
    QTest::newRow("one too long") << x.repeated(246) << 1 << x.repeated(245);
    QTest::newRow("255 bytes") << QByteArray(x.repeated(251) + ".png") << 1
                               << QByteArray(x.repeated(241) + ".png");
    QTest::newRow("255 bytes, later")
        << QByteArray(x.repeated(251) + ".png") << 10 << QByteArray(x.repeated(238) + ".10.png");
    QTest::newRow("between characters") << QByteArray("x" + QByteArray("\xE9\x95\xB7").repeated(83)) << 1
                                        << QByteArray("x" + QByteArray("\xE9\x95\xB7").repeated(81));
    QTest::newRow("no character at all")
        << QByteArray("\x80").repeated(255) << 1 << QByteArray("\x80").repeated(242);
}

void HomeTrashTest::nameInTrash()
{
    QFETCH(const QByteArray, name);
    QFETCH(const int, attempt);
    QFETCH(const QByteArray, expected);
    QCOMPARE(HomeTrash::nameInTrash(name, attempt), expected);
}

void HomeTrashTest::moveLeavesFileAndInfo()
{
    const TemporaryHome home;
    const QByteArray path = makeFile(home, "a\nb%.png", "pixels");
    QCOMPARE(HomeTrash::take(path), 0);
    QVERIFY(!QFile::exists(QFile::decodeName(path)));
    QCOMPARE(contents(home.trashedFiles() + QStringLiteral("/a\nb%.png")), QByteArray("pixels"));
    const QByteArrayList lines =
        contents(infoFolder(home) + QStringLiteral("/a\nb%.png.trashinfo")).split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], QByteArray("[Trash Info]"));
    QCOMPARE(lines[1], QByteArray("Path=" + QFile::encodeName(home.desktop()) + "/a%0Ab%25.png"));
    QVERIFY(lines[2].startsWith("DeletionDate="));
    const auto date = QDateTime::fromString(
        QString::fromLatin1(lines[2].sliced(13)), QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    QVERIFY(date.isValid() && qAbs(date.secsTo(QDateTime::currentDateTime())) < 60);
    QCOMPARE(lines[3], QByteArray());
}

void HomeTrashTest::nothingInTheTrashIsReplaced()
{
    const TemporaryHome home;
    QCOMPARE(HomeTrash::take(makeFile(home, "a.png", "first")), 0);
    // A file without its info, and an info without its file, keep their names too.
    QVERIFY(QFile::remove(infoFolder(home) + QStringLiteral("/a.png.trashinfo")));
    QVERIFY(QFile::copy(
        home.trashedFiles() + QStringLiteral("/a.png"),
        infoFolder(home) + QStringLiteral("/a.2.png.trashinfo")));

    QCOMPARE(HomeTrash::take(makeFile(home, "a.png", "second")), 0);
    QCOMPARE(contents(home.trashedFiles() + QStringLiteral("/a.png")), QByteArray("first"));
    QCOMPARE(contents(infoFolder(home) + QStringLiteral("/a.2.png.trashinfo")), QByteArray("first"));
    QCOMPARE(contents(home.trashedFiles() + QStringLiteral("/a.3.png")), QByteArray("second"));
    QVERIFY(!QFile::exists(infoFolder(home) + QStringLiteral("/a.png.trashinfo")));
}

void HomeTrashTest::failureLeavesNothingBehind()
{
    const TemporaryHome home;
    QCOMPARE(HomeTrash::take(QFile::encodeName(home.desktop()) + "/gone.png"), ENOENT);
    QVERIFY(QDir(infoFolder(home)).isEmpty());
    QVERIFY(QDir(home.trashedFiles()).isEmpty());
}

QTEST_GUILESS_MAIN(HomeTrashTest)
#include "HomeTrashTest.moc"
