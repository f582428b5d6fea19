#include "FolderAccessCheck.h"

#include "FileAccessFixture.h"
#include "HeldQueue.h"

#include <QSignalSpy>

/// Whether the folder can be read, as views learn it: with real folders, and disks that don't answer.
class FolderAccessCheckTest final : public FileAccessFixture {
    Q_OBJECT

private Q_SLOTS:

    void initTestCase() { prepare(); }

    void init() { makeHome(); }

    void cleanup() { removeHome(); }

    void aReadableFolderIsKnownSoon();
    void withoutABookmarkTheAnswerIsKnownAtOnce();
    void nothingIsKnownWhileTheDiskDoesntAnswer();
    void theLastAnswerStandsUntilTheNext();
    void anAnswerThatIsOlderThanTheLastQuestionDoesntCount();
    void theSameAnswerIsToldButIsNoChange();
    void aGrantIsAnAnswer();
    void aGrantIsAnAnswerWhileTheFolderBeforeDoesntAnswer();
    void aCheckThatIsGoneIsToldNothing();
    void checksThatComeAndGoAskOnce();
    void checksThatWaitTogetherAreAllAnswered();

private:
    void makeUnreadable() const { setMode(m_home->desktop(), 0); }

    void makeReadable() const { setMode(m_home->desktop(), 0755); }
};

void FolderAccessCheckTest::aReadableFolderIsKnownSoon()
{
    restart();
    FolderAccessCheck check(*m_manager);
    QSignalSpy changed(&check, &FolderAccessCheck::changed);
    QCOMPARE(check.lastAnswer(), std::nullopt);
    check.ask();
    QVERIFY(changed.wait(patience));
    QCOMPARE(check.lastAnswer(), true);
}

void FolderAccessCheckTest::withoutABookmarkTheAnswerIsKnownAtOnce()
{
    makeUnreadable();
    restart();
    QVERIFY(!m_manager->hasBookmark());
    const HeldQueue held(BackgroundQueue::Listing);
    FolderAccessCheck check(*m_manager);
    QSignalSpy changed(&check, &FolderAccessCheck::changed);
    check.ask();
    QCOMPARE(check.lastAnswer(), false);
    QCOMPARE(changed.count(), 1);
    makeReadable();
}

void FolderAccessCheckTest::nothingIsKnownWhileTheDiskDoesntAnswer()
{
    restart();
    HeldQueue held(BackgroundQueue::Listing);
    FolderAccessCheck check(*m_manager);
    QSignalSpy changed(&check, &FolderAccessCheck::changed);
    check.ask();
    QCoreApplication::processEvents();
    QCOMPARE(check.lastAnswer(), std::nullopt);
    held.release();
    QVERIFY(changed.wait(patience));
    QCOMPARE(check.lastAnswer(), true);
}

void FolderAccessCheckTest::theLastAnswerStandsUntilTheNext()
{
    restart();
    FolderAccessCheck check(*m_manager);
    QSignalSpy changed(&check, &FolderAccessCheck::changed);
    check.ask();
    QVERIFY(changed.wait(patience));
    makeUnreadable();
    HeldQueue held(BackgroundQueue::Listing);
    check.ask();
    QCOMPARE(check.lastAnswer(), true);
    held.release();
    QVERIFY(changed.wait(patience));
    QCOMPARE(check.lastAnswer(), false);
    makeReadable();
}

void FolderAccessCheckTest::anAnswerThatIsOlderThanTheLastQuestionDoesntCount()
{
    restart();
    FolderAccessCheck check(*m_manager);
    QSignalSpy changed(&check, &FolderAccessCheck::changed);
    check.ask();
    // The first answer is on its way back when the folder changes and somebody asks again.
    background::pool(BackgroundQueue::Listing).waitForDone();
    makeUnreadable();
    check.ask();
    QVERIFY(changed.wait(patience));
    QCOMPARE(check.lastAnswer(), false);
    QCOMPARE(changed.count(), 1);
    makeReadable();
}

void FolderAccessCheckTest::theSameAnswerIsToldButIsNoChange()
{
    restart();
    FolderAccessCheck check(*m_manager);
    QSignalSpy answered(&check, &FolderAccessCheck::answered);
    const QSignalSpy changed(&check, &FolderAccessCheck::changed);
    for (int time = 1; time <= 2; ++time) {
        check.ask();
        QVERIFY(answered.wait(patience));
        QCOMPARE(answered.count(), time);
        QCOMPARE(check.lastAnswer(), true);
    }
    QCOMPARE(changed.count(), 1);
}

void FolderAccessCheckTest::aGrantIsAnAnswer()
{
    makeUnreadable();
    restart();
    FolderAccessCheck check(*m_manager);
    check.ask();
    QCOMPARE(check.lastAnswer(), false);
    m_manager->handleSelectedFolder(fileUrl(m_home->pictures()));
    QTRY_COMPARE_WITH_TIMEOUT(check.lastAnswer(), true, patience);
    makeReadable();
}

void FolderAccessCheckTest::aGrantIsAnAnswerWhileTheFolderBeforeDoesntAnswer()
{
    restart();
    FolderAccessCheck check(*m_manager);
    QSignalSpy answered(&check, &FolderAccessCheck::answered);
    HeldQueue held(BackgroundQueue::Listing);
    check.ask();
    pick(m_home->pictures());
    QCOMPARE(check.lastAnswer(), true);
    QCOMPARE(answered.count(), 1);
    // What comes in the end is asked anew: it may be about the folder before.
    setMode(m_home->pictures(), 0);
    held.release();
    QVERIFY(answered.wait(patience));
    QCOMPARE(check.lastAnswer(), false);
    setMode(m_home->pictures(), 0755);
}

void FolderAccessCheckTest::aCheckThatIsGoneIsToldNothing()
{
    restart();
    auto check = std::make_unique<FolderAccessCheck>(*m_manager);
    bool isTold = false;
    connect(check.get(), &FolderAccessCheck::changed, this, [&isTold] { isTold = true; });
    check->ask();
    check.reset();
    background::pool(BackgroundQueue::Listing).waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(!isTold);
}

void FolderAccessCheckTest::checksThatComeAndGoAskOnce()
{
    restart();
    HeldQueue held(BackgroundQueue::Listing);
    for (int time = 0; time < 5; ++time) {
        FolderAccessCheck(*m_manager).ask();
    }
    FolderAccessCheck last(*m_manager);
    last.ask();
    held.release();
    QTRY_COMPARE_WITH_TIMEOUT(last.lastAnswer(), true, patience);
    // For the first one, and afresh for the last.
    QCOMPARE(m_output->lines().filter(QStringLiteral("Successfully accessed")).size(), 2);
}

void FolderAccessCheckTest::checksThatWaitTogetherAreAllAnswered()
{
    restart();
    HeldQueue held(BackgroundQueue::Listing);
    auto first = std::make_unique<FolderAccessCheck>(*m_manager);
    FolderAccessCheck second(*m_manager);
    FolderAccessCheck third(*m_manager);
    QSignalSpy answered(&third, &FolderAccessCheck::answered);
    for (FolderAccessCheck *const check : {first.get(), &second, &third}) {
        check->ask();
    }
    first.reset();
    held.release();
    QTRY_COMPARE_WITH_TIMEOUT(third.lastAnswer(), true, patience);
    QTRY_COMPARE_WITH_TIMEOUT(second.lastAnswer(), true, patience);
    // Later questions are asked as ever.
    makeUnreadable();
    third.ask();
    QTRY_COMPARE_WITH_TIMEOUT(third.lastAnswer(), false, patience);
    QCOMPARE(answered.count(), 2);
    makeReadable();
}

QTEST_MAIN(FolderAccessCheckTest)
#include "FolderAccessCheckTest.moc"
