#include "toolTips.h"

#include "Appearance.h"
#include "Theme.h"
#include "Typography.h"

#include <QPalette>
#include <QToolTip>

void dressToolTips()
{
    const auto dress = [] {
        const Theme &theme = Theme::current();
        QPalette palette = QToolTip::palette();
        palette.setColor(QPalette::ToolTipBase, theme.popover);
        palette.setColor(QPalette::ToolTipText, theme.primary);
        palette.setColor(QPalette::Window, theme.popover);
        palette.setColor(QPalette::WindowText, theme.primary);
        QToolTip::setPalette(palette);
        QToolTip::setFont(font(TextStyle::Subheadline));
    };
    dress();
    QObject::connect(&Appearance::shared(), &Appearance::changed, &Appearance::shared(), dress);
}
