#include "brokenLines.h"

#include <QTextLayout>

QStringList brokenLines(const QString &text, const QFont &font, int width, QTextOption::WrapMode wrapMode)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(wrapMode);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(text.sliced(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}
