#pragma once

#include "GalleryHome.h"
#include "PushButton.h"
#include "ScreenshotGalleryView.h"
#include "Sheet.h"

#include <QTest>

#include <memory>

/// The gallery as its host shows it, once it has listed.
[[nodiscard]] inline std::unique_ptr<ScreenshotGalleryView>
shown(const GalleryConfiguration &configuration, QSize size = {1200, 900})
{
    auto view = std::make_unique<ScreenshotGalleryView>(configuration);
    view->resize(configuration.mode == GalleryMode::Embedded ? view->sizeHint() : size);
    view->show();
    [&view] { QTRY_VERIFY_WITH_TIMEOUT(!view->viewModel().isLoading(), patience); }();
    QCoreApplication::sendPostedEvents();
    return view;
}

/// The one to be seen that has this text.
[[nodiscard]] inline PushButton *button(const QWidget &view, const QString &text)
{
    for (PushButton *const candidate : view.findChildren<PushButton *>()) {
        if (candidate->isVisible() && candidate->text() == text) {
            return candidate;
        }
    }
    return nullptr;
}

/// Presses the button that has this text now.
inline void press(const QWidget &view, const QString &text)
{
    QTRY_VERIFY_WITH_TIMEOUT(button(view, text) != nullptr, patience);
    button(view, text)->click();
}

/// None while the gallery asks or says nothing.
[[nodiscard]] inline Sheet *sheet(const QWidget &view)
{
    return view.window()->findChild<Sheet *>();
}
