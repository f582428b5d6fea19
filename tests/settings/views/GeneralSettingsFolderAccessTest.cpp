#include "GeneralSettingsFixture.h"
#include "HeldQueue.h"
#include "SettingsRow.h"
#include "Switch.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>

#include <unistd.h>

namespace {

/// The dialog to pick a folder; there is no portal on the bus.
QFileDialog *picker()
{
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

} // namespace

/// What the General page says of the folder, and the button that grants access to it or changes it.
class GeneralSettingsFolderAccessTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aReadableFolderIsGranted();
    void theFocusRingStaysClearOfTheLabel();
    void withoutABookmarkAccessCanBeGranted();
    void aGrantThatFailsLeavesTheButton();
    void aFolderThatDoesntAnswerKeepsNothingWaiting();
    void theRowsToolTipNamesTheFolder();
    void theKeyboardStaysWithTheFoldersButton();
    void theKeyboardStaysWithTheFoldersButtonBehindAnotherWindow();

private:
    std::unique_ptr<GeneralSettingsFixture> m_settings;
};

void GeneralSettingsFolderAccessTest::initTestCase()
{
    m_settings = std::make_unique<GeneralSettingsFixture>();
}

void GeneralSettingsFolderAccessTest::init()
{
    m_settings->launch();
}

void GeneralSettingsFolderAccessTest::cleanup()
{
    m_settings->end();
}

void GeneralSettingsFolderAccessTest::aReadableFolderIsGranted()
{
    const auto page = m_settings->shown();
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
    QVERIFY(hasButton(*page, QStringLiteral("Change…")));
    QVERIFY(!hasButton(*page, QStringLiteral("Grant Access")));
}

void GeneralSettingsFolderAccessTest::theFocusRingStaysClearOfTheLabel()
{
    const auto page = m_settings->shownWithAnswer();
    for (const QLabel *const label : page->findChildren<QLabel *>()) {
        if (label->text() == granted) {
            const PushButton *const change = buttonNamed(*page, QStringLiteral("Change…"));
            // The button's place has the ring in it.
            QVERIFY(label->geometry().right() + 2 < change->geometry().left());
            return;
        }
    }
    QFAIL("nothing says that access is granted");
}

void GeneralSettingsFolderAccessTest::withoutABookmarkAccessCanBeGranted()
{
    const auto bookmark = UserDefaults::standard().data(preferences::desktopFolderBookmark);
    QVERIFY(bookmark.has_value());
    QFile::remove(m_settings->home().path() + QStringLiteral("/.config/Deskbroom/Deskbroom.json"));
    HeldQueue held(BackgroundQueue::Listing);
    const auto page = m_settings->shown();
    // Known at once, without a disk.
    QVERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    QVERIFY(!texts(*page).contains(granted));
    QVERIFY(!hasButton(*page, QStringLiteral("Change…")));

    held.release();
    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(m_settings->home().pictures()));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
    QVERIFY(!hasButton(*page, QStringLiteral("Grant Access")));
    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(m_settings->home().desktop()));
    QTRY_COMPARE_WITH_TIMEOUT(
        FileAccessManager::shared().persistentAccessUrl(), QUrl::fromLocalFile(m_settings->home().desktop()),
        patience);
}

void GeneralSettingsFolderAccessTest::aGrantThatFailsLeavesTheButton()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    QFile::remove(m_settings->home().path() + QStringLiteral("/.config/Deskbroom/Deskbroom.json"));
    const QString unreadable = m_settings->home().path() + QStringLiteral("/unreadable");
    files::makeFolder(unreadable);
    QVERIFY(QFile::setPermissions(unreadable, {}));
    const QString failure = QStringLiteral("Could not start accessing security-scoped resource");
    const CapturedOutput output;
    const auto page = m_settings->shown();
    QVERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(unreadable));
    QTRY_COMPARE_WITH_TIMEOUT(output.lines().filter(failure).size(), 1, patience);
    QVERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    // There is a bookmark now: whether it can be used is asked anew.
    QVERIFY(FileAccessManager::shared().hasBookmark());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    page->activateWindow();
    QTRY_VERIFY_WITH_TIMEOUT(output.lines().filter(failure).size() > 1, patience);
    background::pool(BackgroundQueue::Listing).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    QVERIFY(!texts(*page).contains(granted));
    QVERIFY(page->findChild<SettingsRow *>()->toolTip().isEmpty());

    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(m_settings->home().desktop()));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
    QVERIFY(QDir().rmdir(unreadable));
}

void GeneralSettingsFolderAccessTest::aFolderThatDoesntAnswerKeepsNothingWaiting()
{
    HeldQueue held(BackgroundQueue::Listing);
    const auto page = m_settings->shown();
    // Neither is claimed, and another folder can be picked meanwhile.
    QVERIFY(!texts(*page).contains(granted));
    QVERIFY(!hasButton(*page, QStringLiteral("Grant Access")));
    QVERIFY(hasButton(*page, QStringLiteral("Change…")));
    auto *const clipboard = control<Switch>(*page, clipboardTitle);
    QTest::keyClick(clipboard, Qt::Key_Space);
    QVERIFY(m_settings->delegate().screenshotManager()->autoCopyToClipboard());
    // The look for where the picker starts hangs as well.
    HeldQueue heldLook(BackgroundQueue::UserInitiated);
    QTest::mouseClick(buttonNamed(*page, QStringLiteral("Change…")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    QTest::keyClick(picker(), Qt::Key_Escape);
    QTRY_VERIFY(picker() == nullptr);
    heldLook.release();
    held.release();
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
}

void GeneralSettingsFolderAccessTest::theRowsToolTipNamesTheFolder()
{
    const auto page = m_settings->shownWithAnswer();
    const auto *const row = page->findChild<SettingsRow *>();
    QVERIFY2(
        row->toolTip().contains(m_settings->home().desktop().toHtmlEscaped()), qPrintable(row->toolTip()));
    // Another one that can be read as well, and back.
    for (const QString &folder : {m_settings->home().pictures(), m_settings->home().desktop()}) {
        FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(folder));
        QTRY_VERIFY_WITH_TIMEOUT(row->toolTip().contains(folder.toHtmlEscaped()), patience);
        QVERIFY(texts(*page).contains(granted));
    }
}

void GeneralSettingsFolderAccessTest::theKeyboardStaysWithTheFoldersButton()
{
    const auto page = m_settings->shownWithAnswer();
    buttonNamed(*page, QStringLiteral("Change…"))->setFocus(Qt::TabFocusReason);
    QFile::remove(m_settings->home().path() + QStringLiteral("/.config/Deskbroom/Deskbroom.json"));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    page->activateWindow();
    QTRY_VERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    QCOMPARE(page->focusWidget(), buttonNamed(*page, QStringLiteral("Grant Access")));
    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(m_settings->home().desktop()));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
    QCOMPARE(page->focusWidget(), buttonNamed(*page, QStringLiteral("Change…")));
}

void GeneralSettingsFolderAccessTest::theKeyboardStaysWithTheFoldersButtonBehindAnotherWindow()
{
    const auto page = m_settings->shownWithAnswer();
    buttonNamed(*page, QStringLiteral("Change…"))->setFocus(Qt::TabFocusReason);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QFile::remove(m_settings->home().path() + QStringLiteral("/.config/Deskbroom/Deskbroom.json"));
    m_settings->delegate().updateTimeframe(10);
    QTRY_VERIFY(hasButton(*page, QStringLiteral("Grant Access")));
    QCOMPARE(page->focusWidget(), buttonNamed(*page, QStringLiteral("Grant Access")));
    FileAccessManager::shared().handleSelectedFolder(QUrl::fromLocalFile(m_settings->home().desktop()));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*page).contains(granted), patience);
    QVERIFY(other.isActiveWindow());
    QCOMPARE(page->focusWidget(), buttonNamed(*page, QStringLiteral("Change…")));
    page->activateWindow();
    QTRY_VERIFY(buttonNamed(*page, QStringLiteral("Change…"))->hasFocus());
}

QTEST_MAIN(GeneralSettingsFolderAccessTest)
#include "GeneralSettingsFolderAccessTest.moc"
