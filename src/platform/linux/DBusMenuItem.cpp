#include "DBusMenuItem.h"

#include <QAction>
#include <QActionGroup>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>

#include <png.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// The side of a menu icon in logical pixels, as GTK's and Plasma's menus have it.
constexpr int menuIconSide = 16;

QString keysymName(Qt::Key key)
{
    // Those that the toolkit calls otherwise.
    static constexpr auto names = std::to_array<std::pair<Qt::Key, QLatin1String>>({
        {Qt::Key_Space, QLatin1String("space")},
        {Qt::Key_Exclam, QLatin1String("exclam")},
        {Qt::Key_QuoteDbl, QLatin1String("quotedbl")},
        {Qt::Key_NumberSign, QLatin1String("numbersign")},
        {Qt::Key_Dollar, QLatin1String("dollar")},
        {Qt::Key_Percent, QLatin1String("percent")},
        {Qt::Key_Ampersand, QLatin1String("ampersand")},
        {Qt::Key_Apostrophe, QLatin1String("apostrophe")},
        {Qt::Key_ParenLeft, QLatin1String("parenleft")},
        {Qt::Key_ParenRight, QLatin1String("parenright")},
        {Qt::Key_Asterisk, QLatin1String("asterisk")},
        {Qt::Key_Plus, QLatin1String("plus")},
        {Qt::Key_Comma, QLatin1String("comma")},
        {Qt::Key_Minus, QLatin1String("minus")},
        {Qt::Key_Period, QLatin1String("period")},
        {Qt::Key_Slash, QLatin1String("slash")},
        {Qt::Key_Colon, QLatin1String("colon")},
        {Qt::Key_Semicolon, QLatin1String("semicolon")},
        {Qt::Key_Less, QLatin1String("less")},
        {Qt::Key_Equal, QLatin1String("equal")},
        {Qt::Key_Greater, QLatin1String("greater")},
        {Qt::Key_Question, QLatin1String("question")},
        {Qt::Key_At, QLatin1String("at")},
        {Qt::Key_BracketLeft, QLatin1String("bracketleft")},
        {Qt::Key_Backslash, QLatin1String("backslash")},
        {Qt::Key_BracketRight, QLatin1String("bracketright")},
        {Qt::Key_Escape, QLatin1String("Escape")},
        {Qt::Key_Backspace, QLatin1String("BackSpace")},
        {Qt::Key_Enter, QLatin1String("KP_Enter")},
        {Qt::Key_Insert, QLatin1String("Insert")},
        {Qt::Key_Delete, QLatin1String("Delete")},
        {Qt::Key_PageUp, QLatin1String("Page_Up")},
        {Qt::Key_PageDown, QLatin1String("Page_Down")},
    });
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return {QChar(u'a' + (key - Qt::Key_A))};
    }
    const auto *const found = std::ranges::find(names, key, &std::pair<Qt::Key, QLatin1String>::first);
    return found == names.end() ? QKeySequence(key).toString(QKeySequence::PortableText)
                                : QString(found->second);
}

QByteArray iconBytes(const QIcon &icon)
{
    // A size in logical pixels: the pixmap is as fine as the finest screen.
    const QPixmap pixmap =
        icon.pixmap(QSize(menuIconSide, menuIconSide), qGuiApp->devicePixelRatio(), QIcon::Normal);
    // By libpng: the toolkit's writer loads the plugins of all image formats for good.
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_RGBA8888);
    png_image description{};
    description.version = PNG_IMAGE_VERSION;
    description.width = static_cast<png_uint_32>(image.width());
    description.height = static_cast<png_uint_32>(image.height());
    description.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(description);
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    const int written = png_image_write_to_memory(
        &description, bytes.data(), &size, 0, image.constBits(),
        static_cast<png_int_32>(image.bytesPerLine()), nullptr);
    bytes.truncate(written == 0 ? 0 : static_cast<qsizetype>(size));
    return bytes;
}

bool isOneOfSeveral(const QAction &action)
{
    const QActionGroup *group = action.actionGroup();
    return group != nullptr && group->isExclusive();
}

} // namespace

QString dbusMenuLabel(const QString &text)
{
    QString label;
    label.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'_') {
            label += QStringLiteral("__");
        } else if (text.at(i) != u'&') {
            label += text.at(i);
        } else if (i + 1 < text.size() && text.at(i + 1) == u'&') {
            label += u'&';
            ++i;
        } else if (i + 1 < text.size()) {
            label += u'_';
        }
    }
    return label;
}

QList<QStringList> dbusMenuShortcut(const QKeySequence &shortcut)
{
    QList<QStringList> chords;
    for (int i = 0; i < shortcut.count(); ++i) {
        const QKeyCombination combination = shortcut[static_cast<uint>(i)];
        const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
        QStringList chord;
        if (modifiers.testFlag(Qt::ControlModifier)) {
            chord.append(QStringLiteral("Control"));
        }
        if (modifiers.testFlag(Qt::AltModifier)) {
            chord.append(QStringLiteral("Alt"));
        }
        if (modifiers.testFlag(Qt::ShiftModifier)) {
            chord.append(QStringLiteral("Shift"));
        }
        if (modifiers.testFlag(Qt::MetaModifier)) {
            chord.append(QStringLiteral("Super"));
        }
        chord.append(keysymName(combination.key()));
        chords.append(chord);
    }
    return chords;
}

QVariantMap dbusMenuProperties(const QAction &action)
{
    QVariantMap properties;
    if (!action.isVisible()) {
        properties.insert(QStringLiteral("visible"), false);
    }
    if (action.isSeparator()) {
        properties.insert(QStringLiteral("type"), QStringLiteral("separator"));
        return properties;
    }
    properties.insert(QStringLiteral("label"), dbusMenuLabel(action.text()));
    if (!action.isEnabled()) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (action.isCheckable()) {
        properties.insert(
            QStringLiteral("toggle-type"),
            isOneOfSeveral(action) ? QStringLiteral("radio") : QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), action.isChecked() ? 1 : 0);
    }
    if (!action.shortcut().isEmpty()) {
        properties.insert(
            QStringLiteral("shortcut"), QVariant::fromValue(dbusMenuShortcut(action.shortcut())));
    }
    // Always the picture: the names of our drawings are in no icon theme.
    if (!action.icon().isNull() && action.isIconVisibleInMenu()) {
        properties.insert(QStringLiteral("icon-data"), iconBytes(action.icon()));
    }
    if (action.menu<QObject *>() != nullptr) {
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    }
    if (!action.whatsThis().isEmpty()) {
        properties.insert(QStringLiteral("accessible-desc"), action.whatsThis());
    }
    return properties;
}
