#include "galleryTexts.h"

#include <QTest>

class galleryTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsTakeTheEndingUnlessThereIsOne_data();
    void countsTakeTheEndingUnlessThereIsOne();
    void theHeaderSaysHowManyAreShownWhileThereAreMore();
    void theFooterAndTheButtonGiveTheirNumbersInOrder();
    void selectionAndOverflowGiveTheirNumber();
};

void galleryTextsTest::countsTakeTheEndingUnlessThereIsOne_data()
{
    QTest::addColumn<qsizetype>("count");
    QTest::addColumn<QString>("screenshots");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QString>("question");
    QTest::newRow("none") << qsizetype(0) << "0 screenshots" << "0 SCREENSHOTS"
                          << "Are you sure you want to move 0 screenshots to the Trash?";
    QTest::newRow("one") << qsizetype(1) << "1 screenshot" << "1 SCREENSHOT"
                         << "Are you sure you want to move 1 screenshot to the Trash?";
    QTest::newRow("two") << qsizetype(2) << "2 screenshots" << "2 SCREENSHOTS"
                         << "Are you sure you want to move 2 screenshots to the Trash?";
    QTest::newRow("many") << qsizetype(10'000) << "10000 screenshots" << "10000 SCREENSHOTS"
                          << "Are you sure you want to move 10000 screenshots to the Trash?";
}

void galleryTextsTest::countsTakeTheEndingUnlessThereIsOne()
{
    QFETCH(qsizetype, count);
    QTEST(galleryTexts::screenshotCount(count), "screenshots");
    QTEST(galleryTexts::headerCount(count, count), "header");
    QTEST(galleryTexts::deletionQuestion(count), "question");
}

void galleryTextsTest::theHeaderSaysHowManyAreShownWhileThereAreMore()
{
    QCOMPARE(galleryTexts::headerCount(30, 87), QStringLiteral("SHOWING 30 OF 87"));
    QCOMPARE(galleryTexts::headerCount(87, 87), QStringLiteral("87 SCREENSHOTS"));
}

void galleryTextsTest::theFooterAndTheButtonGiveTheirNumbersInOrder()
{
    QCOMPARE(galleryTexts::footer(30, 87), QStringLiteral("Showing 30 of 87 screenshots"));
    QCOMPARE(galleryTexts::loadMore(57), QStringLiteral("Load More (57 remaining)"));
}

void galleryTextsTest::selectionAndOverflowGiveTheirNumber()
{
    QCOMPARE(galleryTexts::selectionCount(3), QStringLiteral("3 selected"));
    QCOMPARE(galleryTexts::overflow(31), QStringLiteral("+ 31 more"));
}

QTEST_GUILESS_MAIN(galleryTextsTest)
#include "galleryTextsTest.moc"
