#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

namespace zentrill {

/// The program's glyph of `identifier`, an SVG drawing whose shape is filled with `tint`, in `size` pixels; a
/// null image when there is none.
[[nodiscard]] QImage drawIcon(const QString& identifier, const QColor& tint, QSize size);

} // namespace zentrill
