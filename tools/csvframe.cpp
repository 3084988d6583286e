#include "tools/csvframe.h"

#include "device/protocol/frameformat.h"

#include <QFile>
#include <QList>

#include <cmath>

using FrameFormat::side;

QString CsvFrame::read(const QString &path, const std::function<void(double)> &take)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return path + QStringLiteral(" is missing: ") + file.errorString();
    int lines = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QList<QByteArray> values = line.chopped(line.endsWith('\n') ? 1 : 0).split(',');
        ++lines;
        if (!line.endsWith('\n') || values.size() != side)
            return path +
                   QStringLiteral(" is incomplete: line %1 holds %2 values").arg(lines).arg(values.size());
        for (const QByteArray &value : values) {
            bool ok = false;
            const double number = value.toDouble(&ok);
            if (!ok || !std::isfinite(number))
                return path + QStringLiteral(" holds no number in line %1").arg(lines);
            take(number);
        }
    }
    if (lines != side)
        return path + QStringLiteral(" is incomplete: it holds %1 lines").arg(lines);
    return {};
}
