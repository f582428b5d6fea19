#include "screenshotDescription.h"

#include "ScreenshotItem.h"
#include "fileNameText.h"

#include <QLocale>

QString screenshotDescription::details(const ScreenshotItem &screenshot)
{
    const QLocale locale;
    return locale.formattedDataSize(screenshot.fileSize) + QStringLiteral(", ") +
           locale.toString(screenshot.creationDate.toLocalTime(), QLocale::ShortFormat);
}

QString screenshotDescription::toolTip(const ScreenshotItem &screenshot)
{
    return fileNameText::toolTip(screenshot.name(), details(screenshot));
}
