#include "Platform/Desktop/MessagePalette.h"

QPalette messagePalette(bool dark)
{
    struct Colours {
        QRgb ground, text, button, line, accent;
    };
    static constexpr Colours Light{0xFFFFFFFF, 0xFF1F2328, 0xFFF1F3F5, 0xFFC9CED6, 0xFF1F6FD0};
    static constexpr Colours Dark{0xFF2A2D32, 0xFFEEF0F3, 0xFF3A3E45, 0xFF50555E, 0xFF4C94EA};
    const Colours &colours = dark ? Dark : Light;

    QPalette palette(QColor(colours.button), QColor(colours.ground));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(colours.text));
    palette.setColor(QPalette::Mid, QColor(colours.line));
    palette.setColor(QPalette::Highlight, QColor(colours.accent));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}
