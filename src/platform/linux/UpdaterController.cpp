#include "UpdaterController.h"

#include "currentDesktops.h"
#include "print.h"
#include "startDetached.h"

#include <QStandardPaths>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

struct SoftwareCentre {
    /// Entries of XDG_CURRENT_DESKTOP whose own this is.
    QStringList desktops;
    QString program;
    QStringList arguments;
};

const std::vector<SoftwareCentre> &knownSoftwareCentres()
{
    static const std::vector<SoftwareCentre> centres = {
        {{QStringLiteral("GNOME"), QStringLiteral("Unity"), QStringLiteral("Budgie")},
         QStringLiteral("gnome-software"),
         {QStringLiteral("--mode=updates")}},
        {{QStringLiteral("KDE")},
         QStringLiteral("plasma-discover"),
         {QStringLiteral("--mode"), QStringLiteral("update")}},
        {{QStringLiteral("X-Cinnamon"), QStringLiteral("Cinnamon")}, QStringLiteral("mintupdate"), {}},
        {{QStringLiteral("Pantheon")},
         QStringLiteral("io.elementary.appcenter"),
         {QStringLiteral("--show-updates")}},
        {{QStringLiteral("COSMIC")}, QStringLiteral("cosmic-store"), {}},
        {{}, QStringLiteral("update-manager"), {}},
        {{}, QStringLiteral("pamac-manager"), {QStringLiteral("--updates")}},
        {{}, QStringLiteral("gpk-update-viewer"), {}},
    };
    return centres;
}

/// With the full path of its program, because the search path may change before the start.
std::optional<SoftwareCentre> installedSoftwareCentre()
{
    const QStringList desktops = currentDesktops();
    std::vector<SoftwareCentre> candidates = knownSoftwareCentres();
    std::ranges::stable_partition(candidates, [&desktops](const SoftwareCentre &centre) {
        return std::ranges::any_of(
            centre.desktops, [&desktops](const QString &desktop) { return desktops.contains(desktop); });
    });
    for (SoftwareCentre &candidate : candidates) {
        const QString path = QStandardPaths::findExecutable(candidate.program);
        if (!path.isEmpty()) {
            candidate.program = path;
            return std::move(candidate);
        }
    }
    return std::nullopt;
}

} // namespace

bool UpdaterController::canCheckForUpdates() const
{
    return installedSoftwareCentre().has_value();
}

void UpdaterController::checkForUpdates()
{
    const std::optional<SoftwareCentre> centre = installedSoftwareCentre();
    if (!centre) {
        print(QStringLiteral("Failed to check for updates: no software centre is installed"));
        return;
    }
    startDetached(centre->program, centre->arguments, QStringLiteral("Failed to check for updates: "));
}
