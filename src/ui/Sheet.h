#pragma once

#include "PushButton.h"

#include <QPainterPath>
#include <QPointer>

#include <functional>

struct SheetButton {
    enum class Role {
        Default,
        /// Escape answers with it, and it has the focus at first.
        Cancel,
    };

    PushButton::Kind kind = PushButton::Kind::Bordered;
    QString text;
    // The braces are for those that name only the others.
    std::function<void()> action = {}; // NOLINT(readability-redundant-member-init)
    Role role = Role::Default;
};

struct SheetDescription {
    enum class Tone { Accent, Red };

    QString symbol;
    Tone tone = Tone::Accent;
    QString title;
    /// A file's name in it stands between apostrophes, and is drawn so that it can't turn them round.
    QString message;
    /// From the start of the row to its end. A single one is the cancel button whatever its role.
    QList<SheetButton> buttons;
};

/// An alert on a scrim that covers the window, or the popover, of its host.
///
/// While it is there nothing under it can be clicked or reached with the keyboard. One answer is taken: the
/// sheet goes, the focus is back where it was, and then the button's action runs. When the host goes, the
/// sheet goes with it, without an answer. A dialog for assistive programs. Main thread.
class Sheet final : public QWidget {
    Q_OBJECT

public:
    /// The sheet belongs to the window of `host`.
    static QPointer<Sheet> present(QWidget &host, SheetDescription description);

    /// Without an answer. Harmless when one has been given.
    void dismiss();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    Sheet(QWidget &window, SheetDescription description);

    void makeCard();
    void appear();
    void setProgress(qreal progress);
    void placeCard();
    [[nodiscard]] QPainterPath scrimOutline() const;
    void answer(qsizetype index);
    void keepFocusInside(QWidget *focused);
    void giveFocusBack();

    SheetDescription m_description;
    QList<PushButton *> m_buttons;
    /// The button that Escape answers with; the first where none says that it cancels.
    qsizetype m_cancelIndex = 0;
    QWidget *m_card;
    QPointer<QWidget> m_focusedBefore;
    /// 0 to 1 while it appears.
    qreal m_progress = 0;
    bool m_isDismissed = false;
};
