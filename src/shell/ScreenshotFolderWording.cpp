#include "ScreenshotFolderWording.h"

#include "fatalError.h"

#include <QCoreApplication>

namespace {

const QString catalogueFile = QStringLiteral(":/translations/screenshot-folder_en.qm");

} // namespace

void ScreenshotFolderWording::use(bool isDesktopElsewhere)
{
    if (isDesktopElsewhere == m_isInstalled) {
        return;
    }
    m_isInstalled = isDesktopElsewhere;
    if (!isDesktopElsewhere) {
        QCoreApplication::removeTranslator(&m_catalogue);
        return;
    }
    if (m_catalogue.isEmpty() && !m_catalogue.load(catalogueFile)) {
        fatalError(QStringLiteral("The wording of the screenshot folder is missing from the program"));
    }
    QCoreApplication::installTranslator(&m_catalogue);
}
