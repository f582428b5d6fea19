#pragma once

#include "DelayedWork.h"
#include "PopoverAppearance.h"

#include <QMenu>

#include <optional>

/// A menu as the program draws it, on every desktop alike: symbols or a check mark in a column of their own,
/// key equivalents at the right.
///
/// It stays a QMenu, so keyboard, assistive programs and exporting work as ever. An action's symbol is its
/// icon made by `Symbols::icon`. The actions' key equivalents act while the menu is open, and only then. Home
/// and End, or Page Up and Page Down, go to the first row and the last. A disabled action shows its tooltip.
/// While it is closed it has no window. Main thread.
class PopUpMenu final : public QMenu {
    Q_OBJECT

public:
    /// At least `leastWidth` points wide; it grows with its texts.
    explicit PopUpMenu(int leastWidth, QWidget *parent = nullptr);

    /// Pops up 2 points below the panel, left edges aligned with `item` (in global logical pixels); over or
    /// beside it where the panel is at another edge of the screen; always inside the screen.
    /// Without a compositor there is no shadow, and the window is cut along the rounded outline.
    void popUpBeside(const QRect &item);
    void popUpBeside(const QRect &item, PopoverAppearance::Shadow shadow);

    /// The menu as one sees it, in the coordinates of its window: without the shadow's room.
    [[nodiscard]] QRect body() const { return rect().marginsRemoved(contentsMargins()); }

protected:
    void actionEvent(QActionEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QAction *actionForKey(const QKeyEvent &event) const;
    void setShadow(PopoverAppearance::Shadow shadow);
    void updateMask();
    void paintRow(QPainter &painter, const QAction &action) const;

    int m_leastWidth;
    PopoverAppearance::Shadow m_shadow = PopoverAppearance::Shadow::None;
    /// Where the window goes when it is shown; the toolkit's own choice doesn't know of the shadow.
    QPoint m_position;
    /// Pending for a moment after the menu has been closed.
    std::optional<DelayedWork> m_windowRelease;
};
