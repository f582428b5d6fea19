#include "../GalleryHome.h"
#include "AccessBanner.h"
#include "GalleryGrid.h"
#include "HeldQueue.h"
#include "NotificationManager.h"
#include "PopUpMenu.h"
#include "RecordingFileManager.h"
#include "RecordingPrograms.h"
#include "ScreenshotGalleryView.h"
#include "UserNotificationRequest.h"

#include <QApplication>
#include <QFile>
#include <QTest>

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <optional>

/// What a gallery leaves to other programs: a screenshot's context menu, and the way to the desktop's
/// settings.
class GalleryOtherProgramsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void openIsTheDesktopsProgramForImages();
    void showInFileManagerSelectsTheFile();
    void aPopoverGivesWayToTheOtherProgram_data();
    void aPopoverGivesWayToTheOtherProgram();
    void duringADeletionNothingElseGoesToTheTrash();
    void theBannerOpensTheSettingsThatTheNotificationOpens();

private:
    [[nodiscard]] std::unique_ptr<ScreenshotGalleryView> shown(std::function<void()> onClosePopover = {});

    /// Opens the menu of the first screenshot.
    static void openMenu(const ScreenshotGalleryView &view);
    [[nodiscard]] static QAction *menuItem(const QString &text);
    /// None if there is no such item.
    [[nodiscard]] static std::optional<bool> isEnabled(const QString &text);
    static void choose(const QString &text);

    std::unique_ptr<GalleryHome> m_home;
    std::unique_ptr<RecordingPrograms> m_programs;
};

void GalleryOtherProgramsTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GalleryOtherProgramsTest::init()
{
    m_programs = std::make_unique<RecordingPrograms>(m_home->home().path());
    m_programs->install(QStringLiteral("xdg-open"));
    m_home->makeScreenshots(2);
}

void GalleryOtherProgramsTest::cleanup()
{
    m_home->clear();
    m_programs.reset();
}

std::unique_ptr<ScreenshotGalleryView> GalleryOtherProgramsTest::shown(std::function<void()> onClosePopover)
{
    const auto configuration =
        onClosePopover ? GalleryConfiguration::popover() : GalleryConfiguration::window();
    auto view = std::make_unique<ScreenshotGalleryView>(configuration, nullptr, std::move(onClosePopover));
    view->resize(view->sizeHint());
    view->show();
    [&view] { QTRY_VERIFY_WITH_TIMEOUT(!view->viewModel().isLoading(), patience); }();
    QCoreApplication::sendPostedEvents();
    return view;
}

void GalleryOtherProgramsTest::openMenu(const ScreenshotGalleryView &view)
{
    view.grid().setCurrentIndex(0);
    QTest::keyClick(&view.grid(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY(qobject_cast<PopUpMenu *>(QApplication::activePopupWidget()) != nullptr);
}

QAction *GalleryOtherProgramsTest::menuItem(const QString &text)
{
    const QList<QAction *> items = QApplication::activePopupWidget()->actions();
    const auto found = std::ranges::find(items, text, &QAction::text);
    return found == items.end() ? nullptr : *found;
}

std::optional<bool> GalleryOtherProgramsTest::isEnabled(const QString &text)
{
    const QAction *const item = menuItem(text);
    return item == nullptr ? std::nullopt : std::optional(item->isEnabled());
}

void GalleryOtherProgramsTest::choose(const QString &text)
{
    QAction *const item = menuItem(text);
    QVERIFY(item != nullptr);
    auto *const menu = qobject_cast<PopUpMenu *>(QApplication::activePopupWidget());
    menu->setActiveAction(item);
    QTest::keyClick(menu, Qt::Key_Return);
}

void GalleryOtherProgramsTest::openIsTheDesktopsProgramForImages()
{
    const auto view = shown();
    openMenu(*view);
    choose(QStringLiteral("Open"));
    const QByteArray url = view->viewModel().displayedScreenshots().constFirst().url().toEncoded();
    QTRY_COMPARE_WITH_TIMEOUT(m_programs->started(), QByteArray("xdg-open|" + url + "|\n"), patience);
}

void GalleryOtherProgramsTest::showInFileManagerSelectsTheFile()
{
    const RecordingFileManager fileManager(RecordingFileManager::Manner::Shows);
    const auto view = shown();
    openMenu(*view);
    choose(QStringLiteral("Show in File Manager"));
    const QString url =
        QString::fromUtf8(view->viewModel().displayedScreenshots().constFirst().url().toEncoded());
    QTRY_COMPARE_WITH_TIMEOUT(fileManager.shown(), QStringList({QStringLiteral("ShowItems"), url}), patience);
    QTRY_VERIFY(fileManager.hasAnswered());
    QCOMPARE(m_programs->started(), QByteArray());
}

void GalleryOtherProgramsTest::aPopoverGivesWayToTheOtherProgram_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("givesWay");
    QTest::newRow("to the image's") << QStringLiteral("Open") << true;
    QTest::newRow("to the file manager") << QStringLiteral("Show in File Manager") << true;
    QTest::newRow("to nobody") << QStringLiteral("Copy") << false;
}

void GalleryOtherProgramsTest::aPopoverGivesWayToTheOtherProgram()
{
    QFETCH(const QString, chosen);
    const CapturedOutput output;
    const RecordingFileManager fileManager(RecordingFileManager::Manner::Shows);
    int closings = 0;
    const auto view = shown([&closings] { ++closings; });
    openMenu(*view);
    choose(chosen);
    const auto isSomebodyAsked = [&] {
        return !m_programs->started().isEmpty() || fileManager.hasAnswered();
    };
    QFETCH(const bool, givesWay);
    QTRY_COMPARE_WITH_TIMEOUT(isSomebodyAsked(), givesWay, patience);
    QCOMPARE(closings, givesWay ? 1 : 0);
}

void GalleryOtherProgramsTest::duringADeletionNothingElseGoesToTheTrash()
{
    const auto view = shown();
    openMenu(*view);
    QCOMPARE(isEnabled(QStringLiteral("Move to Trash")), std::optional(true));
    QApplication::activePopupWidget()->close();
    view->viewModel().setSelectedIDs({view->viewModel().displayedScreenshots().at(1).id});
    HeldQueue deletions(BackgroundQueue::Default);
    view->viewModel().deleteSelected();
    openMenu(*view);
    QCOMPARE(isEnabled(QStringLiteral("Move to Trash")), std::optional(false));
    QCOMPARE(isEnabled(QStringLiteral("Copy")), std::optional(true));
    QApplication::activePopupWidget()->close();
    deletions.release();
    QTRY_VERIFY_WITH_TIMEOUT(!view->viewModel().isDeleting(), patience);
    openMenu(*view);
    QCOMPARE(isEnabled(QStringLiteral("Move to Trash")), std::optional(true));
    QApplication::activePopupWidget()->close();
}

void GalleryOtherProgramsTest::theBannerOpensTheSettingsThatTheNotificationOpens()
{
    if (geteuid() == 0) {
        QSKIP("root may read every folder");
    }
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    m_programs->install(QStringLiteral("systemsettings"));
    NotificationManager::shared().didReceive(
        {.identifier = QStringLiteral("desktop-access"), .content = {}}, [] {});
    QTRY_VERIFY_WITH_TIMEOUT(!m_programs->started().isEmpty(), patience);
    const QByteArray startedByNotification = m_programs->started();
    files::remove(m_programs->log());

    const CapturedOutput output;
    QVERIFY(QFile::setPermissions(m_home->home().desktop(), {}));
    const auto view = shown();
    auto *const banner = view->findChild<AccessBanner *>();
    QVERIFY(banner != nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(banner->isVisible(), patience);
    QTest::mouseClick(banner, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(m_programs->started(), startedByNotification, patience);
    // Not those of any settings: this desktop has a page for who may read what.
    QCOMPARE(startedByNotification, QByteArray("systemsettings|kcm_recentFiles|\n"));
    qunsetenv("XDG_CURRENT_DESKTOP");
}

QTEST_MAIN(GalleryOtherProgramsTest)
#include "GalleryOtherProgramsTest.moc"
