#pragma once

#include "PopoverPlacement.h"

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <memory>

/// The window of one showing of a popover: places itself, draws itself with the given appearance and keeps
/// the keyboard away until it is asked for. Deletes itself when it has disappeared.
class PopoverWindow final : public QWidget {
    Q_OBJECT

public:
    /// `appearance` outlives the window.
    PopoverWindow(
        const PopoverAppearance &appearance, std::unique_ptr<QWidget> contentView,
        const PopoverAnchor &anchor);

    void appear();
    /// From now on it takes neither keys nor clicks.
    void disappear();
    void takeKeyboard();

    /// False while a click that was meant for what lay here before would be lost on the contents.
    [[nodiscard]] bool takesClicks() const;

    [[nodiscard]] QPainterPath outline() const;

Q_SIGNALS:
    /// Escape was pressed.
    void cancelled();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void place();
    void setTakesClicks(bool takesClicks);
    void shapeWindow();
    void fade(qreal opacity, int milliseconds);

    const PopoverAppearance &m_appearance;
    QWidget *m_contentView;
    PopoverAnchor m_anchor;
    PopoverPlacement m_placement;
    /// Whether the screen shows what is half transparent: without a compositor there is no shadow, and the
    /// corners are cut out of the window's shape.
    bool m_isTranslucent;
    QVariantAnimation m_fading;
    QTimer m_mouseGrace;
};
