#pragma once

#include <QSize>
#include <QString>

/// What tells one of the program's windows from the others, beside its contents. Sizes in points.
struct WindowDescription {
    enum class Controls {
        TitleOnly,
        CloseAndMinimize,
        CloseMinimizeAndResize,
    };

    QString title;
    QSize contentSize;
    Controls controls = Controls::CloseAndMinimize;
    /// Empty where the window can't be resized.
    QSize minimumSize;
};
