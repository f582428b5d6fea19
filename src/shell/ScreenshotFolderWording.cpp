#include "ScreenshotFolderWording.h"

#include "FileManager.h"
#include "fatalError.h"

#include <QCoreApplication>

namespace {

const QString catalogueFile = QStringLiteral(":/translations/screenshot-folder_en.qm");

} // namespace

void ScreenshotFolderWording::update()
{
    const bool isWanted = FileManager::defaultManager().isDesktopElsewhere();
    if (isWanted == m_isInstalled) {
        return;
    }
    m_isInstalled = isWanted;
    if (!isWanted) {
        QCoreApplication::removeTranslator(&m_catalogue);
        return;
    }
    if (m_catalogue.isEmpty() && !m_catalogue.load(catalogueFile)) {
        fatalError(QStringLiteral("The wording of the screenshot folder is missing from the program"));
    }
    QCoreApplication::installTranslator(&m_catalogue);
}
