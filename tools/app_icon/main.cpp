// Draws an SVG in every size that a desktop asks of a program's icon: into one ICNS file, or as SIDE.png for
// each side in pixels that is named.
//
//   make_app_icon DRAWING.svg ICON.icns
//   make_app_icon DRAWING.svg FOLDER SIDE...
#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>
#include <array>
#include <cstdio>

namespace {

struct Entry {
    const char* type;
    int side;
};

/// Types whose content is a PNG file; the second half are the double-resolution twins.
constexpr std::array kEntries = {
    Entry{"icp4", 16}, Entry{"icp5", 32}, Entry{"ic07", 128}, Entry{"ic08", 256}, Entry{"ic09", 512},
    Entry{"ic11", 32}, Entry{"ic12", 64}, Entry{"ic13", 256}, Entry{"ic14", 512}, Entry{"ic10", 1024},
};
constexpr int kHeaderSize = 8;

QByteArray header(const char* type, qsizetype contentSize) {
    QByteArray bytes(type, 4);
    const auto length = qToBigEndian(static_cast<quint32>(contentSize + kHeaderSize));
    bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
    return bytes;
}

QByteArray png(QSvgRenderer& drawing, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? bytes : QByteArray();
}

bool write(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()) return true;
    std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    return false;
}

bool writeIcns(QSvgRenderer& drawing, const QString& path) {
    QByteArray content;
    for (const auto& [type, side] : kEntries) {
        const QByteArray picture = png(drawing, side);
        if (picture.isEmpty()) return false;
        content += header(type, picture.size()) + picture;
    }
    return write(path, header("icns", content.size()) + content);
}

bool writePng(QSvgRenderer& drawing, const QString& folder, int side) {
    constexpr int kLargest = 4096;
    if (side < 1 || side > kLargest) return false;
    const QByteArray picture = png(drawing, side);
    return !picture.isEmpty() && write(QStringLiteral("%1/%2.png").arg(folder).arg(side), picture);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr,
                     "make_app_icon DRAWING.svg ICON.icns\nmake_app_icon DRAWING.svg FOLDER SIDE...\n");
        return 2;
    }
    QSvgRenderer drawing;
    if (!drawing.load(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "%s cannot be drawn\n", argv[1]);
        return 1;
    }
    const QString target = QString::fromLocal8Bit(argv[2]);
    if (argc == 3) return writeIcns(drawing, target) ? 0 : 1;
    for (int i = 3; i < argc; ++i)
        if (!writePng(drawing, target, QByteArray(argv[i]).toInt())) return 1;
    return 0;
}
