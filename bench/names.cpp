#include "names.h"

#include <QDateTime>
#include <QTimeZone>

#include <array>

namespace {

QDateTime moment(int index)
{
    return QDateTime::fromSecsSinceEpoch(1'714'550'000 + qint64(index) * 97, Qt::UTC);
}

} // namespace

QString screenshotName(int index)
{
    static const std::array formats = {
        QStringLiteral("'Screenshot from 'yyyy-MM-dd HH-mm-ss'.png'"),
        QStringLiteral("'Screenshot_'yyyyMMdd_HHmmss'.png'"),
        QStringLiteral("'Screenshot_'yyyy-MM-dd_HH-mm-ss'.png'"),
        QStringLiteral("'Screenshot 'yyyy-MM-dd' at 'HH.mm.ss'.png'"),
    };
    return moment(index).toString(formats.at(static_cast<size_t>(index) % formats.size()));
}

QString otherName(int index)
{
    static const std::array names = {
        QStringLiteral("Invoice %1.pdf"),        QStringLiteral("notes-%1.txt"),
        QStringLiteral("Budget %1 (final).ods"), QStringLiteral("holiday %1.jpeg"),
        QStringLiteral("debian-%1-amd64.iso"),   QStringLiteral("Präsentation %1.odp"),
        QStringLiteral("report-%1.docx"),        QStringLiteral("archive_%1.tar.gz"),
        QStringLiteral("会議メモ %1.md"),        QStringLiteral("main-%1.cpp"),
    };
    return names.at(static_cast<size_t>(index) % names.size()).arg(index, 6, 10, QLatin1Char('0'));
}
