#include "MenuBarManager.h"

#include "AppDelegate.h"
#include "CapturedOutput.h"
#include "EventMonitor.h"
#include "PopUpMenu.h"
#include "Popover.h"
#include "TemporaryHome.h"
#include "files.h"
#include "outgoingDrag.h"
#include "waitForBackground.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDrag>
#include <QKeyEvent>
#include <QPushButton>
#include <QTest>

namespace {

/// As many as the session can have: under X11 there is one for other programs' clicks too.
size_t allMonitors()
{
    return EventMonitor::addGlobalMonitor([](QPoint) {}) ? 2 : 1;
}

/// In place of the recent screenshots.
class View final : public QWidget {
public:
    View(std::function<void()> onExpandToFull, std::function<void()> onClosePopover)
        : expandToFull(std::move(onExpandToFull)),
          closePopover(std::move(onClosePopover))
    {
        setFocusPolicy(Qt::StrongFocus);
    }

    [[nodiscard]] QSize sizeHint() const override { return {300, 200}; }

    void keyPressEvent(QKeyEvent *event) override
    {
        event->setAccepted(takesEscape && event->key() == Qt::Key_Escape);
    }

    const std::function<void()> expandToFull;
    const std::function<void()> closePopover;
    bool takesEscape = false;
};

} // namespace

/// The gallery popover of the launched program, and how it gives way to the rest.
class MenuBarManagerTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] MenuBarManager &manager() const { return *m_delegate->menuBarManager(); }

    [[nodiscard]] bool isGalleryShown() const
    {
        return manager().galleryPopover() != nullptr && manager().galleryPopover()->isShown();
    }

    [[nodiscard]] bool isQuestionShown() const
    {
        return manager().confirmationPopover() != nullptr && manager().confirmationPopover()->isShown();
    }

    [[nodiscard]] size_t monitors() const { return manager().outsideClickMonitors().count(); }

    QString makeScreenshot() const
    {
        QString path = m_home.desktop() + QStringLiteral("/Screenshot 1.png");
        files::write(path);
        return path;
    }

    const TemporaryHome m_home;
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<AppDelegate> m_delegate;
    /// The last one that was made, until it goes.
    QPointer<View> m_view;
    int m_made = 0;

private Q_SLOTS:

    void init()
    {
        for (const QString &folder : {m_home.desktop(), m_home.pictures(), m_home.downloads()}) {
            files::makeFolder(folder);
        }
        m_output = std::make_unique<CapturedOutput>();
        m_made = 0;
        m_delegate = std::make_unique<AppDelegate>(WindowViews{
            .gallery = [] { return std::make_unique<QWidget>(); },
            .recentScreenshots =
                [this](std::function<void()> onExpandToFull, std::function<void()> onClosePopover) {
                    auto view = std::make_unique<View>(std::move(onExpandToFull), std::move(onClosePopover));
                    m_view = view.get();
                    ++m_made;
                    return view;
                },
        });
        m_delegate->applicationDidFinishLaunching();
    }

    void cleanup()
    {
        m_delegate.reset();
        waitForBackground();
        m_output.reset();
        QDir(m_home.desktop()).removeRecursively();
    }

    void theFirstMenuItemOpensTheGallery()
    {
        QCOMPARE(manager().galleryPopover(), nullptr);
        QCOMPARE(monitors(), size_t(0));
        QAction *const item = manager().mainMenu().actions().constFirst();
        QVERIFY(item->isEnabled());
        item->trigger();
        QVERIFY(isGalleryShown());
        QVERIFY(m_view->isVisible());
        QCOMPARE(m_view->window(), manager().galleryPopover()->window());
        QTRY_VERIFY2(m_view->isActiveWindow(), "it takes the keyboard");
    }

    void openingTwiceLeavesEachMonitorOnce()
    {
        manager().openGallery();
        const Popover *const popover = manager().galleryPopover();
        const QPointer<View> first = m_view;
        QCOMPARE(monitors(), allMonitors());
        manager().openGallery();
        QCOMPARE(monitors(), allMonitors());
        QVERIFY(isGalleryShown());
        QCOMPARE(manager().galleryPopover(), popover);
        QCOMPARE(m_made, 2);
        QVERIFY(m_view != first);
        QTRY_VERIFY2(!first, "the earlier view goes");
    }

    void closingRemovesViewAndMonitors()
    {
        manager().openGallery();
        manager().closePopovers();
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
        QTRY_VERIFY(!m_view);
        manager().closePopovers();
        QVERIFY(!isGalleryShown());
    }

    void aClickInsideLeavesItOpen_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("right") << Qt::RightButton;
    }

    void aClickInsideLeavesItOpen()
    {
        QFETCH(const Qt::MouseButton, button);
        manager().openGallery();
        QTest::mouseClick(m_view, button);
        QVERIFY(isGalleryShown());
        QCOMPARE(monitors(), allMonitors());
    }

    void menusAndSheetsOfItsOwnAreInside()
    {
        manager().openGallery();
        QMenu menu(m_view);
        menu.addAction(QStringLiteral("Copy"));
        menu.popup(m_view->mapToGlobal(QPoint(10, 10)));
        QTest::mouseClick(&menu, Qt::LeftButton);
        QVERIFY(isGalleryShown());
        QDialog sheet(m_view);
        sheet.show();
        QTest::mouseClick(&sheet, Qt::LeftButton);
        QVERIFY(isGalleryShown());
        QCOMPARE(monitors(), allMonitors());
    }

    void aClickInAnotherWindowOfOursClosesIt_data() { aClickInsideLeavesItOpen_data(); }

    void aClickInAnotherWindowOfOursClosesIt()
    {
        QFETCH(const Qt::MouseButton, button);
        m_delegate->showGalleryWindow();
        manager().openGallery();
        QPushButton other(m_delegate->galleryWindow());
        other.setContextMenuPolicy(Qt::NoContextMenu);
        other.show();
        int pressed = 0;
        connect(&other, &QPushButton::pressed, this, [&pressed] { ++pressed; });
        QTest::mouseClick(&other, button);
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
        QCOMPARE(pressed, button == Qt::LeftButton ? 1 : 0);
        QVERIFY(m_delegate->galleryWindow() != nullptr);
    }

    void otherButtonsAreNoClicks()
    {
        manager().openGallery();
        QWidget other;
        other.show();
        QTest::mouseClick(&other, Qt::MiddleButton);
        QVERIFY(isGalleryShown());
    }

    void theStatusItemClosesItAndOpensTheMenu()
    {
        manager().openGallery();
        manager().statusItemClicked();
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
        QCOMPARE(QApplication::activePopupWidget(), &manager().mainMenu());
        manager().mainMenu().close();
    }

    void escapeClosesItUnlessTheViewTakesIt()
    {
        manager().openGallery();
        m_view->takesEscape = true;
        QTest::keyClick(m_view, Qt::Key_Escape);
        QVERIFY(isGalleryShown());
        m_view->takesEscape = false;
        QTest::keyClick(m_view, Qt::Key_Escape);
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
    }

    void theQuestionTakesItsPlace()
    {
        manager().openGallery();
        m_delegate->watcherDidDetectScreenshot(makeScreenshot());
        QTRY_VERIFY(isQuestionShown());
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
        QTRY_VERIFY(!m_view);
        // The question had no reason to take the keyboard along.
        QVERIFY(
            manager().confirmationPopover()->window()->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    }

    void itTakesTheQuestionsPlace()
    {
        m_delegate->watcherDidDetectScreenshot(makeScreenshot());
        QTRY_VERIFY(isQuestionShown());
        manager().openGallery();
        QVERIFY(!isQuestionShown());
        QVERIFY(isGalleryShown());
        QVERIFY(files::exists(m_home.desktop() + QStringLiteral("/Screenshot 1.png")));
    }

    void theViewClosesIt()
    {
        manager().openGallery();
        m_view->closePopover();
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
    }

    void expandingOpensTheGalleryWindow()
    {
        manager().openGallery();
        m_view->expandToFull();
        m_view->closePopover();
        QVERIFY(!isGalleryShown());
        QVERIFY(m_delegate->galleryWindow() != nullptr);
        QTRY_VERIFY(m_delegate->galleryWindow()->isActiveWindow());
    }

    void expandingAfterTheDelegateHasGoneDoesNothing()
    {
        manager().openGallery();
        const auto expandToFull = m_view->expandToFull;
        m_delegate.reset();
        expandToFull();
        for (const QWidget *const window : QApplication::topLevelWidgets()) {
            QVERIFY(!window->isVisible());
        }
    }

    void whereOtherProgramsClicksAreUnknownItGoesWhenTheProgramIsInactive()
    {
        if (allMonitors() > 1) {
            QSKIP("They are known in this session");
        }
        manager().openGallery();
        QTRY_VERIFY(m_view->isActiveWindow());
        const auto becomeInactive = [] { Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive); };
        const std::unique_ptr<QDrag> drag(outgoingDrag::make());
        becomeInactive();
        QVERIFY2(isGalleryShown(), "a drag from it takes the keyboard along");
        drag->setParent(nullptr);
        becomeInactive();
        QVERIFY(!isGalleryShown());
        QCOMPARE(monitors(), size_t(0));
    }
};

QTEST_MAIN(MenuBarManagerTest)
#include "MenuBarManagerTest.moc"
