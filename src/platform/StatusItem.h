#pragma once

#include <QIcon>
#include <QImage>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>

#include <memory>

class QMenu;

/// What a panel may show for the status item. Panels differ: one looks `iconName` up, another paints
/// `pixmaps`, an XEmbed tray gets `icon`. Give all of them, and all of them again when the theme changes.
///
/// `iconName` should end in `-symbolic` and be found below `iconThemePath` in a `hicolor` layout
/// (`hicolor/scalable/status/<name>.svg`; or installed, with an empty path): then a panel paints it in its
/// own text colour, sharp at every size and scale. A panel that doesn't find it paints `pixmaps`: any sizes,
/// in device pixels, in the colour that they come in. Tint these with the theme: xfce4-panel 4.18 recolours a
/// symbolic icon only when it sees that something else about the item has changed. `icon` gets a thin
/// outline, since nobody knows what colour an XEmbed tray is.
struct StatusItemImage {
    QString iconName;
    QString iconThemePath;
    QList<QImage> pixmaps;
    QIcon icon;
    QString accessibilityDescription;
};

/// The program's item in the desktop's panel: an image that can be clicked, and a menu for panels whose
/// click opens one. It waits for a panel that starts later and comes back when the panel restarts.
///
/// Without a panel, or without a session bus, it is simply not seen: nothing fails, and `anchor` still says
/// where it would be. GUI thread. Owned by the menu bar manager.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// Where popovers and menus hang.
    struct Anchor {
        /// How much the place can be trusted, from the item itself to a mere convention.
        enum class Source { Item, Click, PanelEnd, ScreenCorner };

        /// In global logical pixels, never empty.
        QRect rectangle;
        Source source = Source::ScreenCorner;

        bool operator==(const Anchor &) const = default;
    };

    /// Nothing is shown, and no bus touched, before `setImage`.
    explicit StatusItem(QObject *parent = nullptr);
    ~StatusItem() override;
    Q_DISABLE_COPY_MOVE(StatusItem)

    /// Shows the item, or changes what it shows.
    void setImage(const StatusItemImage &image);

    /// The menu for panels that open one themselves (usually on a right click). It must outlive the item or
    /// be replaced; null takes it away. It isn't attached to the item: an ordinary click is `clicked`.
    void setMenu(QMenu *menu);

    /// Asks the X server, where there is one, for the panels as they are now: for use at the moment something
    /// is about to be shown.
    [[nodiscard]] Anchor anchor() const;

Q_SIGNALS:
    void clicked();

    /// A right click, from a panel that opens no menu of the item's itself.
    void menuRequested();

private:
    class Presence;

    std::unique_ptr<Presence> m_presence;
};
