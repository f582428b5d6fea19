#include "DeskbroomApp.h"

#include "GalleryConfiguration.h"
#include "MenuBarManager.h"
#include "OnboardingView.h"
#include "ScreenshotGalleryView.h"
#include "SettingsView.h"
#include "processEnvironment.h"
#include "processMemory.h"
#include "runInBackground.h"
#include "toolTips.h"

namespace {

const QString applicationName = QStringLiteral("Deskbroom");
const QString applicationIdentifier = QStringLiteral("org.deskbroom.Deskbroom");

WindowViews windowViews()
{
    return {
        .settings =
            [](SettingsApplicationDelegate &delegate) { return std::make_unique<SettingsView>(delegate); },
        .gallery = [] { return std::make_unique<ScreenshotGalleryView>(GalleryConfiguration::window()); },
        .recentScreenshots =
            [](std::function<void()> onExpandToFull, std::function<void()> onClosePopover) {
                return std::make_unique<ScreenshotGalleryView>(
                    GalleryConfiguration::popover(), std::move(onExpandToFull), std::move(onClosePopover));
            },
        .onboarding =
            [](std::function<void()> onFinished) {
                return std::make_unique<OnboardingView>(std::move(onFinished));
            },
    };
}

} // namespace

DeskbroomApp::ProcessPreparation::ProcessPreparation()
{
    TerminationSignals::install();
    processMemory::keepLow();
    processEnvironment::prepare();
    QCoreApplication::setApplicationName(applicationName);
    QCoreApplication::setApplicationVersion(QStringLiteral(DESKBROOM_VERSION));
    QGuiApplication::setDesktopFileName(applicationIdentifier);
    QGuiApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
}

DeskbroomApp::DeskbroomApp(int &argc, char **argv) : m_application(argc, argv), m_appDelegate(windowViews())
{
}

int DeskbroomApp::run()
{
    m_instance.claim([this](ApplicationInstance::Role role) { claimed(role); });
    const int status = QApplication::exec();
    m_appDelegate.applicationWillTerminate();
    finishBackgroundWork();
    return status;
}

void DeskbroomApp::claimed(ApplicationInstance::Role role)
{
    if (role == ApplicationInstance::Role::HandedOver) {
        QCoreApplication::quit();
        return;
    }
    m_wording.install();
    dressToolTips();
    m_appDelegate.applicationDidFinishLaunching();
    QObject::connect(&m_instance, &ApplicationInstance::activated, &m_appDelegate, [this] {
        // Where a window manager has closed the first-run pages, a second start brings them back.
        if (!m_appDelegate.showOnboardingIfNeeded()) {
            m_appDelegate.menuBarManager()->statusItemClicked();
        }
    });
}
