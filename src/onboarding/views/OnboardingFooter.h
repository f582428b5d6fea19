#pragma once

#include <QWidget>

class OnboardingPrimaryButton;
class OnboardingSkipLink;

/// A first-run page's buttons at its foot: the large one, and for most pages a link under it.
///
/// The widget begins `OnboardingButton::outset` above what one sees of it.
class OnboardingFooter final : public QWidget {
    Q_OBJECT

public:
    explicit OnboardingFooter(const QString &primaryText);
    OnboardingFooter(const QString &primaryText, const QString &secondaryText);

    [[nodiscard]] OnboardingPrimaryButton &primary() const { return *m_primary; }

    /// Null: there is none.
    [[nodiscard]] OnboardingSkipLink *secondary() const { return m_secondary; }

Q_SIGNALS:
    void primaryPressed();
    void secondaryPressed();

private:
    OnboardingPrimaryButton *m_primary;
    OnboardingSkipLink *m_secondary = nullptr;
};
