#include "namedFont.h"

#include <QFontInfo>
#include <QGlyphRun>
#include <QRawFont>
#include <QTest>
#include <QTextLayout>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int headlineSize = 26;

QFont headlineFont()
{
    return namedFont(QStringLiteral("SpaceGrotesk-Medium"), headlineSize);
}

/// The families that the text's letters come from, in no order; an empty one where letters have no drawing.
QStringList paintedFamilies(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    QStringList result;
    for (const QGlyphRun &run : runs) {
        result.append(run.glyphIndexes().contains(0) ? QString() : run.rawFont().familyName());
    }
    return result;
}

} // namespace

class namedFontTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void initMain();
    void eachNameHasItsFamilyAndWeight_data();
    void eachNameHasItsFamilyAndWeight();
    void sizeIsInLogicalPixels();
    void headlinesHaveTheFaceThatComesWithTheProgram();
    void headlinesTakeOtherLettersFromElsewhere();
    void unknownNameStopsTheProgram();
};

void namedFontTest::initMain()
{
#ifdef DESKBROOM_FONTCONFIG_FILE
    qputenv("FONTCONFIG_FILE", DESKBROOM_FONTCONFIG_FILE);
#endif
}

void namedFontTest::eachNameHasItsFamilyAndWeight_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QFont::Weight>("weight");
    QTest::newRow("SpaceGrotesk-Medium") << QStringLiteral("Space Grotesk Medium") << QFont::Medium;
    QTest::newRow("Inter-Regular") << QStringLiteral("Inter") << QFont::Normal;
    QTest::newRow("Inter-SemiBold") << QStringLiteral("Inter") << QFont::DemiBold;
    QTest::newRow("JetBrainsMonoRoman-Regular") << QStringLiteral("JetBrains Mono") << QFont::Normal;
}

void namedFontTest::eachNameHasItsFamilyAndWeight()
{
    QFETCH(const QString, family);
    QFETCH(const QFont::Weight, weight);
    const QFont font = namedFont(QString::fromLatin1(QTest::currentDataTag()), headlineSize);
    QCOMPARE(font.families().constFirst(), family);
    QCOMPARE(font.weight(), weight);
#ifndef DESKBROOM_FONTCONFIG_FILE
    if (family.startsWith(QStringLiteral("Space Grotesk"))) {
        return;
    }
#endif
    QCOMPARE(QFontInfo(font).family(), family);
    QCOMPARE(QFontInfo(font).weight(), static_cast<int>(weight));
}

void namedFontTest::sizeIsInLogicalPixels()
{
    QCOMPARE(namedFont(QStringLiteral("Inter-Regular"), 14).pixelSize(), 14);
    QCOMPARE(headlineFont().pixelSize(), headlineSize);
}

void namedFontTest::headlinesHaveTheFaceThatComesWithTheProgram()
{
#ifndef DESKBROOM_FONTCONFIG_FILE
    QSKIP("The build is one without fonts of its own");
#endif
    // The apostrophe and the dash of typesetting too.
    const QStringList families =
        paintedFamilies(QStringLiteral("You\u2019re all set \u2014 at last."), headlineFont());
    QCOMPARE(families, QStringList(QStringLiteral("Space Grotesk Medium")));
    QCOMPARE(QRawFont::fromFont(headlineFont()).weight(), static_cast<int>(QFont::Medium));
}

void namedFontTest::headlinesTakeOtherLettersFromElsewhere()
{
    const QStringList families =
        paintedFamilies(QStringLiteral("Wszystko gotowe, w\u0142a\u015Bnie"), headlineFont());
    QVERIFY(!families.isEmpty());
    QVERIFY2(!families.contains(QString()), qPrintable(families.join(QLatin1Char(','))));
}

void namedFontTest::unknownNameStopsTheProgram()
{
    const pid_t child = ::fork();
    if (child == 0) {
        // Neither the test's report of a crash nor the system's.
        (void)std::signal(SIGABRT, SIG_DFL);
        const rlimit none{};
        (void)::setrlimit(RLIMIT_CORE, &none);
        (void)namedFont(QStringLiteral("Inter-Heavy"), headlineSize);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

QTEST_MAIN(namedFontTest)
#include "namedFontTest.moc"
