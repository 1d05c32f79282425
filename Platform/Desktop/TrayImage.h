#pragma once

#include <QIcon>
#include <QString>

/// The image of that file as an icon that is drawn from its vectors at each size that a panel asks for; a null
/// icon when the file is no image. Rendered sizes are kept, since an animation shows the same few over and
/// over.
[[nodiscard]] QIcon trayImage(const QString &path);
