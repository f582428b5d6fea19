#include "AccessibleRole.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace {

constexpr const char *roleProperty = "deskbroomAccessibleRole";

class AccessibleWithRole final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }
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
