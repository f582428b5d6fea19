#include "OnboardingButton.h"

#include "Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>

OnboardingButton::OnboardingButton(const QString &text, QWidget *parent) : QPushButton(text, parent)
{
    setAutoDefault(true); // Return presses it
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    repaintWithTheme(*this);
}

void OnboardingButton::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || !event->isAutoRepeat()) {
        QPushButton::keyPressEvent(event);
    }
}

void OnboardingButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
}
