// Draws an SVG in every size that a desktop asks of a program's icon, into one ICNS file.
//
//   make_app_icon DRAWING.svg ICON.icns
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

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "make_app_icon DRAWING.svg ICON.icns\n");
        return 2;
    }
    QSvgRenderer drawing;
    if (!drawing.load(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "%s cannot be drawn\n", argv[1]);
        return 1;
    }
    QByteArray content;
    for (const auto& [type, side] : kEntries) {
        const QByteArray picture = png(drawing, side);
        if (picture.isEmpty()) return 1;
        content += header(type, picture.size()) + picture;
    }
    QFile icon(QString::fromLocal8Bit(argv[2]));
    const QByteArray whole = header("icns", content.size()) + content;
    if (!icon.open(QIODevice::WriteOnly) || icon.write(whole) != whole.size() || !icon.flush()) {
        std::fprintf(stderr, "%s: %s\n", argv[2], qPrintable(icon.errorString()));
        return 1;
    }
    return 0;
}
