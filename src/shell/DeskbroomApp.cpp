#include "DeskbroomApp.h"

#include "MenuBarManager.h"
#include "processEnvironment.h"
#include "runInBackground.h"

#include <malloc.h>

namespace {

const QString applicationName = QStringLiteral("Deskbroom");
const QString applicationIdentifier = QStringLiteral("org.deskbroom.Deskbroom");

/// A picture that was decoded goes back to the system when it is freed, whatever was allocated since: left to
/// itself the allocator learns from the first large block and keeps the next ones.
void keepMemoryLow()
{
    constexpr int largeBlock = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, largeBlock);
    mallopt(M_TRIM_THRESHOLD, largeBlock);
    mallopt(M_ARENA_MAX, 1);
}

} // namespace

DeskbroomApp::ProcessPreparation::ProcessPreparation()
{
    TerminationSignals::install();
    keepMemoryLow();
    processEnvironment::prepare();
    QCoreApplication::setApplicationName(applicationName);
    QCoreApplication::setApplicationVersion(QStringLiteral(DESKBROOM_VERSION));
    QGuiApplication::setDesktopFileName(applicationIdentifier);
    QGuiApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
}

DeskbroomApp::DeskbroomApp(int &argc, char **argv) : m_application(argc, argv) {}

int DeskbroomApp::run()
{
    m_instance.claim([this](ApplicationInstance::Role role) { claimed(role); });
    const int status = QApplication::exec();
    finishBackgroundWork();
    return status;
}

void DeskbroomApp::claimed(ApplicationInstance::Role role)
{
    if (role == ApplicationInstance::Role::HandedOver) {
        QCoreApplication::quit();
        return;
    }
    m_appDelegate.applicationDidFinishLaunching();
    QObject::connect(
        &m_instance, &ApplicationInstance::activated, m_appDelegate.menuBarManager(),
        &MenuBarManager::statusItemClicked);
}
