#include "galleryTexts.h"

#include "ScreenshotGalleryView.h"

#include <QList>

namespace {

/// Each "%lld" takes the next of the numbers.
QString filled(QString text, const QList<qsizetype> &numbers)
{
    const QString placeholder = QStringLiteral("%lld");
    qsizetype from = 0;
    for (const qsizetype number : numbers) {
        const qsizetype position = text.indexOf(placeholder, from);
        const QString digits = QString::number(number);
        text.replace(position, placeholder.size(), digits);
        from = position + digits.size();
    }
    return text;
}

QString filledWithEnding(const QString &text, qsizetype count, const QString &ending)
{
    return filled(text, {count}).replace(QStringLiteral("%@"), count == 1 ? QString() : ending);
}

} // namespace

QString galleryTexts::screenshotCount(qsizetype count)
{
    return filledWithEnding(ScreenshotGalleryView::tr("%lld screenshot%@"), count, QStringLiteral("s"));
}

QString galleryTexts::headerCount(qsizetype displayed, qsizetype all)
{
    if (displayed < all) {
        return filled(ScreenshotGalleryView::tr("SHOWING %lld OF %lld"), {displayed, all});
    }
    return filledWithEnding(ScreenshotGalleryView::tr("%lld SCREENSHOT%@"), all, QStringLiteral("S"));
}

QString galleryTexts::selectionCount(qsizetype count)
{
    return filled(ScreenshotGalleryView::tr("%lld selected"), {count});
}

QString galleryTexts::overflow(qsizetype count)
{
    return filled(ScreenshotGalleryView::tr("+ %lld more"), {count});
}

QString galleryTexts::footer(qsizetype displayed, qsizetype all)
{
    return filled(ScreenshotGalleryView::tr("Showing %lld of %lld screenshots"), {displayed, all});
}

QString galleryTexts::loadMore(qsizetype remaining)
{
    return filled(ScreenshotGalleryView::tr("Load More (%lld remaining)"), {remaining});
}

QString galleryTexts::deletionQuestion(qsizetype count)
{
    return filledWithEnding(
        ScreenshotGalleryView::tr("Are you sure you want to move %lld screenshot%@ to the Trash?"), count,
        QStringLiteral("s"));
}
