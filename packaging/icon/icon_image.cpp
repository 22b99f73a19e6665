// icon_image SVG FOLDER SIZE...: draws the picture as FOLDER/SIZE.png, that many pixels wide and high.

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

namespace {

bool draw(QSvgRenderer& picture, int size, const QString& file) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.render(&painter);
    return painter.end() && image.save(file, "PNG");
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 4) {
        static_cast<void>(std::fputs("Usage: icon_image SVG FOLDER SIZE...\n", stderr));
        return EXIT_FAILURE;
    }
    QSvgRenderer picture(QString::fromLocal8Bit(argv[1]));
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    for (int argument = 3; argument < argc; ++argument) {
        const QString size = QString::fromLocal8Bit(argv[argument]);
        const QString file = folder.filePath(size + QStringLiteral(".png"));
        if (!picture.isValid() || size.toInt() <= 0 || !draw(picture, size.toInt(), file)) {
            static_cast<void>(std::fprintf(stderr, "icon_image: %s cannot be drawn\n", qPrintable(file)));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
