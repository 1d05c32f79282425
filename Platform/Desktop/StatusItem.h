#pragma once

#include <QString>

/// The product's place in the panel: one image, one tool tip, one menu. Main thread only.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Puts the item into the panel: at once where there is one, else when one comes.
    virtual void show() = 0;

    /// Shows the image of that name from the bundle's `images` folder (SVG, else PNG), untinted, on a ground of
    /// 20 by 16 points. A name without an image leaves the one that is shown.
    virtual void setImage(const QString &name) = 0;
    /// The name of the image that is shown; empty before the first.
    [[nodiscard]] virtual QString imageName() const = 0;

    /// The text that the panel shows when the pointer rests on the item; plain text, lines parted by line
    /// feeds. What has no place in such a text is left out, and a long one is cut.
    virtual void setToolTip(const QString &text) = 0;
    /// The text as it was set.
    [[nodiscard]] virtual QString toolTip() const = 0;
};
