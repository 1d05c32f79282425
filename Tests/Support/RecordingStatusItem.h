#pragma once

#include "Platform/Desktop/StatusItem.h"

#include <QStringList>

#include <optional>

/// A status item without a panel: it remembers what it was told to show.
class RecordingStatusItem : public StatusItem
{
public:
    void show() override
    {
        imageWhenShown = imageName();
        toolTipsWhenShown = toolTips.size();
    }
    void setImage(const QString &name) override { images.append(name); }
    [[nodiscard]] QString imageName() const override { return images.isEmpty() ? QString() : images.last(); }
    void setToolTip(const QString &text) override { toolTips.append(text); }
    [[nodiscard]] QString toolTip() const override { return toolTips.isEmpty() ? QString() : toolTips.last(); }

    std::optional<QString> imageWhenShown; ///< none before it was shown
    qsizetype toolTipsWhenShown = -1;
    QStringList images;
    QStringList toolTips;
};
