#include "Platform/Desktop/WindowLook.h"

#include "Platform/Bundle.h"

#include <QApplication>
#include <QFile>
#include <QFontInfo>
#include <QRegularExpression>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
struct Row {
    const char16_t *name;
    QRgb light, dark;
};

// Texts keep a contrast of 4.5 to 1 with every ground that they stand on, lines of controls and fills 3 to 1.
constexpr Row Colours[] = {
    {u"ground", 0xFFFFFFFF, 0xFF2A2D32},        {u"footer", 0xFFF5F6F8, 0xFF24272B},
    {u"line", 0xFFE2E5EA, 0xFF3B3F46},          {u"text", 0xFF1F2328, 0xFFEEF0F3},
    {u"secondary", 0xFF5A6370, 0xFFA9B1BC},     {u"disabled", 0xFF98A0AB, 0xFF727A85},
    {u"button", 0xFFFFFFFF, 0xFF3A3E45},        {u"buttonHover", 0xFFF1F4F8, 0xFF444952},
    {u"buttonPressed", 0xFFE4E8EE, 0xFF30343A}, {u"buttonLine", 0xFFC9CED6, 0xFF535963},
    {u"accent", 0xFF1F6FD0, 0xFF5BA3F5},        {u"accentHover", 0xFF1A62BA, 0xFF77B4F8},
    {u"accentPressed", 0xFF16529C, 0xFF4A93E8}, {u"onAccent", 0xFFFFFFFF, 0xFF0C1A2C},
    {u"track", 0xFFE3E7ED, 0xFF40454D},         {u"paused", 0xFFC9842A, 0xFFD9A24E},
    {u"knob", 0xFFFFFFFF, 0xFFEEF0F3},          {u"knobLine", 0xFF7F8997, 0xFFEEF0F3},
    {u"selection", 0xFFDCEAFB, 0xFF28405E},     {u"success", 0xFF176E39, 0xFF6FD39A},
    {u"failure", 0xFFB52A24, 0xFFFF9D94},       {u"warning", 0xFF8A5209, 0xFFF0B455},
    {u"progress", 0xFF1A62BA, 0xFF77B4F8},      {u"tip", 0xFF2B2F36, 0xFF454A53},
    {u"tipText", 0xFFF3F5F8, 0xFFF3F5F8},
};

constexpr double TitleSize = 1.15; // of the desktop's font
constexpr double FigureSize = 2.1;
constexpr double CaptionSize = 0.92;

std::optional<double> scale(QStringView name)
{
    if (name == u"titleSize")
        return TitleSize;
    if (name == u"figureSize")
        return FigureSize;
    if (name == u"captionSize")
        return CaptionSize;
    return std::nullopt;
}

/// As a sheet names a file.
QString imageAddress(const QString &name, bool dark)
{
    const QString file = u"images/%1%2.svg"_s.arg(name, dark ? u"_alt"_s : QString());
    return u"url(\"%1\")"_s.arg(Bundle::main().resource(file));
}

QString sheetFile()
{
    QFile file(Bundle::main().resource(u"windows.qss"_s));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

QColor WindowLook::colour(QStringView name, bool dark)
{
    for (const Row &row : Colours) {
        if (name == row.name)
            return QColor(dark ? row.dark : row.light);
    }
    return {};
}

QPalette WindowLook::palette(bool dark)
{
    const auto of = [dark](const char16_t *name) { return colour(name, dark); };
    QPalette palette(of(u"button"), of(u"ground"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, of(u"text"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, of(u"disabled"));
    palette.setColor(QPalette::PlaceholderText, of(u"secondary"));
    palette.setColor(QPalette::Mid, of(u"buttonLine"));
    palette.setColor(QPalette::Highlight, of(u"accent"));
    palette.setColor(QPalette::HighlightedText, of(u"onAccent"));
    palette.setColor(QPalette::Link, of(u"accent"));
    palette.setColor(QPalette::ToolTipBase, of(u"tip"));
    palette.setColor(QPalette::ToolTipText, of(u"tipText"));
    return palette;
}

QString WindowLook::filledIn(const QString &sheet, bool dark, double fontPoints)
{
    static const QRegularExpression place(u"@image\\((\\w+)\\)|@([A-Za-z]+)"_s);
    QString filled;
    qsizetype done = 0;
    for (auto found = place.globalMatch(sheet); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        filled += QStringView(sheet).sliced(done, match.capturedStart() - done);
        done = match.capturedEnd();
        const QStringView name = match.capturedView(2);
        if (match.hasCaptured(1))
            filled += imageAddress(match.captured(1), dark);
        else if (const QColor known = colour(name, dark); known.isValid())
            filled += known.name();
        else if (const auto factor = scale(name))
            filled += QString::number(fontPoints * *factor, 'f', 1) + u"pt"_s;
        else
            filled += match.captured();
    }
    filled += QStringView(sheet).sliced(done);
    return filled;
}

void WindowLook::apply(QWidget &window, bool dark)
{
    const QFontInfo font(QApplication::font());
    window.setStyleSheet(filledIn(sheetFile(), dark, font.pointSizeF()));
    // After the sheet, which gives a window back the palette that it had before the last sheet.
    window.setPalette(palette(dark));
}
