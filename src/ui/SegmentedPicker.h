#pragma once

#include <QWidget>

#include <memory>
#include <vector>

class Segment;

/// A choice of one of a few options that lie beside each other in a well. The chosen one stands on a segment
/// that slides along.
///
/// One tab stop: arrow keys, Home and End choose. The widget is `outset` larger on each side than the well,
/// because the focus ring lies outside of it. A group of radio buttons for assistive programs; give it an
/// accessible name.
class SegmentedPicker final : public QWidget {
    Q_OBJECT

public:
    enum class Size {
        /// 28 points high.
        Regular,
        /// 26 points high.
        Small,
    };

    static constexpr int outset = 4;

    /// The first option is chosen. A picker without options is a programming error.
    explicit SegmentedPicker(const QStringList &options, QWidget *parent = nullptr);
    ~SegmentedPicker() override;
    Q_DISABLE_COPY_MOVE(SegmentedPicker)

    [[nodiscard]] int currentIndex() const { return m_currentIndex; }

    /// Nothing is emitted. An index outside the options is a programming error.
    void setCurrentIndex(int index);

    void setSize(Size size);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// By the user, and another one than before.
    void currentIndexChosen(int index);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QRect well() const { return rect().adjusted(outset, outset, -outset, -outset); }

    [[nodiscard]] int count() const { return static_cast<int>(m_segments.size()); }

    [[nodiscard]] QRectF currentSegment() const;
    void choose(int index, Qt::FocusReason reason);
    void slideFrom(const QRectF &start);
    void placeSegments();

    std::vector<Segment *> m_segments;
    int m_currentIndex = 0;
    Size m_size = Size::Regular;
    /// Where the chosen segment is drawn: on its way after a choice, else where its option is.
    QRectF m_drawnSegment;
    /// Owns the motion; the next choice ends it.
    std::unique_ptr<QObject> m_motion;
};
