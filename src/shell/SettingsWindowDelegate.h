#pragma once

#include <QObject>

#include <functional>

/// Tells when a window is about to close: calls its one closure, and nothing else. A window closes once; what
/// it is told afterwards doesn't count.
///
/// One each for the settings, the gallery and the onboarding window, kept by the application delegate beside
/// the window; the window holds it only as an event filter. There is none without a closure. Main thread.
class SettingsWindowDelegate final : public QObject {
    Q_OBJECT

public:
    SettingsWindowDelegate() = delete;
    explicit SettingsWindowDelegate(std::function<void()> onWindowWillClose);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void windowWillClose();

    const std::function<void()> m_onWindowWillClose;
};
