#pragma once

#include <QAction>
#include <QMenu>
#include <QStringList>

/// The texts of a menu's items, from top to bottom.
inline QStringList itemsOf(const QMenu &menu)
{
    QStringList texts;
    for (const QAction *const action : menu.actions()) {
        texts.append(action->text());
    }
    return texts;
}

/// Those with a check mark.
inline QStringList checkedIn(const QMenu &menu)
{
    QStringList texts;
    for (const QAction *const action : menu.actions()) {
        if (action->isChecked()) {
            texts.append(action->text());
        }
    }
    return texts;
}
