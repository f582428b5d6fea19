#include "galleryItemMenu.h"

#include "PopUpMenu.h"
#include "Symbols.h"

#include <QAction>
#include <QCoreApplication>

namespace {

constexpr int leastWidth = 200;

QString translated(const char *text)
{
    return QCoreApplication::translate("ScreenshotGalleryView", text);
}

void add(
    PopUpMenu &menu, QWidget &owner, const QString &title, const QString &symbol,
    const std::function<void()> &action)
{
    QAction *const item = menu.addAction(Symbols::icon(symbol), title);
    item->setEnabled(action != nullptr);
    if (action) {
        QObject::connect(item, &QAction::triggered, &owner, action);
    }
}

} // namespace

void popUpGalleryItemMenu(QWidget &owner, QPoint position, const GalleryItemActions &actions)
{
    auto *const menu = new PopUpMenu(leastWidth, &owner);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    add(*menu, owner, translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Copy")),
        QStringLiteral("doc.on.clipboard"), actions.copy);
    add(*menu, owner, translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Open")),
        QStringLiteral("photo.on.rectangle.angled"), actions.open);
    add(*menu, owner, translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Show in File Manager")),
        QStringLiteral("folder.fill"), actions.showInFileManager);
    menu->addSeparator();
    add(*menu, owner, translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Move to Trash")),
        QStringLiteral("trash"), actions.moveToTrash);
    menu->popUpBeside(QRect(position, QSize(1, 1)));
}
