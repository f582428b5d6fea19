#include "galleryItemMenu.h"

#include "PopUpMenu.h"
#include "ScreenshotGalleryView.h"
#include "Symbols.h"

#include <QAction>

namespace {

constexpr int leastWidth = 200;

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
    add(*menu, owner, ScreenshotGalleryView::tr("Copy"), QStringLiteral("doc.on.clipboard"), actions.copy);
    add(*menu, owner, ScreenshotGalleryView::tr("Open"), QStringLiteral("photo.on.rectangle.angled"),
        actions.open);
    add(*menu, owner, ScreenshotGalleryView::tr("Show in File Manager"), QStringLiteral("folder.fill"),
        actions.showInFileManager);
    menu->addSeparator();
    add(*menu, owner, ScreenshotGalleryView::tr("Move to Trash"), QStringLiteral("trash"),
        actions.moveToTrash);
    menu->popUpBeside(QRect(position, QSize(1, 1)));
}
