#include "writeKConfigBoolean.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <optional>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

mode_t modeOf(const QString &path)
{
    constexpr mode_t accessRights = 0777;
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & accessRights : 0;
}

ino_t inodeOf(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

void makeLink(const QString &target, const QString &path)
{
    QCOMPARE(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()), 0);
}

QString linkTarget(const QString &path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const auto length = ::readlink(QFile::encodeName(path).constData(), target.data(), size_t(target.size()));
    return length < 0 ? QString() : QFile::decodeName(target.first(length));
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

/// One entry of another program's settings file is changed, and nothing else.
class writeKConfigBooleanTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString folder() const { return m_home->path() + QStringLiteral("/.config"); }

    [[nodiscard]] QString file() const { return folder() + QStringLiteral("/rc"); }

    [[nodiscard]] Result<void> write(bool value) const
    {
        return writeKConfigBoolean(file(), "General", "key", value);
    }

    /// Nothing has changed, and nothing was left behind.
    void verifyRefused(const QByteArray &before) const
    {
        const ino_t inode = inodeOf(file());
        const QStringList names = entries(folder());
        QVERIFY(!write(true));
        QCOMPARE(contents(file()), before);
        QCOMPARE(inodeOf(file()), inode);
        QCOMPARE(entries(folder()), names);
    }

    std::optional<TemporaryHome> m_home;

private Q_SLOTS:

    void init() { m_home.emplace(); }

    void changesNothingElse_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
            QTest::newRow(name) << before << after;
        };
        row("in its place", "[A]\nkey=false\n\n[General]\na=1\nkey=false\nb=2\n\n[Z]\nkey=false\n",
            "[A]\nkey=false\n\n[General]\na=1\nkey=true\nb=2\n\n[Z]\nkey=false\n");
        row("comments and blanks stay", "# a\n\n  [General]  \n ; b\n\t key  =  false \t\n#key=false\n\n\n",
            "# a\n\n  [General]  \n ; b\n\t key  =  true \t\n#key=false\n\n\n");
        row("carriage returns stay", "[General]\r\nkey=false\r\na=1\r\n", "[General]\r\nkey=true\r\na=1\r\n");
        row("no line break at the end", "[General]\nkey=false", "[General]\nkey=true");
        row("empty value", "[General]\nkey=\na=1\n", "[General]\nkey=true\na=1\n");
        row("value that is no boolean", "[General]\nkey=Área \\n\na=1\n", "[General]\nkey=true\na=1\n");
        row("value with an equals sign", "[General]\nkey=a=b\n", "[General]\nkey=true\n");
        row("of two entries the last", "[General]\nkey=false\nkey=false\na=1\n",
            "[General]\nkey=false\nkey=true\na=1\n");
        row("of two groups the last entry",
            "[General]\nkey=no\n[A]\n[General]\nkey=no\n[B]\n[General]\nb=1\n",
            "[General]\nkey=no\n[A]\n[General]\nkey=true\n[B]\n[General]\nb=1\n");
        row("deleted", "[General]\nkey[$d]\na=1\n", "[General]\nkey=true\na=1\n");
        row("deleted with an equals sign", "[General]\n key[$d]=\na=1\n", "[General]\n key=true\na=1\n");
        row("expanded", "[General]\nkey[$e]=$VALUE\n", "[General]\nkey[$e]=true\n");
        row("another language's entry stays", "[General]\nkey[de]=false\n",
            "[General]\nkey[de]=false\nkey=true\n");
        row("longer and shorter keys stay", "[General]\nkeys=false\nke=false\n",
            "[General]\nkeys=false\nke=false\nkey=true\n");

        row("added at the group's end", "[General]\na=1\n\n# about Z\n[Z]\nkey=false\n",
            "[General]\na=1\nkey=true\n\n# about Z\n[Z]\nkey=false\n");
        row("added to an empty group", "[General]\n\n[Z]\n", "[General]\nkey=true\n\n[Z]\n");
        row("added to the last of two groups", "[General]\na=1\n[A]\n[General]\nb=1\n[Z]\n",
            "[General]\na=1\n[A]\n[General]\nb=1\nkey=true\n[Z]\n");
        row("added with carriage returns", "[General]\r\na=1\r\n[Z]\r\n",
            "[General]\r\na=1\r\nkey=true\r\n[Z]\r\n");
        row("added without a line break at the end", "[A]\r\n[General]\r\na=1",
            "[A]\r\n[General]\r\na=1\r\nkey=true");
        row("a group within isn't the group", "[General][Sub]\nkey=false\n",
            "[General][Sub]\nkey=false\n\n[General]\nkey=true\n");
        row("a group within ends the group", "[General]\na=1\n[General][Sub]\nkey=false\n",
            "[General]\na=1\nkey=true\n[General][Sub]\nkey=false\n");

        row("group added", "[A]\nkey=false\n", "[A]\nkey=false\n\n[General]\nkey=true\n");
        row("group added with carriage returns", "[A]\r\n", "[A]\r\n\r\n[General]\r\nkey=true\r\n");
        row("group added behind a line without a break", "[A]\na=1", "[A]\na=1\n\n[General]\nkey=true\n");
        row("entries above all groups stay", "key=false\n", "key=false\n\n[General]\nkey=true\n");
        row("empty file", "", "[General]\nkey=true\n");
        row("lines that are nothing", "=\n[\n[General\nkey\n",
            "=\n[\n[General\nkey\n\n[General]\nkey=true\n");
    }

    void changesNothingElse()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        files::write(file(), before);
        QVERIFY(write(true));
        QCOMPARE(contents(file()), after);
        QCOMPARE(entries(folder()), QStringList{QStringLiteral("rc")});

        const QByteArray lastTrue = after.last(after.size() - after.lastIndexOf("true"));
        QVERIFY(write(false));
        QCOMPARE(contents(file()), QByteArray(after.chopped(lastTrue.size()) + "false" + lastTrue.sliced(4)));
        QVERIFY(write(true));
        QCOMPARE(contents(file()), after);
    }

    void aFileThatSaysSoAlreadyIsLeftAlone()
    {
        files::write(file(), "[General]\nkey=true\n");
        const ino_t inode = inodeOf(file());
        QVERIFY(write(true));
        QCOMPARE(inodeOf(file()), inode);
    }

    void aMissingFileIsMadeForItsOwnerAlone()
    {
        files::remove(folder());
        QVERIFY(write(false));
        QCOMPARE(contents(file()), QByteArray("[General]\nkey=false\n"));
        QCOMPARE(modeOf(file()), mode_t(0600));
        QCOMPARE(entries(folder()), QStringList{QStringLiteral("rc")});
    }

    void accessRightsAreKept()
    {
        files::write(file(), "");
        for (const mode_t mode : {0600, 0640, 0664}) {
            setMode(file(), mode);
            QVERIFY(write(mode != 0640));
            QCOMPARE(modeOf(file()), mode);
        }
    }

    void aLinkStaysAndItsTargetIsReplaced_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("absolute") << QStringLiteral("%HOME%/dotfiles/rc");
        QTest::newRow("relative") << QStringLiteral("../dotfiles/rc");
        QTest::newRow("through another link") << QStringLiteral("../linked/rc");
        QTest::newRow("to another link") << QStringLiteral("../other");
    }

    void aLinkStaysAndItsTargetIsReplaced()
    {
        QFETCH(QString, target);
        target.replace(QStringLiteral("%HOME%"), m_home->path());
        const QString dotfiles = m_home->path() + QStringLiteral("/dotfiles");
        files::makeFolder(dotfiles);
        files::write(dotfiles + QStringLiteral("/rc"), "[General]\n");
        makeLink(dotfiles, m_home->path() + QStringLiteral("/linked"));
        makeLink(QStringLiteral("dotfiles/rc"), m_home->path() + QStringLiteral("/other"));
        makeLink(target, file());
        QVERIFY(write(true));
        QCOMPARE(linkTarget(file()), target);
        QCOMPARE(contents(dotfiles + QStringLiteral("/rc")), QByteArray("[General]\nkey=true\n"));
        QCOMPARE(entries(dotfiles), QStringList{QStringLiteral("rc")});
        QCOMPARE(entries(folder()), QStringList{QStringLiteral("rc")});
    }

    void aLinkMayLeadToANameOfAnyBytes()
    {
        const QByteArray target = QFile::encodeName(folder()) + "/\xff\xfe rc";
        files::write(file(), "[A]\nb=1\n");
        QCOMPARE(::rename(QFile::encodeName(file()).constData(), target.constData()), 0);
        QCOMPARE(::symlink(target.constData(), QFile::encodeName(file()).constData()), 0);
        QVERIFY(write(true));
        QCOMPARE(contents(file()), QByteArray("[A]\nb=1\n\n[General]\nkey=true\n"));
        QCOMPARE(::unlink(target.constData()), 0);
    }

    void aDanglingLinksTargetIsMade()
    {
        makeLink(QStringLiteral("../missing/folder/rc"), file());
        QVERIFY(write(true));
        QCOMPARE(linkTarget(file()), QStringLiteral("../missing/folder/rc"));
        QCOMPARE(
            contents(m_home->path() + QStringLiteral("/missing/folder/rc")),
            QByteArray("[General]\nkey=true\n"));
    }

    void linksInACircleAreLeftAlone()
    {
        makeLink(QStringLiteral("second"), file());
        makeLink(QStringLiteral("rc"), folder() + QStringLiteral("/second"));
        verifyRefused({});
        QCOMPARE(linkTarget(file()), QStringLiteral("second"));
    }

    void whatIsMarkedAsImmutableIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("group") << QByteArray("[General][$i]\nkey=false\n");
        QTest::newRow("group without the entry") << QByteArray("[General][$i]\na=1\n");
        QTest::newRow("one of two groups") << QByteArray("[General][$i]\n[A]\n[General]\nkey=false\n");
        QTest::newRow("entry") << QByteArray("[General]\nkey[$i]=false\n");
        QTest::newRow("entry, expanded") << QByteArray("[General]\nkey[$ei]=false\n");
        QTest::newRow("one of two entries") << QByteArray("[General]\nkey[$i]=false\nkey=true\n");
        QTest::newRow("file") << QByteArray("[$i]\n\n[General]\nkey=false\n");
        QTest::newRow("file, without the group") << QByteArray("# a\n[$i]\n");
    }

    void whatIsMarkedAsImmutableIsLeftAlone()
    {
        QFETCH(const QByteArray, before);
        files::write(file(), before);
        verifyRefused(before);
    }

    void marksOfOthersDoNotMatter()
    {
        files::write(file(), "[A][$i]\n[General]\na[$i]=1\nkey=false\n");
        QVERIFY(write(true));
        QCOMPARE(contents(file()), QByteArray("[A][$i]\n[General]\na[$i]=1\nkey=true\n"));
    }

    void whatIsNoTextIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("null byte") << QByteArray("[General]\n\0\nkey=false\n", 22);
        QTest::newRow("not UTF-8") << QByteArray("[General]\nname=\xc1rea\nkey=false\n");
        QTest::newRow("UTF-8 cut short") << QByteArray("[General]\nkey=false\n\xc3");
        QTest::newRow("too large") << QByteArray("[General]\nkey=false\n#" + QByteArray(1 << 20, 'a'));
    }

    void whatIsNoTextIsLeftAlone()
    {
        QFETCH(const QByteArray, before);
        files::write(file(), before);
        verifyRefused(before);
    }

    void whatIsNoFileIsLeftAlone()
    {
        files::makeFolder(file());
        verifyRefused({});
        files::remove(file());

        QCOMPARE(::mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
        const ino_t inode = inodeOf(file());
        QVERIFY(!write(true));
        QCOMPARE(inodeOf(file()), inode);
        QCOMPARE(entries(folder()), QStringList{QStringLiteral("rc")});
    }

    void whatMayNotBeWrittenIsLeftAlone()
    {
        if (::geteuid() == 0) {
            QSKIP("Nothing is unwritable for root");
        }
        const QByteArray before = "[General]\nkey=false\n";
        files::write(file(), before);
        setMode(file(), 0400);
        verifyRefused(before);
        setMode(file(), 0600);
        setMode(folder(), 0500);
        verifyRefused(before);
        setMode(folder(), 0700);
        setMode(file(), 0200);
        QVERIFY(!write(true));
        setMode(file(), 0600);
        QCOMPARE(contents(file()), before);
    }

    void waitsShortlyForAnotherProgram()
    {
        const QByteArray before = "[General]\nkey=false\n";
        files::write(file(), before);
        QLockFile other(file() + QStringLiteral(".lock"));
        QVERIFY(other.tryLock(0));
        verifyRefused(before);
        QVERIFY(other.isLocked());
        other.unlock();
        QVERIFY(write(true));
    }
};

QTEST_GUILESS_MAIN(writeKConfigBooleanTest)
#include "writeKConfigBooleanTest.moc"
