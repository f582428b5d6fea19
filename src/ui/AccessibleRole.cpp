#include "AccessibleRole.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

namespace {

constexpr const char *roleProperty = "deskbroomAccessibleRole";

class AccessibleWithRole final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = role() == QAccessible::Dialog;
        state.hasPopup = role() == QAccessible::ButtonMenu;
        if (const QAbstractButton *const button = asButton(); button != nullptr && button->isCheckable()) {
            const bool isItem = role() == QAccessible::ListItem;
            state.selectable = isItem;
            state.selected = isItem && button->isChecked();
            state.checkable = !isItem;
            state.checked = !isItem && button->isChecked();
        }
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (asButton() != nullptr && widget()->isEnabled()) {
            names.prepend(pressAction());
        }
        return names;
    }

    void doAction(const QString &actionName) override
    {
        if (QAbstractButton *const button = asButton(); button != nullptr && actionName == pressAction()) {
            button->click();
        } else {
            QAccessibleWidget::doAction(actionName);
        }
    }

private:
    [[nodiscard]] QAbstractButton *asButton() const { return qobject_cast<QAbstractButton *>(widget()); }
};

QAccessibleInterface *createWithRole(const QString & /*className*/, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    const QVariant role = widget != nullptr ? widget->property(roleProperty) : QVariant();
    return role.isValid() ? new AccessibleWithRole(widget, static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

} // namespace

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(createWithRole);
        return true;
    }();
    Q_UNUSED(isInstalled)
    widget.setProperty(roleProperty, static_cast<int>(role));
}
