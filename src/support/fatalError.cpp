#include "fatalError.h"

#include <cstdio>
#include <cstdlib>

void fatalError(const QString &message)
{
    (void)std::fputs(qPrintable(QStringLiteral("Fatal error: ") + message + QLatin1Char('\n')), stderr);
    std::abort();
}
