#include "GeneralSettingsPage.h"

#include "GeneralSettingsFixture.h"
#include "PopUpButton.h"
#include "PopUpMenu.h"
#include "Switch.h"
#include "menus.h"
#include "savePicture.h"

#include <QAccessible>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>

namespace {

/// The picker's menu, opened by the keyboard.
PopUpMenu &openMenu(PopUpButton &picker)
{
    QTest::keyClick(&picker, Qt::Key_Space);
    return *picker.findChild<PopUpMenu *>();
}

} // namespace

/// The page as a whole, and its picker of the delay.
class GeneralSettingsPageTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void showsItsCardsInTheirOrder();
    void offersTheDelaysInWords();
    void aDelayThatIsNoChoiceIsShownWithoutACheckMark_data();
    void aDelayThatIsNoChoiceIsShownWithoutACheckMark();
    void aDelayThatIsPickedIsStored();
    void aDelayThatCantBeStoredHoldsForThisRun();
    void aDelayThatChangesElsewhereMovesThePicker();
    void aPageBeforeTheLaunchStopsTheProgram_data();
    void aPageBeforeTheLaunchStopsTheProgram();
    void controlsAreNamedForAssistivePrograms();
    void controlsAreReachedByTabInTheirOrder();

private:
    std::unique_ptr<GeneralSettingsFixture> m_settings;
};

void GeneralSettingsPageTest::initTestCase()
{
    m_settings = std::make_unique<GeneralSettingsFixture>();
}

void GeneralSettingsPageTest::init()
{
    m_settings->launch();
}

void GeneralSettingsPageTest::cleanup()
{
    m_settings->end();
}

void GeneralSettingsPageTest::showsItsCardsInTheirOrder()
{
    const auto page = m_settings->shownWithAnswer();
    const QStringList wanted{
        QStringLiteral("FOLDER ACCESS"),
        QStringLiteral("Desktop folder access"),
        QStringLiteral(
            "Deskbroom needs access to your Desktop folder to detect new screenshots automatically."),
        granted,
        QStringLiteral("SCREENSHOT MANAGEMENT"),
        delayTitle,
        QStringLiteral("How long a detected screenshot waits before it's moved to the Trash."),
        QStringLiteral("DETECTION & CLIPBOARD"),
        previewTitle,
        QStringLiteral("macOS delays saving a screenshot until its floating thumbnail is dismissed or "
                       "auto-saves. Disabling it (system-wide) lets Deskbroom detect screenshots the "
                       "instant they're taken."),
        clipboardTitle,
        QStringLiteral("Automatically copy new screenshots to the clipboard for easy pasting."),
    };
    QStringList shownTexts = texts(*page);
    const auto top = [&page](const QString &text) {
        for (const QLabel *const label : page->findChildren<QLabel *>()) {
            if (label->text() == text) {
                return label->mapTo(page.get(), QPoint()).y();
            }
        }
        return -1;
    };
    QCOMPARE(
        QSet<QString>(shownTexts.begin(), shownTexts.end()), QSet<QString>(wanted.begin(), wanted.end()));
    for (qsizetype index = 1; index < wanted.size(); ++index) {
        if (wanted[index - 1] != granted && wanted[index] != granted) {
            QVERIFY2(top(wanted[index - 1]) < top(wanted[index]), qPrintable(wanted[index]));
        }
    }
    savePicture(*page, QStringLiteral("settings-general-page"));
}

void GeneralSettingsPageTest::offersTheDelaysInWords()
{
    const auto page = m_settings->shown();
    const PopUpMenu &menu = openMenu(*control<PopUpButton>(*page, delayTitle));
    const QStringList choices = itemsOf(menu);
    QCOMPARE(
        choices, (QStringList{
                     QStringLiteral("1 minute"), QStringLiteral("5 minutes"), QStringLiteral("10 minutes"),
                     QStringLiteral("30 minutes"), QStringLiteral("60 minutes")}));
    QCOMPARE(checkedIn(menu), QStringList(QStringLiteral("5 minutes")));
}

void GeneralSettingsPageTest::aDelayThatIsNoChoiceIsShownWithoutACheckMark_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QString>("text");
    QTest::newRow("15") << qint64(15) << QStringLiteral("15 minutes");
    QTest::newRow("0") << qint64(0) << QStringLiteral("0 minute");
    QTest::newRow("-3") << qint64(-3) << QStringLiteral("-3 minute");
    QTest::newRow("enormous") << std::numeric_limits<qint64>::max()
                              << QStringLiteral("9223372036854775807 minutes");
}

void GeneralSettingsPageTest::aDelayThatIsNoChoiceIsShownWithoutACheckMark()
{
    QFETCH(const qint64, minutes);
    m_settings->delegate().updateTimeframe(minutes);
    const auto page = m_settings->shown();
    auto *const picker = control<PopUpButton>(*page, delayTitle);
    QTEST(picker->text(), "text");
    PopUpMenu &menu = openMenu(*picker);
    QCOMPARE(checkedIn(menu), QStringList());
    // It stays until the user picks one.
    menu.close();
    QCOMPARE(UserDefaults::standard().integer(preferences::timeframeInMinutes), minutes);
    QCOMPARE(m_settings->delegate().timeframeInMinutes(), minutes);
}

void GeneralSettingsPageTest::aDelayThatIsPickedIsStored()
{
    const auto page = m_settings->shown();
    auto *const picker = control<PopUpButton>(*page, delayTitle);
    openMenu(*picker).actions().at(3)->trigger();
    QCOMPARE(m_settings->delegate().timeframeInMinutes(), 30);
    QCOMPARE(UserDefaults::standard().integer(preferences::timeframeInMinutes), 30);
    QTRY_COMPARE(picker->text(), QStringLiteral("30 minutes"));
}

void GeneralSettingsPageTest::aDelayThatCantBeStoredHoldsForThisRun()
{
    const auto page = m_settings->shown();
    m_settings->delegate().updateTimeframe(5);
    const QString folder = m_settings->home().path() + QStringLiteral("/.config/Deskbroom");
    const QString file = folder + QStringLiteral("/Deskbroom.json");
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner));
    QVERIFY(QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    const CapturedOutput output;
    auto *const picker = control<PopUpButton>(*page, delayTitle);
    openMenu(*picker).actions().at(4)->trigger();
    QTRY_COMPARE(picker->text(), QStringLiteral("60 minutes"));
    QCOMPARE(output.lines().filter(QStringLiteral("Failed to write preferences to ") + file).size(), 1);
    QVERIFY(QFile::setPermissions(
        folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
}

void GeneralSettingsPageTest::aDelayThatChangesElsewhereMovesThePicker()
{
    const auto page = m_settings->shown();
    m_settings->delegate().updateTimeframe(1);
    QTRY_COMPARE(control<PopUpButton>(*page, delayTitle)->text(), QStringLiteral("1 minute"));
}

void GeneralSettingsPageTest::aPageBeforeTheLaunchStopsTheProgram_data()
{
    QTest::addColumn<TestApplicationDelegate::Manager>("missing");
    QTest::newRow("no folder access") << TestApplicationDelegate::Manager::FileAccess;
    QTest::newRow("no screenshot manager") << TestApplicationDelegate::Manager::Screenshots;
}

void GeneralSettingsPageTest::aPageBeforeTheLaunchStopsTheProgram()
{
    QFETCH(const TestApplicationDelegate::Manager, missing);
    m_settings->delegate().remove(missing);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDERR_FILENO);
        const GeneralSettingsPage page(m_settings->delegate());
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

void GeneralSettingsPageTest::controlsAreNamedForAssistivePrograms()
{
    const auto page = m_settings->shown();
    const auto interfaceOf = [](QWidget *widget) { return QAccessible::queryAccessibleInterface(widget); };
    auto *const preview = control<Switch>(*page, previewTitle);
    QCOMPARE(interfaceOf(preview)->role(), QAccessible::CheckBox);
    QVERIFY(interfaceOf(preview)->text(QAccessible::Description).contains(QStringLiteral("system-wide")));
    auto *const clipboard = control<Switch>(*page, clipboardTitle);
    QVERIFY(!interfaceOf(clipboard)->state().checked);
    clipboard->setOn(true);
    QVERIFY(interfaceOf(clipboard)->state().checked);
    auto *const picker = control<PopUpButton>(*page, delayTitle);
    QCOMPARE(interfaceOf(picker)->text(QAccessible::Description), picker->text());
}

void GeneralSettingsPageTest::controlsAreReachedByTabInTheirOrder()
{
    const auto page = m_settings->shownWithAnswer();
    page->setFocus();
    QStringList names;
    for (int press = 0; press < 4; ++press) {
        QTest::keyClick(page->focusWidget() != nullptr ? page->focusWidget() : page.get(), Qt::Key_Tab);
        const QWidget *const focused = page->focusWidget();
        const auto *const button = qobject_cast<const PushButton *>(focused);
        names.append(button != nullptr ? button->text() : focused->accessibleName());
    }
    QCOMPARE(names, (QStringList{QStringLiteral("Change…"), delayTitle, previewTitle, clipboardTitle}));
}

QTEST_MAIN(GeneralSettingsPageTest)
#include "GeneralSettingsPageTest.moc"
