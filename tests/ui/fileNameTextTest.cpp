#include "fileNameText.h"

#include <QTest>

class fileNameTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameInASentenceIsIsolated_data();
    void nameInASentenceIsIsolated();
};

void fileNameTextTest::nameInASentenceIsIsolated_data()
{
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char16_t *sentence, const char16_t *shown) {
        QTest::newRow(name) << QString::fromUtf16(sentence) << QString::fromUtf16(shown);
    };
    row("plain", u"'Screenshot 1.png' has been copied", u"'\u2068Screenshot 1.png\u2069' has been copied");
    row("turning round", u"'a\u202Egnp.exe' has", u"'\u2068a\uFFFDgnp.exe\u2069' has");
    row("ending the isolation", u"'a\u2069\u202Eb' has", u"'\u2068a\uFFFD\uFFFDb\u2069' has");
    row("right to left", u"'שלום.png' has", u"'\u2068שלום.png\u2069' has");
    row("with a quote", u"'it's.png' has", u"'\u2068it's.png\u2069' has");
    row("line break", u"'a\nb' has", u"'\u2068a\u240Ab\u2069' has");
    row("no name", u"3 screenshots copied", u"3 screenshots copied");
    row("a lone quote", u"It's copied", u"It's copied");
}

void fileNameTextTest::nameInASentenceIsIsolated()
{
    QFETCH(const QString, sentence);
    QFETCH(const QString, shown);
    QCOMPARE(fileNameText::displayedInSentence(sentence), shown);
}

QTEST_GUILESS_MAIN(fileNameTextTest)
#include "fileNameTextTest.moc"
