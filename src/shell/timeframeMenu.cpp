#include "timeframeMenu.h"

#include "PopUpMenu.h"
#include "Preferences.h"
#include "timeframeTitle.h"

#include <QAction>

namespace {

constexpr int leastWidth = 176;

} // namespace

PopUpMenu *makeTimeframeMenu(qint64 current)
{
    auto *const menu = new PopUpMenu(leastWidth);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const int minutes : preferences::timeframeChoices) {
        QAction *const item = menu->addAction(timeframeTitle(minutes));
        item->setCheckable(true);
        item->setData(minutes);
        item->setChecked(minutes == current);
    }
    return menu;
}
