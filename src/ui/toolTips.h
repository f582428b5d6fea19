#pragma once

#include <QString>

/// Gives tooltips the theme's colours and a small text, from now on and whenever the desktop changes its
/// colours: the toolkit's own are yellow where no desktop has given it others. Called once. Main thread.
void dressToolTips();

/// A tooltip of any text, as rich text in which nothing of it is markup: broken, anywhere in a long word,
/// into lines of at most 360 points. A line separator begins a line. Main thread.
[[nodiscard]] QString plainTextToolTip(const QString &text);
