#pragma once

#include "OutsideClickMonitors.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class AppDelegate;
class PopUpMenu;
class Popover;
class QAction;
class StatusItem;

/// The program's only permanent presence on screen: the status item with its menus, the popover with the
/// recent screenshots and the one that asks about a new screenshot. At most one of them is shown.
///
/// Made once by the application delegate, which it holds weakly and calls for everything that isn't its own:
/// windows, the timeframe, updates. Once the delegate is gone, those actions do nothing. Main thread.
class MenuBarManager final : public QObject {
    Q_OBJECT

public:
    explicit MenuBarManager(AppDelegate &appDelegate);
    ~MenuBarManager() override;
    Q_DISABLE_COPY_MOVE(MenuBarManager)

    /// Pops up the main menu, or gives an open question the keyboard.
    void statusItemClicked();

    /// Shows the gallery popover with a new view and gives it the keyboard. A click elsewhere closes it, as
    /// does an Escape that the view leaves.
    void openGallery();

    void showTimeframeOptions();

    /// Hands the chosen item's tag, in minutes, to the application delegate.
    void setTimeframe(const QAction &item);

    void openSettings();
    void quitApp();

    /// Asks about the screenshot at `screenshotPath`, in place of what was asked before; the earlier
    /// screenshot is kept. Of many requests in one turn of the loop only the last comes on screen.
    void showConfirmation(
        const QString &screenshotPath, qint64 timeframeInMinutes, std::function<void()> onDeleteNow,
        std::function<void()> onDeleteLater);

    /// Removes the monitors of clicks outside the gallery popover, then closes both popovers.
    void closePopovers();

    [[nodiscard]] StatusItem &statusBarItem() const { return *m_statusBarItem; }

    [[nodiscard]] PopUpMenu &mainMenu() const { return *m_mainMenu; }

    /// The popovers are made on first use: null before it.
    [[nodiscard]] const Popover *galleryPopover() const { return m_galleryPopover.get(); }

    [[nodiscard]] const Popover *confirmationPopover() const { return m_confirmationPopover.get(); }

    [[nodiscard]] const OutsideClickMonitors &outsideClickMonitors() const { return m_outsideClickMonitors; }

private:
    struct ConfirmationRequest {
        QString screenshotPath;
        qint64 timeframeInMinutes = 0;
        std::function<void()> onDeleteNow;
        std::function<void()> onDeleteLater;
    };

    void makeStatusItem();
    void makeMainMenu();
    void presentRequestedConfirmation();
    void popUp(PopUpMenu &menu) const;
    void popUpMainMenu();
    void closeGalleryPopover();

    std::unique_ptr<StatusItem> m_statusBarItem;
    std::unique_ptr<PopUpMenu> m_mainMenu;
    std::unique_ptr<Popover> m_galleryPopover;
    std::unique_ptr<Popover> m_confirmationPopover;
    /// Installed only while the gallery popover is meant to be open.
    OutsideClickMonitors m_outsideClickMonitors;
    QPointer<AppDelegate> m_appDelegate;

    std::optional<ConfirmationRequest> m_requestedConfirmation;
};
