#include "gallerySheets.h"

#include "galleryTexts.h"

#include <QCoreApplication>

#include <utility>

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("ScreenshotGalleryView", text);
}

} // namespace

SheetDescription gallerySheets::copied(const QString &message, std::function<void()> onDismissed)
{
    return {
        .symbol = QStringLiteral("doc.on.clipboard"),
        .tone = SheetDescription::Tone::Accent,
        .title = translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Screenshot Copied")),
        .message = message,
        .buttons = {{
            .kind = PushButton::Kind::Prominent,
            .text = translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "OK")),
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
        .title = translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Delete Selected Screenshots")),
        .message = galleryTexts::deletionQuestion(count),
        .buttons =
            {
                {
                    .kind = PushButton::Kind::Bordered,
                    .text = translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Cancel")),
                    .action = [onAnswer] { onAnswer(false); },
                    .role = SheetButton::Role::Cancel,
                },
                {
                    .kind = PushButton::Kind::Destructive,
                    .text = translated(QT_TRANSLATE_NOOP("ScreenshotGalleryView", "Delete All")),
                    .action = [onAnswer] { onAnswer(true); },
                },
            },
    };
}
