#include "statusItemImage.h"

#include "Symbols.h"
#include "Theme.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>

namespace {

const QString symbolName = QStringLiteral("camera.fill");
/// The same drawing under a name that panels look up and paint in their own text colour.
const QString iconName = QStringLiteral("org.deskbroom.Deskbroom.camera-symbolic");

/// The sizes at which panels draw their items, in pixels.
constexpr int pixmapSides[] = {16, 22, 24, 32, 48, 64};

/// The icon theme folder that came with this program: below the prefix where it is installed, or beside it
/// where it was built. Empty if there is none.
QString iconThemePath()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    for (const QString &candidate : {QStringLiteral("../share/icons"), QStringLiteral("share/icons")}) {
        const QString folder = QDir::cleanPath(programFolder.filePath(candidate));
        if (QFile::exists(
                folder + QStringLiteral("/hicolor/scalable/status/") + iconName + QStringLiteral(".svg"))) {
            return folder;
        }
    }
    return {};
}

} // namespace

StatusItemImage statusItemImage()
{
    StatusItemImage image;
    image.iconThemePath = iconThemePath();
    // Some panels leave the place blank for a name that they don't find.
    image.iconName = image.iconThemePath.isEmpty() ? QString() : iconName;
    for (const int side : pixmapSides) {
        image.pixmaps.append(Symbols::image(symbolName, side, 1, Theme::current().primary));
        image.icon.addPixmap(QPixmap::fromImage(image.pixmaps.constLast()));
    }
    image.accessibilityDescription = QStringLiteral("Deskbroom");
    return image;
}
