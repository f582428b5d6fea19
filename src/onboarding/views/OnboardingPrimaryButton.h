#pragma once

#include "OnboardingButton.h"

/// The large amber button at the foot of a first-run page. It is as wide as it is made. While it is pressed,
/// the ground shines through its face.
///
/// A disabled one says that what it asked for is done: it has a check mark and a tint instead of the face. A
/// text that doesn't fit is elided and then is the tooltip.
class OnboardingPrimaryButton final : public OnboardingButton {
    Q_OBJECT

public:
    explicit OnboardingPrimaryButton(const QString &text, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] QColor faceColor() const;
    void paintLabel(QPainter &painter) const;
    void paintDoneLabel(QPainter &painter) const;
};
