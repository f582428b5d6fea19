#include "MenuBarManager.h"

#include "AppDelegate.h"
#include "Appearance.h"
#include "PopUpMenu.h"
#include "Popover.h"
#include "PopoverFrame.h"
#include "ScreenshotConfirmationView.h"
#include "StatusItem.h"
#include "Symbols.h"
#include "UpdaterController.h"
#include "popoverAnchor.h"
#include "statusItemImage.h"
#include "timeframeMenu.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QTimer>

#include <utility>

namespace {

constexpr int mainMenuWidth = 248;

QAction *addItem(
    PopUpMenu &menu, const QString &title, const QString &symbolName, const QString &accessibilityDescription)
{
    QAction *const action = menu.addAction(title);
    action->setIcon(Symbols::icon(symbolName));
    action->setIconText(accessibilityDescription);
    return action;
}

QKeySequence commandKey(Qt::Key key)
{
    return {Qt::ControlModifier | key};
}

} // namespace

MenuBarManager::MenuBarManager(AppDelegate &appDelegate) : m_appDelegate(&appDelegate)
{
    makeStatusItem();
    makeMainMenu();
    m_statusBarItem->setMenu(m_mainMenu.get());
}

MenuBarManager::~MenuBarManager()
{
    m_statusBarItem->setMenu(nullptr);
}

void MenuBarManager::makeStatusItem()
{
    m_statusBarItem = std::make_unique<StatusItem>();
    connect(m_statusBarItem.get(), &StatusItem::clicked, this, &MenuBarManager::statusItemClicked);
    connect(m_statusBarItem.get(), &StatusItem::menuRequested, this, &MenuBarManager::popUpMainMenu);
    const auto showImage = [this] { m_statusBarItem->setImage(statusItemImage()); };
    showImage();
    connect(&Appearance::shared(), &Appearance::changed, this, showImage);
}

void MenuBarManager::makeMainMenu()
{
    m_mainMenu = std::make_unique<PopUpMenu>(mainMenuWidth);
    PopUpMenu &menu = *m_mainMenu;

    QAction *const gallery =
        addItem(menu, tr("Gallery"), QStringLiteral("photo.on.rectangle.angled"), tr("Gallery"));
    gallery->setShortcut(commandKey(Qt::Key_G));
    gallery->setEnabled(m_appDelegate->canShowRecentScreenshots());
    connect(gallery, &QAction::triggered, this, &MenuBarManager::openGallery);

    menu.addSeparator();

    QAction *const timeframe = addItem(menu, tr("Deletion Timeframe"), QStringLiteral("timer"), tr("Timer"));
    timeframe->setShortcut(commandKey(Qt::Key_T));
    connect(timeframe, &QAction::triggered, this, &MenuBarManager::showTimeframeOptions);

    QAction *const settings = addItem(menu, tr("Settings"), QStringLiteral("gearshape"), tr("Settings"));
    settings->setShortcut(commandKey(Qt::Key_Comma));
    settings->setEnabled(m_appDelegate->canShowSettingsWindow());
    connect(settings, &QAction::triggered, this, &MenuBarManager::openSettings);

    QAction *const updates = addItem(
        menu, tr("Check for Updates…"), QStringLiteral("arrow.triangle.2.circlepath"),
        tr("Check for Updates"));
    // A software centre may be installed or removed at any time.
    const UpdaterController &updater = *m_appDelegate->updaterController();
    const auto offerUpdates = [updates, &updater] {
        updates->setEnabled(updater.canCheckForUpdates());
        updates->setToolTip(
            updates->isEnabled() ? QString()
                                 : tr("This desktop has no software centre that could look for updates."));
    };
    offerUpdates();
    connect(&menu, &QMenu::aboutToShow, &updater, offerUpdates);
    connect(updates, &QAction::triggered, &updater, &UpdaterController::checkForUpdates);

    menu.addSeparator();

    QAction *const quit = menu.addAction(tr("Quit Deskbroom"));
    quit->setShortcut(commandKey(Qt::Key_Q));
    connect(quit, &QAction::triggered, this, &MenuBarManager::quitApp);
}

void MenuBarManager::statusItemClicked()
{
    if (m_confirmationPopover && m_confirmationPopover->isShown()) {
        m_confirmationPopover->takeKeyboard();
    } else {
        popUpMainMenu();
    }
}

void MenuBarManager::popUpMainMenu()
{
    // Not every click on the item is one that the monitors see, and some come from the keyboard.
    closeGalleryPopover();
    popUp(*m_mainMenu);
}

void MenuBarManager::openGallery()
{
    if (!m_appDelegate || !m_appDelegate->canShowRecentScreenshots()) {
        return;
    }
    closePopovers();
    if (!m_galleryPopover) {
        m_galleryPopover = std::make_unique<Popover>(
            Popover::Behavior::ApplicationDefined, std::make_unique<PopoverFrame>());
        connect(m_galleryPopover.get(), &Popover::cancelled, this, &MenuBarManager::closePopovers);
    }
    const QPointer<AppDelegate> delegate = m_appDelegate;
    const auto expandToFull = [delegate] {
        if (delegate) {
            delegate->showGalleryWindow();
        }
    };
    m_galleryPopover->show(
        m_appDelegate->makeRecentScreenshotsView(expandToFull, [this] { closePopovers(); }),
        popoverAnchor(m_statusBarItem->anchor()));
    m_outsideClickMonitors.install(*m_galleryPopover, [this] { closePopovers(); });
    // The user asked for it.
    m_galleryPopover->takeKeyboard();
}

void MenuBarManager::showTimeframeOptions()
{
    if (!m_appDelegate) {
        return;
    }
    PopUpMenu *const menu = makeTimeframeMenu(m_appDelegate->timeframeInMinutes());
    connect(menu, &QMenu::triggered, this, [this](const QAction *item) { setTimeframe(*item); });
    popUp(*menu);
}

void MenuBarManager::setTimeframe(const QAction &item)
{
    if (m_appDelegate) {
        m_appDelegate->updateTimeframe(item.data().toInt());
    }
}

void MenuBarManager::openSettings()
{
    if (m_appDelegate) {
        m_appDelegate->showSettingsWindow();
    }
}

void MenuBarManager::quitApp()
{
    QCoreApplication::quit();
}

void MenuBarManager::showConfirmation(
    const QString &screenshotPath, qint64 timeframeInMinutes, std::function<void()> onDeleteNow,
    std::function<void()> onDeleteLater)
{
    // A burst of screenshots arrives in one turn of the loop: only the last of them is worth a window.
    const bool isFirst = !m_requestedConfirmation;
    m_requestedConfirmation = ConfirmationRequest{
        .screenshotPath = screenshotPath,
        .timeframeInMinutes = timeframeInMinutes,
        .onDeleteNow = std::move(onDeleteNow),
        .onDeleteLater = std::move(onDeleteLater),
    };
    if (isFirst) {
        QTimer::singleShot(0, this, &MenuBarManager::presentRequestedConfirmation);
    }
}

void MenuBarManager::presentRequestedConfirmation()
{
    if (!m_requestedConfirmation) {
        return;
    }
    if (auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        // Somebody is choosing: the question comes when the menu has gone.
        connect(
            menu, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, &MenuBarManager::presentRequestedConfirmation); },
            Qt::SingleShotConnection);
        return;
    }
    const ConfirmationRequest request = std::move(*m_requestedConfirmation);
    m_requestedConfirmation.reset();
    closeGalleryPopover();
    if (!m_confirmationPopover) {
        m_confirmationPopover =
            std::make_unique<Popover>(Popover::Behavior::Transient, std::make_unique<PopoverFrame>());
    }
    const auto closing = [this](std::function<void()> action) {
        return [this, action = std::move(action)] {
            action();
            closePopovers();
        };
    };
    m_confirmationPopover->show(
        std::make_unique<ScreenshotConfirmationView>(
            request.screenshotPath, request.timeframeInMinutes, closing(request.onDeleteNow),
            closing(request.onDeleteLater), [this] { closePopovers(); }),
        popoverAnchor(m_statusBarItem->anchor()));
}

void MenuBarManager::closeGalleryPopover()
{
    m_outsideClickMonitors.remove();
    if (m_galleryPopover) {
        m_galleryPopover->close();
    }
}

void MenuBarManager::closePopovers()
{
    closeGalleryPopover();
    if (m_confirmationPopover) {
        m_confirmationPopover->close();
    }
}

void MenuBarManager::popUp(PopUpMenu &menu) const
{
    menu.popUpBeside(m_statusBarItem->anchor().rectangle);
}
