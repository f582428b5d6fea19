#pragma once

#include <QPixmap>
#include <QWidget>

#include <memory>

class QGraphicsOpacityEffect;

/// Shows one page. Another one comes in from where lines end, appearing, while the one before leaves to where
/// they begin, fading.
///
/// What leaves is a picture: the page itself is hidden at once and deleted on the next turn of the loop, so
/// there is never more than one that can be used, and what is replaced on its way leaves as it looks then.
class OnboardingPageStage final : public QWidget {
    Q_OBJECT

public:
    explicit OnboardingPageStage(QWidget *parent = nullptr);
    ~OnboardingPageStage() override;
    Q_DISABLE_COPY_MOVE(OnboardingPageStage)

    /// Null before the first one.
    [[nodiscard]] QWidget *page() const { return m_page; }

    /// Takes the page over. Nothing moves for the first one, or while the stage isn't shown.
    void setPage(QWidget *page);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QPixmap picture();
    void replacePage(QWidget *page);
    void moveIn(QPixmap leaving);
    void setProgress(qreal progress);
    /// Where a page stands that has gone so much of its way, 1 being the width, in the reading direction.
    [[nodiscard]] QPoint offset(qreal way) const;

    QWidget *m_page = nullptr;
    /// What is on its way out; null at rest.
    QPixmap m_leaving;
    qreal m_progress = 1;
    /// The page's while it moves.
    QGraphicsOpacityEffect *m_opacity = nullptr;
    /// Owns what is moving.
    std::unique_ptr<QObject> m_motion;
};
