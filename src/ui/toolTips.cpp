#include "toolTips.h"

#include "Appearance.h"
#include "Theme.h"
#include "Typography.h"
#include "brokenLines.h"

#include <QPalette>
#include <QToolTip>

namespace {

constexpr int greatestWidth = 360;

} // namespace

void dressToolTips()
{
    const auto dress = [] {
        const Theme &theme = Theme::current();
        QPalette palette = QToolTip::palette();
        palette.setColor(QPalette::ToolTipBase, theme.popover);
        // The toolkit draws the border in it too, which would be harsh in that of other texts.
        palette.setColor(QPalette::ToolTipText, theme.secondary);
        palette.setColor(QPalette::Window, theme.popover);
        palette.setColor(QPalette::WindowText, theme.secondary);
        QToolTip::setPalette(palette);
        QToolTip::setFont(font(TextStyle::Subheadline));
    };
    dress();
    QObject::connect(&Appearance::shared(), &Appearance::changed, &Appearance::shared(), dress);
}

QString plainTextToolTip(const QString &text)
{
    // The toolkit breaks no word, however long, and other rich text to a narrow column.
    const QStringList lines =
        brokenLines(text, QToolTip::font(), greatestWidth, QTextOption::WrapAtWordBoundaryOrAnywhere);
    QStringList escaped;
    for (const QString &line : lines) {
        escaped.append(line.toHtmlEscaped());
    }
    return QStringLiteral("<p style=\"white-space:pre\">%1</p>").arg(escaped.join(QStringLiteral("<br>")));
}
