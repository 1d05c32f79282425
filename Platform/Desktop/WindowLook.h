#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

class QWidget;

/// How the product's windows look, light or dark: one table of colours, and over it one palette and one style
/// sheet, the bundle's `windows.qss`, for all of them.
///
/// What a form says to the sheet by dynamic properties: a label's `textRole` is "title", "figure", "value",
/// "secondary" or "caption"; a push button with `accent` is the one that is suggested; a frame's `surface` is
/// "footer" for the strip with the controls of a window.
namespace WindowLook
{
/// Dresses a top-level window and all that is in it. Called again when the desktop has become light or dark.
void apply(QWidget &window, bool dark);

/// For windows that paint themselves. Mid is the line around a window.
[[nodiscard]] QPalette palette(bool dark);

/// A colour of the table by its name in the style sheet, such as "accent"; invalid for an unknown one.
[[nodiscard]] QColor colour(QStringView name, bool dark);

/// The sheet with its places filled in: `@name` by a colour of the table, `@titleSize`, `@figureSize` and
/// `@captionSize` by font sizes in proportion to `fontPoints`, `@image(name)` by an image of the bundle in its
/// form for that ground. An unknown place stays as it is.
[[nodiscard]] QString filledIn(const QString &sheet, bool dark, double fontPoints);
} // namespace WindowLook
