#include "timeframeTitle.h"

#include <QCoreApplication>

QString timeframeTitle(qint64 minutes)
{
    const QString title = minutes >= 2 ? QCoreApplication::translate("timeframeTitle", "%lld minutes")
                                       : QCoreApplication::translate("timeframeTitle", "%lld minute");
    return QString(title).replace(QStringLiteral("%lld"), QString::number(minutes));
}
