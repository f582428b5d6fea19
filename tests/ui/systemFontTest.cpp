#include "systemFont.h"
#include "namedFont.h"

#include "files.h"

#include <QApplication>
#include <QFontInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// A system on which none of the fonts that are asked for by name is installed.
const char *const fontsOfABareSystem = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <include>/etc/fonts/fonts.conf</include>
  <selectfont>
    <rejectfont><pattern><patelt name="family"><string>Inter</string></patelt></pattern></rejectfont>
    <rejectfont><pattern><patelt name="family"><string>JetBrains Mono</string></patelt></pattern></rejectfont>
    <rejectfont><pattern><patelt name="family"><string>Space Grotesk</string></patelt></pattern></rejectfont>
    <rejectfont><pattern><patelt name="family"><string>Space Grotesk Medium</string></patelt></pattern></rejectfont>
  </selectfont>
</fontconfig>
)";

} // namespace

class systemFontTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void initMain();
    void cleanup();
    void standsInForAMissingFont_data();
    void standsInForAMissingFont();
    void hasTheWeightWhateverStyleTheDesktopNames();
    void sizeIsInLogicalPixels();
};

void systemFontTest::initMain()
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("fonts.conf"));
    files::write(path, fontsOfABareSystem);
    qputenv("FONTCONFIG_FILE", path.toLocal8Bit());
}

void systemFontTest::cleanup()
{
    QApplication::setFont({});
}

void systemFontTest::standsInForAMissingFont_data()
{
    QTest::addColumn<QFont::Weight>("weight");
    QTest::newRow("SpaceGrotesk-Medium") << QFont::Medium;
    QTest::newRow("Inter-Regular") << QFont::Normal;
    QTest::newRow("Inter-SemiBold") << QFont::DemiBold;
    QTest::newRow("JetBrainsMonoRoman-Regular") << QFont::Normal;
}

void systemFontTest::standsInForAMissingFont()
{
    // Not the one that fontconfig would take by itself.
    QApplication::setFont(QFont(QStringLiteral("DejaVu Serif")));
    QFETCH(const QFont::Weight, weight);
    const QFontInfo missing(namedFont(QString::fromLatin1(QTest::currentDataTag()), 26));
    const QFontInfo system(systemFont(26, weight));
    QCOMPARE(missing.family(), QStringLiteral("DejaVu Serif"));
    QCOMPARE(system.family(), missing.family());
    QCOMPARE(missing.weight(), system.weight());
    QCOMPARE(missing.pixelSize(), 26);
}

void systemFontTest::hasTheWeightWhateverStyleTheDesktopNames()
{
    QFont styled(QStringLiteral("DejaVu Sans"));
    styled.setStyleName(QStringLiteral("Book"));
    styled.setItalic(true);
    QApplication::setFont(styled);
    const QFontInfo bold(systemFont(13, QFont::Bold));
    QCOMPARE(bold.family(), QStringLiteral("DejaVu Sans"));
    QCOMPARE(bold.styleName(), QStringLiteral("Bold"));
}

void systemFontTest::sizeIsInLogicalPixels()
{
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 40));
    QCOMPARE(systemFont(13, QFont::Normal).pixelSize(), 13);
}

QTEST_MAIN(systemFontTest)
#include "systemFontTest.moc"
