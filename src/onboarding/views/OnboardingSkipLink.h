#pragma once

#include "OnboardingButton.h"

/// The text under a first-run page's button that leads on without it, as a link without a ground. It can be
/// clicked somewhat around the text.
class OnboardingSkipLink final : public OnboardingButton {
    Q_OBJECT

public:
    /// From the edge of the widget to the line of text, in points.
    static constexpr int lineInset = outset + 1;

    explicit OnboardingSkipLink(const QString &text, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
