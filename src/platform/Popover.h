#pragma once

#include "PopoverPlacement.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class EventMonitor;
class PopoverWindow;
class QTimer;
class QWidget;

/// A panel with an arrow that hangs on the status item and shows one view at a time.
///
/// It never takes the keyboard when it appears; a click into it, or `takeKeyboard`, gives it the keyboard.
/// It ignores the mouse for its first 300 ms, so that a click meant for what it covers answers nothing.
/// Made once and shown any number of times; its window lives only while it is on screen. Main thread.
class Popover final : public QObject {
    Q_OBJECT

public:
    enum class Behavior {
        /// A click elsewhere closes it, and so does Escape once it has the keyboard.
        Transient,
        /// Only its owner closes it: see `contains` and `cancelled`.
        ApplicationDefined,
    };

    static constexpr int mouseGraceMilliseconds = 300;

    explicit Popover(
        Behavior behavior, std::unique_ptr<PopoverAppearance> appearance, QObject *parent = nullptr);
    ~Popover() override;
    Q_DISABLE_COPY_MOVE(Popover)

    /// Shows the view at the anchor. What was shown before is replaced. The view's size hint is its size, and
    /// the popover follows when it changes.
    void show(std::unique_ptr<QWidget> contentView, const PopoverAnchor &anchor);

    /// The view is destroyed. Harmless when nothing is shown.
    void close();

    [[nodiscard]] bool isShown() const { return !m_window.isNull(); }

    /// The window while it is shown, else null.
    [[nodiscard]] const QWidget *window() const;

    void takeKeyboard();

    /// Whether a click in this top-level window of ours is one in the popover: its own window, one that was
    /// opened on top of it, or any menu.
    [[nodiscard]] bool contains(const QWidget &window) const;

    /// Body and arrow of the popover that this top-level window is, in the window's coordinates and logical
    /// pixels, as it is at this moment: it changes with the view's size. Empty for any other window.
    [[nodiscard]] static QPainterPath outlineOf(const QWidget &window);

Q_SIGNALS:
    void didClose();

    /// Escape was pressed, and the view left it. A transient popover has closed itself by then.
    void cancelled();

private:
    void watchForClicksElsewhere();
    [[nodiscard]] bool isOnItem(QPoint position) const;
    void clickedElsewhere(QPoint position);
    void clickedInOwnWindow(const QWidget &window, QPoint position);
    void stopWatching();

    Behavior m_behavior;
    std::unique_ptr<PopoverAppearance> m_appearance;
    PopoverAnchor m_anchor;
    /// Null while nothing is shown. It may go by itself: the end of the program closes every window.
    QPointer<PopoverWindow> m_window;
    /// The last window that was closed, while it fades out.
    QPointer<PopoverWindow> m_disappearingWindow;
    std::vector<std::unique_ptr<EventMonitor>> m_monitors;
    /// Runs between a press on the panel and the item's answer to it, if it was the item that was pressed.
    std::unique_ptr<QTimer> m_panelPress;
};
