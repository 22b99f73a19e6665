#include "ui/Typography.h"

#include <QFontDatabase>

namespace zentrill {

Typography::Typography(QObject* parent)
    : QObject(parent),
      families_{QStringLiteral("Inter"), QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()},
      monospacedFamily_(QFontDatabase::systemFont(QFontDatabase::FixedFont).family()) {}

QFont Typography::overline() const {
    QFont font = text(10, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
    return font;
}

QFont Typography::text(int pixelSize, QFont::Weight weight) const {
    QFont font(families_);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QFont Typography::monospaced(int pixelSize, QFont::Weight weight) const {
    QFont font(monospacedFamily_);
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace zentrill
