#pragma once

#include "Typography.h"

#include <QWidget>

class QVBoxLayout;
class TextLabel;

/// A first-run page's headline with what is said under it, centred.
class OnboardingStepTexts final : public QWidget {
    Q_OBJECT

public:
    /// `width`, in points, is that of the whole block.
    OnboardingStepTexts(
        TextStyle headlineStyle, const QString &headline, const QString &description, int width);

    [[nodiscard]] const QString &headline() const { return m_headline; }

    void setDescription(const QString &text);

    /// Under what is there already.
    void addParagraph(const QString &text);

private:
    [[nodiscard]] TextLabel *makeParagraph(const QString &text);
    void add(TextLabel &label);

    QString m_headline;
    QVBoxLayout *m_column;
    TextLabel *m_description = nullptr;
};
