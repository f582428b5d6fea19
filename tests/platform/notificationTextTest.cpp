#include "notificationText.h"

#include <QTest>

class notificationTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void makesTheTitleOneCleanLine_data();
    void makesTheTitleOneCleanLine();
    void keepsTheLinesOfTheBody_data();
    void keepsTheLinesOfTheBody();
    void escapesTheBodyForAServerThatReadsTags();
    void leavesTheBodyAsItIsForAServerThatDoesNot();
    void cutsLongTextsWithAnEllipsis();
    void neverCutsACharacterInTwo();
    void neverCutsAnEscapeInTwo();
};

namespace {

const QString replacement = QChar(QChar::ReplacementCharacter);

QString ofCodeUnits(std::initializer_list<char16_t> units)
{
    return QString::fromUtf16(units.begin(), qsizetype(units.size()));
}

} // namespace

void notificationTextTest::makesTheTitleOneCleanLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, const QString &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("plain", QStringLiteral("Copied"), QStringLiteral("Copied"));
    row("empty", QString(), QString());
    row("line breaks", QStringLiteral("a\nb\r\nc\rd"), QStringLiteral("a b c d"));
    row("Unicode's line breaks", ofCodeUnits({u'a', 0x2028, u'b', 0x2029, u'c', 0x85, u'd'}),
        QStringLiteral("a b c d"));
    row("null character", ofCodeUnits({u'a', 0, u'b'}), QStringLiteral("a b"));
    row("escape sequence", QStringLiteral("a\x1b[31mb"), QStringLiteral("a [31mb"));
    row("first half of a pair", ofCodeUnits({u'a', 0xD800, u'b'}), u'a' + replacement + u'b');
    row("second half of a pair", ofCodeUnits({u'a', 0xDC00}), u'a' + replacement);
    row("a pair", QStringLiteral("a\U0001F9F9b"), QStringLiteral("a\U0001F9F9b"));
    row("what looks like tags", QStringLiteral("<b>&amp;"), QStringLiteral("<b>&amp;"));
}

void notificationTextTest::makesTheTitleOneCleanLine()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);

    QCOMPARE(notificationText::title(text), expected);
}

void notificationTextTest::keepsTheLinesOfTheBody_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("lines") << QStringLiteral("a\nb") << QStringLiteral("a\nb");
    QTest::newRow("lines of another system") << QStringLiteral("a\r\nb") << QStringLiteral("a\nb");
    QTest::newRow("control characters") << QStringLiteral("a\tb\ac") << QStringLiteral("a b c");
    QTest::newRow("null character") << ofCodeUnits({u'a', 0, u'b'}) << QStringLiteral("a b");
    QTest::newRow("half a pair") << ofCodeUnits({0xD800}) << replacement;
}

void notificationTextTest::keepsTheLinesOfTheBody()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);

    QCOMPARE(notificationText::body(text, BodyFormat::Plain), expected);
    QCOMPARE(notificationText::body(text, BodyFormat::Markup), expected);
}

void notificationTextTest::escapesTheBodyForAServerThatReadsTags()
{
    QCOMPARE(
        notificationText::body(QStringLiteral("<a href='x'>&\"</a>"), BodyFormat::Markup),
        QStringLiteral("&lt;a href=&apos;x&apos;&gt;&amp;&quot;&lt;/a&gt;"));
}

void notificationTextTest::leavesTheBodyAsItIsForAServerThatDoesNot()
{
    const QString text = QStringLiteral("<a href='x'>&\"</a>");
    QCOMPARE(notificationText::body(text, BodyFormat::Plain), text);
}

void notificationTextTest::cutsLongTextsWithAnEllipsis()
{
    using namespace notificationText;
    const QString full(longestBody, u'x');
    QCOMPARE(body(full, BodyFormat::Plain), full);
    QCOMPARE(body(full + u'x', BodyFormat::Plain), full + QChar(0x2026));
    QCOMPARE(body(QString(50'000'000, u'x'), BodyFormat::Plain), full + QChar(0x2026));
    QCOMPARE(title(QString(longestTitle + 1, u'x')), QString(longestTitle, u'x') + QChar(0x2026));
}

void notificationTextTest::neverCutsACharacterInTwo()
{
    using namespace notificationText;
    const QString text = QString(longestTitle - 1, u'x') + QStringLiteral("\U0001F9F9\U0001F9F9");

    QCOMPARE(title(text), QString(longestTitle - 1, u'x') + QChar(0x2026));
}

void notificationTextTest::neverCutsAnEscapeInTwo()
{
    const QString escaped =
        notificationText::body(QString(2 * notificationText::longestBody, u'&'), BodyFormat::Markup);

    QCOMPARE(escaped, QStringLiteral("&amp;").repeated(notificationText::longestBody) + QChar(0x2026));
}

QTEST_APPLESS_MAIN(notificationTextTest)

#include "notificationTextTest.moc"
