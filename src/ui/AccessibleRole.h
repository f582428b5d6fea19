#pragma once

#include <QAccessible>

class QWidget;

/// Makes assistive programs see a custom-painted widget as what it is; its name and description are the
/// widget's accessible ones. A dialog is one that keeps the rest of its window out of reach; a button can be
/// pressed, and one that is checked is selected where it is an item of a list. Main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);
