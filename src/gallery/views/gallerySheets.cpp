#include "gallerySheets.h"

#include "ScreenshotGalleryView.h"
#include "galleryTexts.h"

#include <utility>

SheetDescription gallerySheets::copied(const QString &message, std::function<void()> onDismissed)
{
    return {
        .symbol = QStringLiteral("doc.on.clipboard"),
        .tone = SheetDescription::Tone::Accent,
        .title = ScreenshotGalleryView::tr("Screenshot Copied"),
        .message = message,
        .buttons = {{
            .kind = PushButton::Kind::Prominent,
            .text = ScreenshotGalleryView::tr("OK"),
            .action = std::move(onDismissed),
        }},
    };
}

SheetDescription
gallerySheets::deletion(qsizetype count, const std::function<void(bool isConfirmed)> &onAnswer)
{
    return {
        .symbol = QStringLiteral("trash"),
        .tone = SheetDescription::Tone::Red,
        .title = ScreenshotGalleryView::tr("Delete Selected Screenshots"),
        .message = galleryTexts::deletionQuestion(count),
        .buttons =
            {
                {
                    .kind = PushButton::Kind::Bordered,
                    .text = ScreenshotGalleryView::tr("Cancel"),
                    .action = [onAnswer] { onAnswer(false); },
                    .role = SheetButton::Role::Cancel,
                },
                {
                    .kind = PushButton::Kind::Destructive,
                    .text = ScreenshotGalleryView::tr("Delete All"),
                    .action = [onAnswer] { onAnswer(true); },
                },
            },
    };
}
