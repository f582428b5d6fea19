#include "SettingsRowDivider.h"

#include "Hairline.h"

#include <QHBoxLayout>

SettingsRowDivider::SettingsRowDivider(int inset, QWidget *parent) : QWidget(parent)
{
    auto *const line = new QHBoxLayout(this);
    line->setContentsMargins({});
    line->setSpacing(0);
    // A margin would stay at the left where one reads from right to left.
    line->addSpacing(inset);
    line->addWidget(new Hairline(Qt::Horizontal));
}
