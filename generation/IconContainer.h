#pragma once

#include "generation/IconRenderer.h"
#include "platform/Result.h"

/// The Mac's icon container: seven renders of one picture in one icns file.
namespace IconContainer {

struct Written {
    QSize largestSize; ///< of the pictures that the file holds, in pixels
    qint64 bytes = 0;
};

/// Renders `image` at 16 to 1024 points and writes what the container has elements for to the file at `path`,
/// whole or not at all.
Result<Written> write(const Image& image, const IconRenderer& renderer, const QString& path);

} // namespace IconContainer
