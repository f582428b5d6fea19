#pragma once

#include "../../gallery/GalleryHome.h"
#include "ObservableObject.h"
#include "Preferences.h"
#include "ScreenshotManager.h"
#include "SettingsApplicationDelegate.h"
#include "UserDefaults.h"
#include "labels.h"

#include <QWidget>

/// Stands for the application delegate: real managers, and the delay as the delegate keeps it.
class TestApplicationDelegate final : public SettingsApplicationDelegate {
public:
    /// What the delegate makes at launch.
    enum class Manager { FileAccess, Screenshots };

    [[nodiscard]] qint64 timeframeInMinutes() const override { return m_timeframe.get(); }

    void updateTimeframe(qint64 minutes) override
    {
        m_timeframe.set(minutes);
        UserDefaults::standard().setInteger(preferences::timeframeInMinutes, minutes);
    }

    [[nodiscard]] FileAccessManager *fileAccessManager() const override
    {
        return m_hasFileAccess ? &FileAccessManager::shared() : nullptr;
    }

    [[nodiscard]] ScreenshotManager *screenshotManager() const override { return m_screenshotManager.get(); }

    /// As before the launch has come to it.
    void remove(Manager manager)
    {
        if (manager == Manager::FileAccess) {
            m_hasFileAccess = false;
        } else {
            m_screenshotManager.reset();
        }
    }

private:
    Published<qint64> m_timeframe{this, preferences::defaultTimeframeInMinutes};
    std::unique_ptr<ScreenshotManager> m_screenshotManager = std::make_unique<ScreenshotManager>();
    bool m_hasFileAccess = true;
};

/// The control with this accessible name.
template <typename Control> Control *control(const QWidget &view, const QString &name)
{
    for (Control *const candidate : view.findChildren<Control *>()) {
        if (candidate->accessibleName() == name) {
            return candidate;
        }
    }
    return nullptr;
}
