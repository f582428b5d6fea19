#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

class GalleryGrid;

/// One screenshot in the list that a gallery's grid is for assistive programs. It stands for a position and
/// is valid as long as the grid has that many.
class GalleryItemAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    GalleryItemAccessible(GalleryGrid &grid, int index) : m_grid(&grid), m_index(index) {}

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override;

    [[nodiscard]] QObject *object() const override { return nullptr; }

    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override;

    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}

    [[nodiscard]] QRect rect() const override;

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QAccessible::State state() const override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &name) const override;

private:
    QPointer<GalleryGrid> m_grid;
    int m_index;
};
