#include "isScreenshot.h"
#include "SlowScreenshotRule.h"

#include <QTest>
#include <QThreadPool>

#include <atomic>
#include <random>

class isScreenshotTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decidesByTheName_data();
    void decidesByTheName();
    void theExtensionGateOnBytesAgreesWithTheRule_data();
    void theExtensionGateOnBytesAgreesWithTheRule();
    void agreesWithASlowReadingOfTheRuleOnAMillionNames();
    void isSafeFromSeveralThreads();
};

void isScreenshotTest::decidesByTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");

    const auto row = [](const char *title, const char16_t *name, bool expected) {
        QTest::newRow(title) << QString::fromUtf16(name) << expected;
    };
    row("a known prefix", u"Screenshot 2024-05-01 at 9.41.07.png", true);
    row("prefix and suffix in any case", u"screenshot 2024-05-01 at 9.41.07.PNG", true);
    row("prefix in capitals", u"SCREENSHOT foo.png", true);
    row("no blank after the word, no date", u"Screenshot.png", false);
    row("prefix with anything after it", u"Screenshot 1.png", true);
    row("keyword and date", u"Screenshot_2024-05-01.png", true);
    row("an ordinary camera photo: keyword img and a date", u"IMG_20240501_094107.jpg", true);
    row("keyword pic and a date", u"holiday pic 2024-05-01.jpeg", true);
    row("keyword pic without a date", u"holiday pic.jpeg", false);
    row("a date without a keyword", u"report-2024-05-01.png", false);
    row("a tool's name without a date", u"my flameshot export.bmp", true);
    row("heic is no extension of the rule", u"Screenshot 2024-05-01 at 9.41.07.heic", false);
    row("tif is no extension of the rule", u"Screenshot.tif", false);
    row("jpe is no extension of the rule", u"Screenshot 1.jpe", false);
    row("no extension", u"Screenshot 2024-05-01 at 9.41.07", false);
    row("Chinese prefix", u"截屏2024-05-01 09.41.07.png", true);
    row("Japanese prefix", u"スクリーンショット 2024-05-01 9.41.07.png", true);
    row("an empty name", u"", false);
    row("a whole path passed by mistake", u"/home/user/Screenshot 1.png", false);
    row("a full-name pattern in the middle", u"Copy of Screenshot 2024-05-01 at 9.41.07.png", true);
    row("full-name patterns mind the case, keyword and date decide", u"copy of SCREENSHOT 2024-05-01.png",
        true);
    row("a capture with date and time", u"my capture_20240501_094107.png", true);
    row("a time of day counts as a date", u"grab 9.41.07.gif", true);
    row("the date as day, month, year", u"snap 01-05-2024.webp", true);
    row("eight digits, a blank, six digits", u"shot 20240501 094107.tiff", true);
    row("a no-break space is white space to ICU", u"shot 20240501\u00A0094107.tiff", true);
    row("Arabic digits are digits", u"shot ٢٠٢٤-٠٥-٠١.png", true);
    row("digits beyond the first plane are digits", u"shot 𝟚𝟘𝟚𝟜-𝟘𝟝-𝟘𝟙.png", true);
    row("a Kelvin sign is a k in lower case", u"S\u212Aitch 1.png", true);
    row("a dotted capital I isn't an i in lower case", u"holiday P\u0130C 2024-05-01.png", false);
    row("a right-to-left name", u"\u202Egnp.1 tohsneercS.png", false);
    row("a line break before the date", u"shot\n2024-05-01.png", true);
    row("a line break inside a full-name pattern", u"Copy of Screenshot 2024-05-01 at 9.41.07\n.png", true);
    row("GNOME", u"Screenshot from 2024-05-01 10-11-12.png", true);
    row("Spectacle", u"Screenshot_20240501_101112.png", true);
    row("Xfce", u"Screenshot_2024-05-01_10-11-12.png", true);
}

void isScreenshotTest::decidesByTheName()
{
    QFETCH(const QString, name);
    QFETCH(const bool, expected);
    QCOMPARE(isScreenshot(name), expected);
    QCOMPARE(slowIsScreenshot(name), expected);
}

void isScreenshotTest::theExtensionGateOnBytesAgreesWithTheRule_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    for (const char16_t *extension : {u".png", u".JPG", u".Jpeg", u".giF", u".webp", u".BMP", u".Tiff"}) {
        const QString text = QString::fromUtf16(extension);
        QTest::addRow("%s", qPrintable(text)) << QString(u'a' + text) << true;
    }
    QTest::newRow("the extension alone") << QStringLiteral(".png") << true;
    QTest::newRow("shorter than any extension") << QStringLiteral("png") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("dotless i") << QStringLiteral("a.g\u0131f") << false;
    QTest::newRow("dotted capital i") << QStringLiteral("a.G\u0130F") << false;
    QTest::newRow("another extension after it") << QStringLiteral("a.png.txt") << false;
}

void isScreenshotTest::theExtensionGateOnBytesAgreesWithTheRule()
{
    QFETCH(const QString, name);
    QFETCH(const bool, expected);
    QCOMPARE(hasScreenshotExtension(name.toUtf8()), expected);
    QCOMPARE(slowHasExtension(name), expected);
}

void isScreenshotTest::agreesWithASlowReadingOfTheRuleOnAMillionNames()
{
    // Names put together from what the rule looks at, so that most come near to one of its lines.
    const QStringList pieces = {
        QStringLiteral("Screenshot "),
        QStringLiteral("Screen Shot "),
        QStringLiteral("CleanShot "),
        QStringLiteral("SCREENSHOT_"),
        QStringLiteral("screenshot_"),
        QStringLiteral("capture_"),
        QStringLiteral("Capture_"),
        QStringLiteral("screen_capture_"),
        QStringLiteral("snapshot_"),
        QStringLiteral("截屏"),
        QStringLiteral("スクリーンショット"),
        QStringLiteral("s\u212Aitch "),
        QStringLiteral("P\u0130C"),
        QStringLiteral("pic"),
        QStringLiteral("IMG_"),
        QStringLiteral("grab"),
        QStringLiteral("shot"),
        QStringLiteral("Snap"),
        QStringLiteral("greenshot"),
        QStringLiteral("Spectacle"),
        QStringLiteral("rectangula"),
        QStringLiteral("Monosnap "),
        QStringLiteral("Xnip"),
        QStringLiteral(" at "),
        QStringLiteral("2024-05-01"),
        QStringLiteral("2024_05_01"),
        QStringLiteral("01-05-2024"),
        QStringLiteral("9.41.07"),
        QStringLiteral("09.41.07"),
        QStringLiteral("20240501"),
        QStringLiteral("094107"),
        QStringLiteral("_10-11-12"),
        QStringLiteral("٢٠٢٤"),
        QStringLiteral("𝟙𝟚"),
        QStringLiteral("-"),
        QStringLiteral("_"),
        QStringLiteral(" "),
        QStringLiteral("\u00A0"),
        QStringLiteral("\u2003"),
        QStringLiteral("\n"),
        QStringLiteral("."),
        QStringLiteral(".png"),
        QStringLiteral(".jpg"),
        QStringLiteral("a"),
        QStringLiteral("é"),
        QStringLiteral("\u0130"),
        QStringLiteral("\u202E"),
        QStringLiteral("1"),
        QStringLiteral("42"),
        QStringLiteral("report"),
    };
    const QStringList endings = {
        QStringLiteral(".png"), QStringLiteral(".PNG"),  QStringLiteral(".jpg"),      QStringLiteral(".jpeg"),
        QStringLiteral(".gif"), QStringLiteral(".webp"), QStringLiteral(".bmp"),      QStringLiteral(".tiff"),
        QStringLiteral(".tif"), QStringLiteral(".heic"), QStringLiteral(".G\u0130F"), QString(),
    };
    std::mt19937 random(20240501);
    int accepted = 0;
    for (int i = 0; i < 1'000'000; ++i) {
        QString name;
        for (auto count = random() % 6; count > 0; --count) {
            name += pieces.at(static_cast<qsizetype>(random() % static_cast<size_t>(pieces.size())));
        }
        name += endings.at(static_cast<qsizetype>(random() % static_cast<size_t>(endings.size())));
        const bool expected = slowIsScreenshot(name);
        accepted += expected ? 1 : 0;
        if (isScreenshot(name) != expected ||
            hasScreenshotExtension(name.toUtf8()) != slowHasExtension(name)) {
            QFAIL(qPrintable(QStringLiteral("They differ on: ") + name));
        }
    }
    // The names are worth something only if both answers are frequent.
    QCOMPARE_GT(accepted, 100'000);
    QCOMPARE_LT(accepted, 900'000);
}

void isScreenshotTest::isSafeFromSeveralThreads()
{
    QThreadPool pool;
    std::atomic<int> accepted = 0;
    for (int i = 0; i < 64; ++i) {
        pool.start([&accepted] {
            for (int j = 0; j < 200; ++j) {
                accepted += isScreenshot(QStringLiteral("IMG_20240501_094107.jpg")) ? 1 : 0;
            }
        });
    }
    pool.waitForDone();
    QCOMPARE(accepted.load(), 64 * 200);
}

QTEST_APPLESS_MAIN(isScreenshotTest)
#include "isScreenshotTest.moc"
