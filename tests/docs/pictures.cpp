#include "tests/docs/pictures.h"

#include <QRect>

#include <cstdlib>

namespace {

/// Mean over pixels and colours.
double meanDifference(const QImage &a, const QImage &b, const QRect &place)
{
    qint64 sum = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
                   std::abs(qBlue(one) - qBlue(other));
        }
    }
    return static_cast<double>(sum) / (3.0 * place.width() * place.height());
}

} // namespace

QString Pictures::difference(const QImage &made, const QImage &kept)
{
    if (made.size() != kept.size())
        return QStringLiteral("%1 x %2 instead of %3 x %4")
            .arg(made.width())
            .arg(made.height())
            .arg(kept.width())
            .arg(kept.height());
    const QImage one = made.convertToFormat(QImage::Format_RGB32);
    const QImage other = kept.convertToFormat(QImage::Format_RGB32);
    double most = tolerance;
    QString worst;
    for (int y = 0; y < one.height(); y += tile) {
        for (int x = 0; x < one.width(); x += tile) {
            const QRect place = QRect(x, y, tile, tile).intersected(one.rect());
            const double difference = meanDifference(one, other, place);
            if (difference <= most)
                continue;
            most = difference;
            worst = QStringLiteral("by %1 around (%2, %3)").arg(most).arg(x).arg(y);
        }
    }
    return worst;
}
