#pragma once

#include <QSet>
#include <QString>

class ScreenshotGalleryViewModel;

/// How a selection grows from one screenshot to another: everything between the one that was chosen alone
/// last, and the one that it is extended to. Extending it again replaces that stretch and leaves alone what
/// was selected before.
class GallerySelection final {
public:
    explicit GallerySelection(ScreenshotGalleryViewModel &model) : m_model(model) {}

    /// The next stretch begins here.
    void setAnchor(const QString &id);

    /// No anchor any more.
    void forget() { m_anchorID.clear(); }

    /// Selects from the anchor to the screenshot at `index`; from `fallbackIndex` where there is no anchor.
    void extendTo(int index, int fallbackIndex);

private:
    [[nodiscard]] int anchorIndex() const;

    ScreenshotGalleryViewModel &m_model;
    QString m_anchorID;
    /// What was selected apart from the stretch, and all that it made of the selection.
    QSet<QString> m_before;
    QSet<QString> m_extended;
};
