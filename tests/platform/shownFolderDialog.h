#pragma once

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// Finds the dialog of the toolkit's that a panel shows, and types into it.

/// The dialog of the toolkit's that is shown; null while there is none.
inline QFileDialog *shownDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

inline QLineEdit &pathField(const QFileDialog &dialog)
{
    return *dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}

inline QPushButton &acceptButton(const QFileDialog &dialog)
{
    return *dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open);
}

inline void type(QFileDialog &dialog, const QString &path)
{
    QLineEdit &field = pathField(dialog);
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, path);
    field.setModified(true);
}
