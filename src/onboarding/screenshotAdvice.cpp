#include "screenshotAdvice.h"

#include "ScreenshotSaving.h"
#include "SystemScreenshotPreview.h"

#include <QCoreApplication>

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("OnboardingDoneStepView", text);
}

QString asksEachTime(const QString &tool)
{
    return translated(
               QT_TRANSLATE_NOOP(
                   "OnboardingDoneStepView",
                   "When %1 asks where to save a screenshot, press Save, and Deskbroom sees it at once."))
        .arg(tool);
}

/// For tools that do nothing before the user tells them to.
QString adviceForRequests(const QString &tool)
{
    if (tool == screenshotTools::xfce) {
        return asksEachTime(QStringLiteral("Xfce"));
    }
    if (tool == screenshotTools::mate) {
        return asksEachTime(QStringLiteral("MATE"));
    }
    if (tool == screenshotTools::elementary) {
        return asksEachTime(QStringLiteral("elementary"));
    }
    return translated(QT_TRANSLATE_NOOP(
        "OnboardingDoneStepView",
        "Save each screenshot in your screenshot tool, which doesn't by itself, and Deskbroom sees it."));
}

/// For tools that belong to no desktop: those of them that say nothing themselves save at once.
QString adviceForOthers(const QString &tool)
{
    // Its own names are bare dates, which a photo has as well.
    return tool == screenshotTools::flameshot
               ? translated(QT_TRANSLATE_NOOP(
                     "OnboardingDoneStepView",
                     "Let Flameshot's file names begin with “flameshot”, so that Deskbroom "
                     "knows them for screenshots."))
               : QString();
}

} // namespace

QString screenshotAdvice()
{
    switch (screenshotSaving()) {
    case ScreenshotSaving::AtOnce:
        return {};
    case ScreenshotSaving::AfterPreview:
        return SystemScreenshotPreview::isDisabled()
                   ? QString()
                   : translated(QT_TRANSLATE_NOOP(
                         "OnboardingDoneStepView", "To have Spectacle save at once, turn on “Disable "
                                                   "floating screenshot preview” in Deskbroom's settings."));
    case ScreenshotSaving::OnRequest:
        return adviceForRequests(screenshotTool());
    case ScreenshotSaving::Unknown:
        return adviceForOthers(screenshotTool());
    }
    Q_UNREACHABLE();
}
