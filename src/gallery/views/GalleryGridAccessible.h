#pragma once

#include <QAccessibleWidget>

#include <cstddef>
#include <unordered_map>

class GalleryGrid;

/// A grid as assistive programs see it: a list with an item for every displayed screenshot, also for those
/// that have no widget. An item does what a click on its cell does, and opens its context menu.
class GalleryGridAccessible final : public QAccessibleWidget {
public:
    /// Lets the toolkit know how to make one. Any number of times.
    static void install();

    /// The keyboard has gone to the grid's current cell.
    static void tellFocus(GalleryGrid &grid);

    /// The grid shows other screenshots, or others are selected.
    static void update(GalleryGrid &grid);

    explicit GalleryGridAccessible(GalleryGrid &grid);
    ~GalleryGridAccessible() override;
    Q_DISABLE_COPY_MOVE(GalleryGridAccessible)

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;

private:
    [[nodiscard]] GalleryGrid &grid() const;

    void tellScreenshots();
    void tellSelection();

    /// An item that somebody has asked for, and what is known of its state.
    struct Item {
        QAccessible::Id id = 0;
        bool isSelected = false;
    };

    /// By their index.
    mutable std::unordered_map<int, Item> m_items;
    /// Tells one list of screenshots from another.
    std::size_t m_toldScreenshots;
};
