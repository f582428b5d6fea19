#include "statusItemImage.h"

#include "Appearance.h"
#include "Symbols.h"
#include "Theme.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>

namespace {

const QString symbolName = QStringLiteral("camera.fill");

/// The sizes at which panels draw their items, in pixels.
constexpr int pixmapSides[] = {16, 22, 24, 32, 48, 64};

/// The same drawing under a name that panels look up and paint in their own text colour. A panel doesn't
/// paint it anew when its colours change, so each look has a name of its own.
QString iconName()
{
    const bool isDark = Appearance::shared().colorScheme() == Appearance::ColorScheme::Dark;
    return isDark ? QStringLiteral("org.deskbroom.Deskbroom.camera-dark-symbolic")
                  : QStringLiteral("org.deskbroom.Deskbroom.camera-light-symbolic");
}

/// The icon theme folder that came with this program: below the prefix where it is installed, or beside it
/// where it was built. Empty if there is none.
QString iconThemePath()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    for (const QString &candidate : {QStringLiteral("../share/icons"), QStringLiteral("share/icons")}) {
        const QString folder = QDir::cleanPath(programFolder.filePath(candidate));
        if (QFile::exists(QStringLiteral("%1/hicolor/scalable/status/%2.svg").arg(folder, iconName()))) {
            return folder;
        }
    }
    return {};
}

QList<QImage> pixmaps()
{
    QList<QImage> images;
    for (const int side : pixmapSides) {
        images.append(Symbols::image(symbolName, side, 1, Theme::current().primary));
    }
    return images;
}

} // namespace

StatusItemImage statusItemImage()
{
    StatusItemImage image;
    image.iconThemePath = iconThemePath();
    // Some panels leave the place blank for a name that they don't find; others can't read SVG and take the
    // pixmaps.
    image.iconName = image.iconThemePath.isEmpty() ? QString() : iconName();
    image.pixmaps = pixmaps();
    image.icon = Symbols::icon(symbolName);
    image.accessibilityDescription = QStringLiteral("Deskbroom");
    return image;
}
