#include "Popover.h"

#include "Appearance.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainterPath>
#include <QTest>
#include <QWidget>

namespace {

constexpr QMargins shadow(8, 6, 8, 12);
constexpr QSize arrow(22, 10);

/// A plain rectangle with a small square in the place of an arrow.
class PlainAppearance final : public PopoverAppearance {
public:
    [[nodiscard]] QMargins shadowMargins() const override { return shadow; }

    [[nodiscard]] QSize arrowSize() const override { return arrow; }

    [[nodiscard]] QPainterPath outline(const PopoverGeometry &geometry) const override
    {
        QPainterPath path;
        path.addRect(geometry.body);
        path.addRect(geometry.arrowTip - 1, geometry.body.top() - 2, 2, 2);
        return path;
    }

    void paint(QPainter & /*painter*/, const PopoverGeometry & /*geometry*/, Shadow /*shadow*/) const override
    {
    }
};

class View final : public QWidget {
public:
    [[nodiscard]] QSize sizeHint() const override { return m_size; }

    void become(QSize size)
    {
        m_size = size;
        updateGeometry();
    }

private:
    QSize m_size{200, 120};
};

const PopoverAnchor anchor{
    .rectangle = {300, 0, 24, 24},
    .arrow = PopoverAnchor::Arrow::PointsAtRectangle,
    .screen = {0, 0, 800, 800},
    .availableArea = {0, 24, 800, 776},
};

} // namespace

class PopoverTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QPainterPath outline() const { return Popover::outlineOf(*m_popover->window()); }

    std::unique_ptr<Popover> m_popover;
    /// The popover's while it is shown.
    View *m_view = nullptr;

private Q_SLOTS:

    void init()
    {
        m_popover = std::make_unique<Popover>(
            Popover::Behavior::ApplicationDefined, std::make_unique<PlainAppearance>());
        auto view = std::make_unique<View>();
        m_view = view.get();
        m_popover->show(std::move(view), anchor);
    }

    void cleanup() { m_popover.reset(); }

    void theOutlineIsBodyAndArrowInTheWindow()
    {
        const QRectF body = m_view->geometry();
        QCOMPARE(body.size(), QSizeF(200, 120));
        QCOMPARE(outline().boundingRect(), body.adjusted(0, -2, 0, 0));
        QVERIFY(QRectF(m_popover->window()->rect()).contains(outline().boundingRect()));
    }

    void theOutlineFollowsTheView()
    {
        m_view->become({260, 300});
        QTRY_COMPARE(m_view->size(), QSize(260, 300));
        QCOMPARE(outline().boundingRect(), QRectF(m_view->geometry()).adjusted(0, -2, 0, 0));
    }

    void theViewFindsItsNewOutlineWhenItsSizeChanges()
    {
        class Watcher final : public QObject {
        public:
            bool eventFilter(QObject *watched, QEvent *event) override
            {
                if (event->type() == QEvent::Resize) {
                    const auto &view = *qobject_cast<QWidget *>(watched);
                    seen = Popover::outlineOf(*view.window()).boundingRect().size();
                }
                return false;
            }

            QSizeF seen;
        } watcher;

        m_view->installEventFilter(&watcher);
        m_view->become({260, 300});
        QTRY_COMPARE(watcher.seen, QSizeF(260, 302));
    }

    void itIsPaintedAsAWholeInAnotherLook()
    {
        class Watcher final : public QObject {
        public:
            bool eventFilter(QObject * /*watched*/, QEvent *event) override
            {
                if (event->type() == QEvent::Paint) {
                    painted += static_cast<QPaintEvent *>(event)->region();
                }
                return false;
            }

            QRegion painted;
        } watcher;

        QWidget &window = *m_view->window();
        window.installEventFilter(&watcher);
        QTRY_COMPARE(watcher.painted, QRegion(window.rect()));
        watcher.painted = {};
        // What lies on the window paints itself.
        QObject::connect(&Appearance::shared(), &Appearance::changed, m_view, qOverload<>(&QWidget::update));
        Q_EMIT Appearance::shared().changed();
        QTRY_VERIFY(!watcher.painted.isEmpty());
        QCOMPARE(watcher.painted, QRegion(window.rect()));
    }

    void otherWindowsHaveNone()
    {
        const QWidget window;
        QVERIFY(Popover::outlineOf(window).isEmpty());
        QVERIFY(Popover::outlineOf(*m_view).isEmpty());
    }
};

QTEST_MAIN(PopoverTest)
#include "PopoverTest.moc"
