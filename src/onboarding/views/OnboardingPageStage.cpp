#include "OnboardingPageStage.h"

#include "Motion.h"
#include "onboardingMotion.h"

#include <QGraphicsOpacityEffect>
#include <QPainter>

#include <utility>

OnboardingPageStage::OnboardingPageStage(QWidget *parent) : QWidget(parent)
{
}

OnboardingPageStage::~OnboardingPageStage() = default;

void OnboardingPageStage::setPage(QWidget *page)
{
    const bool isMoving = m_page != nullptr && isVisible() && !Motion::isReduced();
    QPixmap leaving = isMoving ? picture() : QPixmap();
    m_motion.reset();
    m_leaving = QPixmap();
    m_progress = 1;
    replacePage(page);
    if (isMoving) {
        moveIn(std::move(leaving));
    }
    page->show();
    update();
}

void OnboardingPageStage::replacePage(QWidget *page)
{
    if (m_page != nullptr) {
        m_page->hide();
        // What led here may be one of its own buttons.
        m_page->deleteLater();
    }
    m_opacity = nullptr;
    m_page = page;
    page->setParent(this);
    page->setGeometry(rect());
}

QPixmap OnboardingPageStage::picture()
{
    QPixmap picture(size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    render(&picture, {}, {}, DrawChildren);
    return picture;
}

void OnboardingPageStage::moveIn(QPixmap leaving)
{
    m_leaving = std::move(leaving);
    m_opacity = new QGraphicsOpacityEffect(m_page);
    m_page->setGraphicsEffect(m_opacity);
    m_motion = std::make_unique<QObject>();
    Motion::run(
        *m_motion, onboardingMotion::stepChange, Motion::Kind::Movement, Motion::Curve::EaseInOut,
        [this](qreal progress) { setProgress(progress); });
}

QPoint OnboardingPageStage::offset(qreal way) const
{
    const int distance = qRound(way * width());
    return {layoutDirection() == Qt::RightToLeft ? -distance : distance, 0};
}

void OnboardingPageStage::setProgress(qreal progress)
{
    m_progress = progress;
    m_page->move(offset(1 - progress));
    if (progress < 1) {
        m_opacity->setOpacity(progress);
    } else {
        m_page->setGraphicsEffect(nullptr);
        m_opacity = nullptr;
        m_leaving = QPixmap();
    }
    update();
}

void OnboardingPageStage::paintEvent(QPaintEvent * /*event*/)
{
    if (!m_leaving.isNull()) {
        QPainter painter(this);
        painter.setOpacity(1 - m_progress);
        painter.drawPixmap(offset(-m_progress), m_leaving);
    }
}

void OnboardingPageStage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_page != nullptr) {
        m_page->resize(size());
    }
}
