#pragma once

#include <QPushButton>

/// What the first-run pages' buttons share. Space and Return press them, once for each time that the key goes
/// down, and a double click is one click: the next page's button may be under it by then. A click leaves the
/// keyboard where it is.
///
/// The widget is `outset` larger on each side than the box that the focus ring lies around.
class OnboardingButton : public QPushButton {
    Q_OBJECT

public:
    static constexpr int outset = 4;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    OnboardingButton(const QString &text, QWidget *parent);

    [[nodiscard]] QRect box() const { return rect().adjusted(outset, outset, -outset, -outset); }

    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};
