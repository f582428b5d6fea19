#pragma once

#include "OnboardingButton.h"

/// The chevron that leads to the page before, and at a double click to the one before that. It points against
/// the reading direction.
class OnboardingBackButton final : public OnboardingButton {
    Q_OBJECT

public:
    explicit OnboardingBackButton(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;

    void mouseDoubleClickEvent(QMouseEvent *event) override { mousePressEvent(event); }

    void paintEvent(QPaintEvent *event) override;
};
