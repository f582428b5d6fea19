#pragma once

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
struct PopoverAnchor;

/// The program's only permanent presence on screen: the status item with its menus, and the popover that
/// asks about a new screenshot.
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

    void closePopovers();

    [[nodiscard]] StatusItem &statusBarItem() const { return *m_statusBarItem; }

    [[nodiscard]] PopUpMenu &mainMenu() const { return *m_mainMenu; }

    [[nodiscard]] const Popover *confirmationPopover() const { return m_confirmationPopover.get(); }

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
    [[nodiscard]] PopoverAnchor popoverAnchor() const;

    std::unique_ptr<StatusItem> m_statusBarItem;
    std::unique_ptr<PopUpMenu> m_mainMenu;
    std::unique_ptr<Popover> m_confirmationPopover;
    QPointer<AppDelegate> m_appDelegate;

    std::optional<ConfirmationRequest> m_requestedConfirmation;
};
