#pragma once

#include "Appearance.h"
#include "SettingsPortal.h"

#include <QTest>

/// While it lives, the desktop asks for reduced motion. Afterwards it doesn't again, once the program has
/// heard of it.
class StillDesktop final {
public:
    StillDesktop() { set(1); }

    ~StillDesktop() { set(0); }

    Q_DISABLE_COPY_MOVE(StillDesktop)

private:
    void set(uint reducedMotion)
    {
        m_portal.setAppearance(QStringLiteral("reduced-motion"), reducedMotion);
        const bool isHeard = QTest::qWaitFor(
            [reducedMotion] { return Appearance::shared().reducesMotion() == (reducedMotion == 1); });
        if (!isHeard) {
            qFatal("The program doesn't follow the desktop");
        }
    }

    SettingsPortal m_portal;
};
