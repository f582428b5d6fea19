#include "fatalError.h"

#include <cstdio>
#include <cstdlib>

void fatalError(const QString &message)
{
    std::fputs(qPrintable(QStringLiteral("Fatal error: ") + message + QLatin1Char('\n')), stderr);
    std::abort();
}
