#include "GalleryItemAccessible.h"

#include "GalleryGrid.h"
#include "ScreenshotGalleryViewModel.h"
#include "fileNameText.h"
#include "screenshotDescription.h"

#include <QWindow>

bool GalleryItemAccessible::isValid() const
{
    return m_grid && m_index < m_grid->count();
}

QWindow *GalleryItemAccessible::window() const
{
    return m_grid ? m_grid->window()->windowHandle() : nullptr;
}

QAccessibleInterface *GalleryItemAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_grid);
}

QString GalleryItemAccessible::text(QAccessible::Text kind) const
{
    if (!isValid()) {
        return {};
    }
    const ScreenshotItem &screenshot = m_grid->screenshotAt(m_index);
    switch (kind) {
    case QAccessible::Name:
        return QStringLiteral("%1, %2")
            .arg(m_index + 1, 2, 10, QLatin1Char('0'))
            .arg(fileNameText::displayed(screenshot.name()));
    case QAccessible::Description:
        return screenshotDescription::details(screenshot);
    default:
        return {};
    }
}

QRect GalleryItemAccessible::rect() const
{
    if (!isValid()) {
        return {};
    }
    const QRect cell = m_grid->cellRect(m_index);
    return {m_grid->mapToGlobal(cell.topLeft()), cell.size()};
}

QAccessible::State GalleryItemAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const ScreenshotGalleryViewModel &model = m_grid->model();
    state.disabled = !m_grid->isEnabled();
    state.focusable = true;
    state.focused = m_grid->hasFocus() && m_grid->currentIndex() == m_index;
    state.selectable = model.isSelectionMode();
    state.multiSelectable = model.isSelectionMode();
    state.selected =
        model.isSelectionMode() && model.selectedIDs().contains(m_grid->screenshotAt(m_index).id);
    // The bridge to assistive programs knows only one of the two.
    state.offscreen = !m_grid->rectInSight().intersects(m_grid->cellRect(m_index));
    state.invisible = state.offscreen;
    return state;
}

void *GalleryItemAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList GalleryItemAccessible::actionNames() const
{
    return {pressAction(), showMenuAction(), setFocusAction()};
}

void GalleryItemAccessible::doAction(const QString &name)
{
    if (!isValid() || !m_grid->isEnabled()) {
        return;
    }
    if (name == pressAction()) {
        m_grid->tap(m_index);
    } else if (name == showMenuAction()) {
        m_grid->showContextMenu(m_index);
    } else if (name == setFocusAction()) {
        m_grid->setFocus();
        m_grid->setCurrentIndex(m_index);
    }
}

QStringList GalleryItemAccessible::keyBindingsForAction(const QString & /*name*/) const
{
    return {};
}
