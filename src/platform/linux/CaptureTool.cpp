#include "CaptureTool.h"

bool CaptureTool::isOwnOf(QStringView desktop) const
{
    for (const QLatin1String own : desktops.tokenize(u':')) {
        if (desktop.compare(own, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
}
