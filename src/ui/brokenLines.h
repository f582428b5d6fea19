#pragma once

#include <QStringList>
#include <QTextOption>

class QFont;

/// The lines that a plain text takes in `width` points, without the blanks around them. A line separator
/// (U+2028) ends a line.
[[nodiscard]] QStringList
brokenLines(const QString &text, const QFont &font, int width, QTextOption::WrapMode wrapMode);
