#pragma once

#include <QLabel>
#include <QStringList>
#include <QWidget>

/// What can be read on the view: its labels that are to be seen, in the order in which they were made.
inline QStringList texts(const QWidget &view)
{
    QStringList list;
    for (const QLabel *const label : view.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->text().isEmpty()) {
            list.append(label->text());
        }
    }
    return list;
}
