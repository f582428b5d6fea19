#include "SettingsWindowDelegate.h"

#include <QCloseEvent>

#include <utility>

SettingsWindowDelegate::SettingsWindowDelegate(std::function<void()> onWindowWillClose)
    : m_onWindowWillClose(std::move(onWindowWillClose))
{
}

bool SettingsWindowDelegate::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Close && event->isAccepted()) {
        windowWillClose();
    }
    return false;
}

void SettingsWindowDelegate::windowWillClose()
{
    // Copied: the closure clears the field that holds this delegate.
    const auto closure = m_onWindowWillClose;
    closure();
}
