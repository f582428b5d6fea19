#pragma once

#include "StatusItem.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPoint>
#include <QSystemTrayIcon>
#include <QTimer>

#include <xcb/xcb.h>

#include <memory>
#include <optional>

/// The status item in a panel that has only the older tray, where icons are windows embedded by an X11 tray
/// manager (freedesktop's System Tray Protocol). The window is the toolkit's QSystemTrayIcon.
///
/// Shown only between `show` and `hide`, and only while there is a manager; one that starts later announces
/// itself by a MANAGER message, which is waited for. Off X11 nothing happens. GUI thread; owned by the status
/// item.
class XEmbedStatusItem : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit XEmbedStatusItem(QObject *parent = nullptr);
    ~XEmbedStatusItem() override;
    Q_DISABLE_COPY_MOVE(XEmbedStatusItem)

    void setImage(const StatusItemImage &image);
    void show();
    void hide();

    /// Where the icon is, in global logical pixels, if a panel shows it.
    [[nodiscard]] std::optional<QRect> geometry() const;

Q_SIGNALS:
    void clicked();
    /// The right button was pressed.
    void menuRequested();

private:
    [[nodiscard]] bool
    nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] bool isManagerThere() const;
    void showIcon();
    void activate(QSystemTrayIcon::ActivationReason reason);

    enum class Wanted { No, Yes };

    Wanted m_wanted = Wanted::No;
    xcb_atom_t m_managerMessage = XCB_ATOM_NONE;
    xcb_atom_t m_traySelection = XCB_ATOM_NONE;
    QTimer m_settling;
    QIcon m_image;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};
