#include "AppDelegateFixture.h"

#include "MenuBarManager.h"
#include "NotificationCenter.h"
#include "Popover.h"
#include "PushButton.h"
#include "ScreenshotManager.h"
#include "ScreenshotWatcher.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QWindow>

#include <algorithm>

/// What becomes of a screenshot that the launched program notices: the question and its answers.
class ScreenshotQuestionTest final : public AppDelegateFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { begin(); }

    void cleanup() { end(); }

    void aScreenshotIsAskedAbout();
    void deleteNowMovesItToTheTrash();
    void deleteLaterUsesTheDelayOfThatMoment();
    void whatIsPressedTwiceAnswersOnce_data();
    void whatIsPressedTwiceAnswersOnce();
    void keepLeavesIt();
    void aNewerScreenshotReplacesTheQuestion();
    void ofABurstOnlyTheLastIsAskedAbout();
    void aQuestionWaitsForAnOpenMenu();
    void withAutoCopyTheClipboardComesFirst();
    void aGrantedFolderStartsWatchingAfresh();

private:
    [[nodiscard]] QWidget *question() const;
    /// In the question, none if it isn't there.
    [[nodiscard]] PushButton *button(const QString &text) const;
    void press(const QString &text) const;
    [[nodiscard]] bool isInTrash(const QString &name) const;
};

QWidget *ScreenshotQuestionTest::question() const
{
    const Popover *const popover = m_delegate->menuBarManager()->confirmationPopover();
    return popover == nullptr ? nullptr : const_cast<QWidget *>(popover->window());
}

PushButton *ScreenshotQuestionTest::button(const QString &text) const
{
    const auto buttons = question()->findChildren<PushButton *>();
    const auto found = std::ranges::find(buttons, text, &PushButton::text);
    return found == buttons.end() ? nullptr : *found;
}

void ScreenshotQuestionTest::press(const QString &text) const
{
    QTRY_VERIFY(question() != nullptr);
    PushButton *const pressed = button(text);
    QVERIFY2(pressed != nullptr, qPrintable(text));
    pressed->click();
}

bool ScreenshotQuestionTest::isInTrash(const QString &name) const
{
    return files::exists(m_home->trashedFiles() + u'/' + name);
}

void ScreenshotQuestionTest::aScreenshotIsAskedAbout()
{
    launch();
    QSignalSpy seeded(m_delegate->screenshotWatcher(), &ScreenshotWatcher::didApplyScan);
    QVERIFY(seeded.wait(patience));
    makeScreenshot();
    QTRY_VERIFY_WITH_TIMEOUT(question() != nullptr, patience);
}

void ScreenshotQuestionTest::deleteNowMovesItToTheTrash()
{
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    press(QStringLiteral("Delete Now"));
    QCOMPARE(question(), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 1.png")), patience);
}

void ScreenshotQuestionTest::deleteLaterUsesTheDelayOfThatMoment()
{
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QTRY_VERIFY(question() != nullptr);
    m_delegate->updateTimeframe(0);
    press(QStringLiteral("Delete in 5 min"));
    QCOMPARE(question(), nullptr);
    QVERIFY(m_output->contains(QStringLiteral("Scheduled deletion of Screenshot 1.png in 0 minute")));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 1.png")), patience);
}

void ScreenshotQuestionTest::whatIsPressedTwiceAnswersOnce_data()
{
    QTest::addColumn<bool>("isKey");
    QTest::newRow("a key") << true;
    QTest::newRow("the mouse") << false;
}

void ScreenshotQuestionTest::whatIsPressedTwiceAnswersOnce()
{
    QFETCH(const bool, isKey);
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QTRY_VERIFY(question() != nullptr);
    QWindow *const window = question()->windowHandle();
    PushButton *const later = button(QStringLiteral("Delete in 5 min"));
    later->setFocus();
    const QPoint place = later->mapTo(question(), later->rect().center());
    QTRY_COMPARE(question()->childAt(place), later); // after the mouse's time of grace
    // The second time has waited in the queue of a busy program.
    for (int time = 0; time < 2; ++time) {
        if (isKey) {
            QTest::keyClick(window, Qt::Key_Return);
        } else {
            QTest::mouseClick(window, Qt::LeftButton, {}, place);
        }
    }
    QCOMPARE(question(), nullptr);
    QCOMPARE(m_output->lines().filter(QStringLiteral("Scheduled deletion")).size(), 1);
}

void ScreenshotQuestionTest::keepLeavesIt()
{
    launch();
    const QString path = makeScreenshot();
    m_delegate->watcherDidDetectScreenshot(path);
    press(QStringLiteral("Keep"));
    QCOMPARE(question(), nullptr);
    QVERIFY(files::exists(path));
    QCOMPARE(m_output->lines(), QStringList());
    QCOMPARE(m_delegate->screenshotManager()->pendingDeletionCount(), size_t(0));
}

void ScreenshotQuestionTest::aNewerScreenshotReplacesTheQuestion()
{
    launch();
    const QString first = makeScreenshot();
    m_delegate->watcherDidDetectScreenshot(first);
    QTRY_VERIFY(question() != nullptr);
    const QPointer<QWidget> firstQuestion = question();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot(QStringLiteral("Screenshot 2.png")));
    QTRY_VERIFY(!firstQuestion);
    press(QStringLiteral("Delete Now"));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 2.png")), patience);
    QVERIFY(files::exists(first));
}

void ScreenshotQuestionTest::ofABurstOnlyTheLastIsAskedAbout()
{
    launch();
    for (int i = 0; i < 1000; ++i) {
        m_delegate->watcherDidDetectScreenshot(makeScreenshot(QStringLiteral("Screenshot %1.png").arg(i)));
    }
    press(QStringLiteral("Delete Now"));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 999.png")), patience);
    QCOMPARE(QDir(m_home->desktop()).entryList(QDir::Files).size(), 999);
}

void ScreenshotQuestionTest::aQuestionWaitsForAnOpenMenu()
{
    launch();
    m_delegate->menuBarManager()->statusItemClicked();
    QVERIFY(openMenu() != nullptr);
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QCoreApplication::processEvents();
    QCOMPARE(question(), nullptr);
    openMenu()->close();
    QTRY_VERIFY(question() != nullptr);
}

void ScreenshotQuestionTest::withAutoCopyTheClipboardComesFirst()
{
    UserDefaults::standard().setBoolean(preferences::autoCopyToClipboard, true);
    launch();
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    QVERIFY(image.save(path));
    m_delegate->watcherDidDetectScreenshot(path);
    QCOMPARE(question(), nullptr);
    QVERIFY(m_output->contains(QStringLiteral("Copied screenshot to clipboard: Screenshot 1.png")));
    QTRY_VERIFY(question() != nullptr);
}

void ScreenshotQuestionTest::aGrantedFolderStartsWatchingAfresh()
{
    launch();
    const QPointer<ScreenshotWatcher> first = m_delegate->screenshotWatcher();
    NotificationCenter::defaultCenter().post(QStringLiteral("folderAccessGranted"));
    QVERIFY(!first);
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
    QSignalSpy seeded(m_delegate->screenshotWatcher(), &ScreenshotWatcher::didApplyScan);
    QVERIFY(seeded.wait(patience));
    makeScreenshot();
    QTRY_VERIFY_WITH_TIMEOUT(question() != nullptr, patience);
}

QTEST_MAIN(ScreenshotQuestionTest)
#include "ScreenshotQuestionTest.moc"
