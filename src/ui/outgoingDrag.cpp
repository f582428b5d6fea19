#include "outgoingDrag.h"

#include <QCoreApplication>
#include <QDrag>

QDrag *outgoingDrag::make()
{
    return new QDrag(QCoreApplication::instance());
}

QDrag *outgoingDrag::current()
{
    return QCoreApplication::instance()->findChild<QDrag *>(QString(), Qt::FindDirectChildrenOnly);
}
