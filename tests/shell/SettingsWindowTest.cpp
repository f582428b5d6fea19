#include "AppDelegate.h"
#include "FileAccessManager.h"
#include "SettingsSidebarView.h"
#include "SettingsView.h"
#include "SidebarRow.h"
#include "TemporaryHome.h"
#include "files.h"
#include "runInBackground.h"
#include "waitForBackground.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QTest>

#include <algorithm>

namespace {

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::AllEntries).size();
}

bool shows(const QWidget &window, const QString &text)
{
    const auto labels = window.findChildren<QLabel *>();
    return std::ranges::any_of(labels, [&text](const QLabel *label) { return label->text() == text; });
}

} // namespace

/// The settings' window of the launched program.
class SettingsWindowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aNewWindowBeginsWithTheGeneralPage();
    void openingAndClosingItManyTimesLeavesNothing();
    void aFolderThatIsNotTheDesktopIsCalledTheScreenshotFolder();

private:
    [[nodiscard]] SettingsView &view() const
    {
        return *m_delegate->settingsWindow()->findChild<SettingsView *>();
    }

    /// Until what was closed is gone.
    void close() const;

    const TemporaryHome m_home;
    std::unique_ptr<AppDelegate> m_delegate;
};

void SettingsWindowTest::initTestCase()
{
    for (const QString &folder : {m_home.desktop(), m_home.pictures(), m_home.downloads()}) {
        files::makeFolder(folder);
    }
}

void SettingsWindowTest::init()
{
    m_delegate =
        std::make_unique<AppDelegate>(WindowViews{.settings = [](SettingsApplicationDelegate &delegate) {
            return std::make_unique<SettingsView>(delegate);
        }});
    m_delegate->applicationDidFinishLaunching();
    m_delegate->showSettingsWindow();
}

void SettingsWindowTest::cleanup()
{
    m_delegate.reset();
    waitForBackground();
}

void SettingsWindowTest::close() const
{
    const QPointer<QWidget> window = m_delegate->settingsWindow();
    window->close();
    QCOMPARE(m_delegate->settingsWindow(), nullptr);
    background::pool(BackgroundQueue::Listing).waitForDone();
    QTRY_VERIFY(!window);
}

void SettingsWindowTest::aNewWindowBeginsWithTheGeneralPage()
{
    view().setSelection(SettingsSection::About);
    close();
    m_delegate->showSettingsWindow();
    QCOMPARE(view().selection(), SettingsSection::General);
    // The other pages are made when they are shown.
    QVERIFY(!shows(view(), QStringLiteral("Confirmation before deleting")));
}

void SettingsWindowTest::openingAndClosingItManyTimesLeavesNothing()
{
    constexpr int times = 200;
    const auto openAndClose = [this] {
        m_delegate->showSettingsWindow();
        for (const SettingsSection section : settingsSections::all) {
            view().setSelection(section);
        }
        close();
    };
    // What the toolkit and the program make once and keep.
    openAndClose();
    const auto widgets = QApplication::allWidgets().size();
    const auto descriptors = openDescriptors();
    const auto children = m_delegate->findChildren<QObject *>().size();
    for (int time = 0; time < times; ++time) {
        openAndClose();
    }
    QCOMPARE(QApplication::allWidgets().size(), widgets);
    // The watcher has some for a moment at each of its ticks.
    QVERIFY(openDescriptors() < descriptors + times / 10);
    QCOMPARE(m_delegate->findChildren<QObject *>().size(), children);
}

void SettingsWindowTest::aFolderThatIsNotTheDesktopIsCalledTheScreenshotFolder()
{
    QVERIFY(shows(view(), QStringLiteral("Desktop folder access")));
    m_delegate->fileAccessManager()->handleSelectedFolder(QUrl::fromLocalFile(m_home.pictures()));
    QTRY_VERIFY(shows(view(), QStringLiteral("Screenshot folder access")));
    QVERIFY(!shows(view(), QStringLiteral("Desktop folder access")));
    QVERIFY(shows(
        view(),
        QStringLiteral(
            "Deskbroom needs access to your screenshot folder to detect new screenshots automatically.")));
}

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
