#include "imaging/processimage.h"

#include "device/portmanager.h"
#include "device/protocol/frameformat.h"

#include <QDateTime>
#include <QDir>

namespace {

/// Where references and, unless another folder is chosen, recordings lie.
QString logFolder()
{
    return QDir::currentPath() + QStringLiteral("/Logs");
}

} // namespace

ProcessImage::ProcessImage(QObject *parent)
    : QObject(parent), calibPath(logFolder() + QStringLiteral("/calib/")),
      recorder(logFolder(), RecordingFiles::nameFor({}, QDateTime::currentDateTime()))
{
    if (!QDir().exists(calibPath))
        QDir().mkdir(calibPath);
    // Without a link frames are handed to onReadReady() directly.
    if (PortManager *link = PortManager::instance())
        connect(link, &PortManager::read_ready, this, &ProcessImage::onReadReady);

    const auto pixels = static_cast<std::size_t>(pixelCount);
    frameData.resize(pixels);
    grayData.resize(pixels);
    fullOffData.resize(pixels);
    fullOnData.resize(pixels, 255.0);
}

void ProcessImage::onReadReady(QByteArray m_data)
{
    takeFrame(std::move(m_data), QDateTime::currentMSecsSinceEpoch());
}

void ProcessImage::takeFrame(QByteArray bytes, qint64 time)
{
    frameTime = time;
    const QImage image = processImage(bytes);
    Q_EMIT sendImagetoMain(image);
    rawFrame = std::move(bytes);
    saveFrame(image);
    rawFrame.clear(); // whoever lent the buffer uses it again
}

QImage ProcessImage::processImage(QByteArray &m_data)
{
    QImage image(FrameFormat::side, FrameFormat::side, QImage::Format_Grayscale8);
    if (fullOnFlag || fullOffFlag) {
        caliFrameIndex += 1;
        Q_EMIT caliMessage(caliFrameIndex);
    }
    processPixels(m_data, image.bits());
    if (caliFrameIndex == caliFrameCount)
        finishCapture();

    // The finished frame becomes the last one, and the buffer of the frame before takes the next.
    frameData.swap(lastFrameData);
    frameData.resize(static_cast<std::size_t>(pixelCount));
    return image;
}

void ProcessImage::processPixels(const QByteArray &bytes, uchar *picture)
{
    PixelKernel::Frame frame;
    frame.bytes = {reinterpret_cast<const uchar *>(bytes.constData()),
                   static_cast<std::size_t>(bytes.size())};
    frame.currents = frameData.data();
    frame.grayLevels = grayData.data();
    frame.picture = picture;
    frame.dark = fullOffData.data();
    frame.bright = fullOnData.data();

    const bool first = caliFrameIndex == 1;
    const int divisor = caliFrameIndex == caliFrameCount ? caliFrameCount : 0;
    if (fullOffFlag)
        frame.darkCapture = {fullOffData.data(), first, divisor};
    if (fullOnFlag)
        frame.brightCapture = {fullOnData.data(), first, divisor};

    PixelKernel::process(frame, {.gainNumerator = gainNumerator,
                                 .gainDenominator = gainDenominator,
                                 .rangeMax = rangeMax,
                                 .contrastRatio = contrastRatio,
                                 .calibrated = caliEnabled});
}

QString ProcessImage::pixelValueText(int x, int y) const
{
    // In 32 bits with wrap-around; what comes out negative is beyond every frame.
    const quint32 index = (static_cast<quint32>(x) << 10) + static_cast<quint32>(y);
    if (index >= lastFrameData.size())
        return QStringLiteral("0.0");
    return QString::number(lastFrameData[index], 'f', 4);
}

void ProcessImage::setTimeStamp(const QString &name)
{
    recorder.setName(RecordingFiles::nameFor(name, QDateTime::currentDateTime()));
}

bool ProcessImage::hasRecording(const QString &name) const
{
    const QDateTime now = QDateTime::currentDateTime();
    const RecordingFiles files{recorder.next().root, RecordingFiles::nameFor(name, now)};
    const QDir folder(files.folder());
    return files.name != RecordingFiles::nameFor({}, now) && folder.exists() && !folder.isEmpty(QDir::Files);
}

void ProcessImage::startSaving(bool saveData, bool savePicture, bool saveVideo)
{
    startSaving({.data = saveData, .picture = savePicture, .video = saveVideo}, {});
}

void ProcessImage::startSaving(const RecordingForms &forms, RecordingFacts facts)
{
    facts.isCalibrated = caliEnabled;
    recorder.setFacts(facts);
    recorder.start(forms);
}

void ProcessImage::saveFrame(const QImage &image)
{
    if (!recorder.isRunning())
        return;
    // Between frames the frame that was processed last stands in lastFrameData.
    recorder.store({image, lastFrameData.empty() ? frameData : lastFrameData, grayData, rawFrame, frameTime});
    Q_EMIT saveMessage(recorder.storedFrames());
    recorder.endWhenComplete();
}

bool ProcessImage::stopSaving()
{
    return recorder.stop();
}

void ProcessImage::writeParameterFile(const QString &text)
{
    recorder.writeParameters(text);
}
