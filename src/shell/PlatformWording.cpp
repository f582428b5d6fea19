#include "PlatformWording.h"

#include "fatalError.h"

#include <QCoreApplication>

namespace {

const QString catalogueFile = QStringLiteral(":/translations/linux_en.qm");

} // namespace

void PlatformWording::install()
{
    if (!m_catalogue.load(catalogueFile)) {
        fatalError(QStringLiteral("The platform's wording is missing from the program"));
    }
    QCoreApplication::installTranslator(&m_catalogue);
}
