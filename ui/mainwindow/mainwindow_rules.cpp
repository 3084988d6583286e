#include "ui/mainwindow/mainwindow_rules.h"

#include "device/protocol/frameformat.h"

#include <QCoreApplication>
#include <QTransform>

#include <cmath>

namespace MainWindowRules {

DeviceChange deviceChange(quint32 message, quintptr wParam)
{
    constexpr quint32 deviceChangeMessage = 0x0219;
    constexpr quintptr deviceArrival = 0x8000;
    constexpr quintptr deviceRemoveComplete = 0x8004;
    if (message != deviceChangeMessage)
        return DeviceChange::None;
    if (wParam == deviceArrival)
        return DeviceChange::Arrival;
    return wParam == deviceRemoveComplete ? DeviceChange::Removal : DeviceChange::None;
}

bool isSwitchedOn(const QVariant &setting)
{
    // Stricter than QVariant::toBool(), which takes every other text, misspelt ones too, for true.
    const QString text = setting.toString().trimmed();
    return text.compare(QStringLiteral("true"), Qt::CaseInsensitive) == 0 || text.toInt() != 0;
}

int batteryGap(int gaugeWidth, int level)
{
    return static_cast<int>(gaugeWidth * (100 - level) / 100.0);
}

QString frameRateText(qint64 frames, qint64 elapsedMs)
{
    const double rate = static_cast<qint32>(frames) * 1000.0 / static_cast<double>(elapsedMs);
    return QStringLiteral("FPS: ") + QString::number(rate, 'f', 2);
}

double nextRotation(double rotation)
{
    const double next = rotation + 90.0;
    return next > 360.0 ? next - 360.0 : next;
}

QImage oriented(QImage image, double rotation, bool mirrorHorizontal, bool mirrorVertical)
{
    if (rotation != 0.0 && rotation != 360.0)
        image = image.transformed(QTransform().rotate(rotation), Qt::SmoothTransformation);
    if (mirrorHorizontal || mirrorVertical)
        image = std::move(image).mirrored(mirrorHorizontal, mirrorVertical);
    return image;
}

QRect partOfFrame(const QRect &shown, double rotation, bool mirrorHorizontal, bool mirrorVertical)
{
    constexpr int last = FrameFormat::side - 1;
    const auto turns = std::lround(rotation / 90) % 4;
    const auto back = [&](QPoint place) {
        if (mirrorHorizontal)
            place.setX(last - place.x());
        if (mirrorVertical)
            place.setY(last - place.y());
        for (long turn = 0; turn < turns; ++turn)
            place = {place.y(), last - place.x()};
        return QRect(place, QSize(1, 1));
    };
    return back(shown.topLeft()) | back(shown.bottomRight());
}

QString clampedFrameCount(const QString &text)
{
    const int frames = text.toInt();
    if (frames < 1)
        return QStringLiteral("1");
    return frames >= 1001 ? QStringLiteral("1000") : text;
}

QString recordingText(const RecordingResult &result)
{
    QString text = QCoreApplication::translate("mainwindow", "%1 of %2 frames stored")
                       .arg(result.stored)
                       .arg(result.wanted);
    if (result.failed == 1)
        text += QCoreApplication::translate("mainwindow", ", 1 file failed");
    else if (result.failed > 1)
        text += QCoreApplication::translate("mainwindow", ", %1 files failed").arg(result.failed);
    return text;
}

QString recordingHint(bool anyForm, bool exists)
{
    if (!anyForm)
        return QCoreApplication::translate("mainwindow", "Nothing is ticked: nothing will be saved");
    if (exists)
        return QCoreApplication::translate("mainwindow",
                                           "A recording of this name exists and will be overwritten");
    return {};
}

QString parameterSummary(const AcquisitionSettings &settings)
{
    QString summary;
    if (!settings.currentRange.isEmpty())
        summary += QStringLiteral("Current Range:%1").arg(settings.currentRange);
    summary += QStringLiteral("\n");
    summary += QStringLiteral("Vss: %1 V\n").arg(settings.vss);
    summary += QStringLiteral("Vcom: %1 V\n").arg(settings.vcom);
    summary += QStringLiteral("Von: %1 V\n").arg(settings.von);
    summary += QStringLiteral("Voff: %1 V\n").arg(settings.voff);
    summary += QStringLiteral("Contrast Ratio: %1 \n").arg(settings.contrast);
    return summary;
}

} // namespace MainWindowRules
