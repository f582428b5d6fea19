#pragma once

#include "TextColor.h"

#include <QWidget>

/// A symbol in a square, for decoration: assistive programs learn nothing from it.
class SymbolLabel final : public QWidget {
    Q_OBJECT

public:
    /// `side` is in points.
    SymbolLabel(QString symbolName, int side, TextColor color, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbolName;
    TextColor m_color;
};
