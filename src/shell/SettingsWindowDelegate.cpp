#include "SettingsWindowDelegate.h"

#include <QCloseEvent>

#include <utility>

SettingsWindowDelegate::SettingsWindowDelegate(std::function<void()> onWindowWillClose)
    : m_onWindowWillClose(std::move(onWindowWillClose))
{
}

bool SettingsWindowDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close && event->isAccepted()) {
        // The window and this delegate live until the next turn of the loop; until then it may be closed
        // again.
        watched->removeEventFilter(this);
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
