#pragma once

#include <QColor>
#include <QQuickImageProvider>

namespace zentrill {

/// Draws the program's glyphs: "image://icon/<identifier>/<rrggbb or aarrggbb>". Each is one SVG drawing,
/// whose shape is filled with the colour asked for.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider();

    /// The glyph of `identifier` in `tint`; a null image when there is none.
    [[nodiscard]] static QImage icon(const QString& identifier, const QColor& tint, QSize size);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace zentrill
