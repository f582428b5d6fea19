#pragma once

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

/// Keeps pictures of the widget, as it is on screen at this moment, light and dark, in the folder that
/// DESKBROOM_PICTURES names: for looking, not for asserting. Nothing happens where the variable isn't set.
inline void savePicture(QWidget &widget, const QString &name)
{
    const QString folder = qEnvironmentVariable("DESKBROOM_PICTURES");
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        return;
    }
    const auto save = [&](const QString &look) {
        widget.grab().save(folder + QLatin1Char('/') + name + look + QStringLiteral(".png"));
    };
    const QPalette palette = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0xEC, 0xED, 0xEF)));
    save(QStringLiteral("-light"));
    QApplication::setPalette(QPalette(QColor(0x22, 0x24, 0x27)));
    save(QStringLiteral("-dark"));
    QApplication::setPalette(palette);
}
