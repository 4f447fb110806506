// SPDX-License-Identifier: MIT
#include "ui/Theme.h"

#include "platform/Palette.h"

#include <algorithm>
#include <cmath>

namespace glimmerpane
{

namespace
{

constexpr double readableContrast = 4.5;
constexpr double seenContrast = 3;
constexpr QRgb blue = 0xff1a6fd4;
constexpr QRgb red = 0xffd13438;
constexpr QRgb stockHighlight = 0xff308cc6; // Qt's default when no colour was chosen

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/** The first readable colour between `color` and `strongest`. */
QColor readable(const QColor &color, const QColor &strongest, const QColor &background,
                double least = readableContrast)
{
    QColor result = color;
    for (double amount = 0; amount <= 1 && contrast(result, background) < least; amount += 0.05) {
        result = mixed(color, strongest, amount);
    }
    return result;
}

QColor labelOn(const QColor &background)
{
    return contrast(Qt::white, background) >= readableContrast ? QColor(Qt::white)
                                                               : QColor(Qt::black);
}

QColor accentOf(const QPalette &palette)
{
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    return highlight.rgb() == stockHighlight ? QColor(blue) : highlight;
}

QPalette paletteOf(const QColor &window, const QColor &base, const QColor &text,
                   const QColor &button)
{
    QPalette palette(text, button, mixed(button, Qt::white, 0.2), mixed(button, Qt::black, 0.4),
                     mixed(button, Qt::black, 0.2), text, text, base, window);
    const QColor disabled = mixed(text, window, 0.55);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    palette.setColor(QPalette::Highlight, QColor(blue));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::AlternateBase, mixed(base, window, 0.5));
    palette.setColor(QPalette::PlaceholderText, mixed(text, base, 0.4));
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Link, readable(QColor(blue), text, window));
    return palette;
}

} // namespace

QColor mixed(const QColor &from, const QColor &to, double amount)
{
    const auto between = [amount](int a, int b) {
        return std::clamp(static_cast<int>(std::lround(a + (b - a) * amount)), 0, 255);
    };
    return {between(from.red(), to.red()), between(from.green(), to.green()),
            between(from.blue(), to.blue())};
}

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette darkPalette()
{
    return paletteOf(QColor(0x26, 0x27, 0x2b), QColor(0x1b, 0x1c, 0x1f), QColor(0xee, 0xee, 0xf0),
                     QColor(0x3a, 0x3c, 0x42));
}

QPalette lightPalette()
{
    return paletteOf(QColor(0xf3, 0xf3, 0xf4), Qt::white, QColor(0x1c, 0x1c, 0x1e),
                     QColor(0xef, 0xef, 0xef));
}

Theme themeFor(const QPalette &palette)
{
    Theme theme;
    theme.isDark = isDark(palette);
    theme.window = palette.color(QPalette::Active, QPalette::Window);
    theme.text = palette.color(QPalette::Active, QPalette::WindowText);
    theme.secondaryText = readable(mixed(theme.text, theme.window, 0.38), theme.text, theme.window);
    theme.windowBorder = mixed(theme.window, theme.text, theme.isDark ? 0.24 : 0.32);
    theme.divider = mixed(theme.window, theme.text, 0.14);
    theme.control = mixed(theme.window, Qt::white, theme.isDark ? 0.1 : 0.75);
    theme.controlBorder = mixed(theme.window, theme.text, theme.isDark ? 0.22 : 0.24);
    theme.disabledControl = mixed(theme.window, theme.text, theme.isDark ? 0.05 : 0.06);
    theme.disabledText = mixed(theme.window, theme.text, 0.42);
    theme.field = palette.color(QPalette::Active, QPalette::Base);
    theme.fieldBorder = mixed(theme.window, theme.text, theme.isDark ? 0.26 : 0.3);
    theme.accent = accentOf(palette);
    theme.onAccent = labelOn(theme.accent);
    const QColor ring = theme.isDark ? mixed(theme.accent, Qt::white, 0.45) : theme.accent;
    theme.focusRing = readable(ring, theme.text, theme.window, seenContrast);
    theme.danger = QColor(red);
    theme.onDanger = Qt::white;
    return theme;
}

double borderWidth(double scale)
{
    return std::max(1.0, std::floor(scale));
}

void setSelectionColors(QPalette &palette, const Theme &theme)
{
    palette.setColor(QPalette::Highlight, theme.accent);
    palette.setColor(QPalette::HighlightedText, theme.onAccent);
}

} // namespace glimmerpane
