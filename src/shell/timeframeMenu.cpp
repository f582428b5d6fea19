#include "timeframeMenu.h"

#include "MenuBarManager.h"
#include "PopUpMenu.h"
#include "Preferences.h"

#include <QAction>

namespace {

constexpr int leastWidth = 176;

QString minutesTitle(int minutes)
{
    const QString title =
        minutes >= 2 ? MenuBarManager::tr("%lld minutes") : MenuBarManager::tr("%lld minute");
    return QString(title).replace(QStringLiteral("%lld"), QString::number(minutes));
}

} // namespace

PopUpMenu *makeTimeframeMenu(qint64 current)
{
    auto *const menu = new PopUpMenu(leastWidth);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const int minutes : preferences::timeframeChoices) {
        QAction *const item = menu->addAction(minutesTitle(minutes));
        item->setCheckable(true);
        item->setData(minutes);
        item->setChecked(minutes == current);
    }
    return menu;
}
