#pragma once

#include <QScrollArea>

class SlimScrollBar;

/// Scrolls its contents up and down under a slim bar that takes no width from them. It paints no ground of
/// its own and is no tab stop; keys that the contents leave alone scroll it. The contents are as wide as the
/// area, and at least as high.
class ScrollArea final : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrollArea(QWidget *parent = nullptr);

    /// The area owns them from then on.
    void setWidget(QWidget *contents);

    /// How far from either end the bar stays, in points, where something else lies over the contents.
    void setBarMargins(int top, int bottom);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeBar();
    void takeRange();

    SlimScrollBar *m_bar;
    int m_topMargin = 0;
    int m_bottomMargin = 0;
};
