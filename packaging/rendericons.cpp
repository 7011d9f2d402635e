// Renders the program's icon into PNG files for desktops that read no SVG:
//     rendericons ICON.svg FOLDER NAME    writes FOLDER/SIDExSIDE/apps/NAME.png

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fputs("rendericons ICON.svg FOLDER NAME\n", stderr);
        return 2;
    }
    QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        const QDir folder(
            QStringLiteral("%1/%2x%2/apps").arg(QString::fromLocal8Bit(argv[2])).arg(side));
        const QString path =
            folder.filePath(QString::fromLocal8Bit(argv[3]) + QStringLiteral(".png"));
        if (!renderer.isValid() || !folder.mkpath(QStringLiteral(".")) || !image.save(path)) {
            std::fprintf(stderr, "%s cannot be made\n", path.toLocal8Bit().constData());
            return 1;
        }
    }
    return 0;
}
