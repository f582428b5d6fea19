#include "OnboardingStepLayout.h"

#include "OnboardingFooter.h"
#include "OnboardingStepTexts.h"
#include "SymbolLabel.h"
#include "layOutStep.h"

namespace {

/// In points; the box of a symbol whose font size is 40.
constexpr int symbolSide = 48;
constexpr int textWidth = 380;

} // namespace

OnboardingStepLayout::OnboardingStepLayout(
    const QString &systemImage, const QString &headline, const QString &description, OnboardingFooter *footer,
    QWidget *parent)
    : QWidget(parent),
      m_texts(new OnboardingStepTexts(TextStyle::StepHeadline, headline, description, textWidth)),
      m_footer(footer)
{
    layOutStep(*this, new SymbolLabel(systemImage, symbolSide, TextColor::Amber), m_texts, footer);
}

void OnboardingStepLayout::setDescription(const QString &text)
{
    m_texts->setDescription(text);
}

void OnboardingStepLayout::addParagraph(const QString &text)
{
    m_texts->addParagraph(text);
}
