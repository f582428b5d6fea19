#pragma once

#include "Sheet.h"

#include <QLineEdit>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <memory>

/// Notes what reaches it.
class Content final : public QWidget {
public:
    using QWidget::QWidget;

    [[nodiscard]] QSize sizeHint() const override { return {280, 355}; }

    int reached = 0;

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::ContextMenu:
            ++reached;
            break;
        default:
            break;
        }
        return QWidget::event(event);
    }
};

inline SheetDescription deletion(QStringList &answers)
{
    return {
        .symbol = QStringLiteral("trash"),
        .tone = SheetDescription::Tone::Red,
        .title = QStringLiteral("Delete Selected Screenshots"),
        .message = QStringLiteral("Are you sure you want to move 3 screenshots to the Trash?"),
        .buttons = {
            {.kind = PushButton::Kind::Bordered,
             .text = QStringLiteral("Cancel"),
             .action = [&answers] { answers << QStringLiteral("cancel"); },
             .role = SheetButton::Role::Cancel},
            {.kind = PushButton::Kind::Destructive,
             .text = QStringLiteral("Delete All"),
             .action = [&answers] { answers << QStringLiteral("delete"); }},
        }};
}

inline SheetDescription copied(const QString &message)
{
    return {
        .symbol = QStringLiteral("doc.on.clipboard"),
        .title = QStringLiteral("Screenshot Copied"),
        .message = message,
        .buttons = {{.kind = PushButton::Kind::Prominent, .text = QStringLiteral("OK")}}};
}

inline PushButton *buttonNamed(const Sheet &sheet, const QString &text)
{
    const QList<PushButton *> buttons = sheet.findChildren<PushButton *>();
    const auto found =
        std::ranges::find_if(buttons, [&text](const PushButton *button) { return button->text() == text; });
    return found == buttons.end() ? nullptr : *found;
}

/// What the tests of a sheet share: a window that it covers, and sheets as the program shows them.
class SheetFixture : public QObject {
protected:
    void makeWindow()
    {
        m_answers.clear();
        m_window = std::make_unique<QWidget>();
        m_window->resize(1200, 900);
        m_content = new Content(m_window.get());
        m_content->setGeometry(m_window->rect());
        m_content->setFocusPolicy(Qt::StrongFocus);
        m_field = new QLineEdit(m_content);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_field->setFocus();
        QTRY_VERIFY(m_field->hasFocus());
    }

    [[nodiscard]] QPointer<Sheet> present(const SheetDescription &description)
    {
        return Sheet::present(*m_content, description);
    }

    std::unique_ptr<QWidget> m_window;
    Content *m_content = nullptr;
    QLineEdit *m_field = nullptr;
    QStringList m_answers;
};
