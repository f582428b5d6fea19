#include "OnboardingStepTexts.h"

#include "TextLabel.h"

#include <QVBoxLayout>

namespace {

/// In points.
constexpr int gap = 10;

} // namespace

OnboardingStepTexts::OnboardingStepTexts(
    TextStyle headlineStyle, const QString &headline, const QString &description, int width)
    : m_headline(headline),
      m_column(new QVBoxLayout(this))
{
    setFixedWidth(width);
    m_column->setContentsMargins({});
    m_column->setSpacing(gap);
    add(*new TextLabel(headlineStyle, headline, this));
    m_description = makeParagraph(description);
    add(*m_description);
}

void OnboardingStepTexts::setDescription(const QString &text)
{
    m_description->setText(text);
    m_description->setFixedHeight(m_description->heightForWidth(width()));
}

void OnboardingStepTexts::addParagraph(const QString &text)
{
    add(*makeParagraph(text));
}

TextLabel *OnboardingStepTexts::makeParagraph(const QString &text)
{
    auto *const label = new TextLabel(TextStyle::StepDescription, text, this);
    label->setColor(TextColor::Secondary);
    label->setSpread(TextLabel::Spread::Filled);
    // A command stays whole.
    label->setBreaking(TextLabel::Breaking::AtBlanks);
    return label;
}

void OnboardingStepTexts::add(TextLabel &label)
{
    label.setFixedHeight(label.heightForWidth(width()));
    m_column->addWidget(&label);
}
