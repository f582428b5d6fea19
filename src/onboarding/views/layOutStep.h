#pragma once

class OnboardingFooter;
class OnboardingStepTexts;
class QWidget;

/// Puts a first-run page together: icon and texts in the middle of what is free, the buttons at the foot. The
/// page takes them over. For assistive programs it is a group with the headline's name, which they say when
/// the keyboard comes into it; given the keyboard, it hands it to its first button.
void layOutStep(QWidget &page, QWidget *icon, OnboardingStepTexts *texts, OnboardingFooter *footer);
