#pragma once

#include <QWidget>

class OnboardingFooter;
class OnboardingStepTexts;

/// The common frame of the first-run pages that ask or tell something: a symbol, a headline, what is said
/// under it, and the buttons.
class OnboardingStepLayout : public QWidget {
    Q_OBJECT

protected:
    OnboardingStepLayout(
        const QString &systemImage, const QString &headline, const QString &description,
        OnboardingFooter *footer, QWidget *parent);

    [[nodiscard]] OnboardingFooter &footer() const { return *m_footer; }

    void setDescription(const QString &text);

    /// Under the description.
    void addParagraph(const QString &text);

private:
    OnboardingStepTexts *m_texts;
    OnboardingFooter *m_footer;
};
