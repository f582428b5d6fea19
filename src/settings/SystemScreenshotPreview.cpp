#include "SystemScreenshotPreview.h"

#include "AppPreferences.h"

bool SystemScreenshotPreview::isDisabled()
{
    const auto isShown =
        AppPreferences::copyAppValue(AppPreferences::showThumbnail, AppPreferences::screenshotTool);
    return isShown && isShown->isBool() && !isShown->toBool();
}

void SystemScreenshotPreview::setDisabled(bool isDisabled)
{
    AppPreferences::setValue(AppPreferences::showThumbnail, !isDisabled, AppPreferences::screenshotTool);
    AppPreferences::appSynchronize(AppPreferences::screenshotTool);
}
