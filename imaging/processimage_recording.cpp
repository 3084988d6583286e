#include "imaging/csvwriter.h"
#include "imaging/failurelog.h"
#include "imaging/outputfile.h"
#include "imaging/pictures.h"
#include "imaging/processimage.h"
#include "imaging/videofile.h"

#include <QDir>

#include <opencv2/core.hpp>

#include <functional>

namespace {

/// Writes one file; returns an empty text or the line that says why it failed.
using FileJob = std::function<QString()>;

/// Runs the jobs side by side on OpenCV's workers and waits for all of them.
std::vector<QString> runJobs(const std::vector<FileJob> &jobs)
{
    std::vector<QString> failures(jobs.size());
    cv::parallel_for_(
        cv::Range(0, int(jobs.size())),
        [&](const cv::Range &range) {
            for (auto i = size_t(range.start); i < size_t(range.end); ++i)
                failures[i] = jobs[i]();
        },
        double(jobs.size()));
    return failures;
}

} // namespace

void ProcessImage::startSaving(bool saveData, bool savePicture, bool saveVideo)
{
    closeVideo();
    failedFileCount = 0;
    savingActive = saveData || savePicture || saveVideo;
    if (!savingActive)
        return;

    const QString folder = recordingFolder();
    if (!QDir().exists(folder))
        QDir().mkdir(folder);
    saveDataFlag = saveData;
    savePictureFlag = savePicture;
    saveVideoFlag = saveVideo;
    savedFrames = 0;
    if (saveVideo)
        openVideo();
}

void ProcessImage::saveFrame(const QImage &image)
{
    if (!savingActive)
        return;
    savedFrames += 1;
    storeFrame(image);
    Q_EMIT saveMessage(savedFrames);
    if (savedFrames == saveFrameTotal) {
        savingActive = false;
        closeVideo();
    }
}

void ProcessImage::storeFrame(const QImage &image)
{
    const QString stem = recordingFolder() + timeStamp;
    const QString number = QString::number(savedFrames);
    // Between frames the frame that was processed last stands in lastFrameData.
    const std::vector<double> &currents = lastFrameData.empty() ? frameData : lastFrameData;

    std::vector<FileJob> jobs;
    if (savePictureFlag)
        jobs.emplace_back([&] { return Pictures::savePng(stem + "_pic" + number + ".png", image); });
    if (saveVideoFlag && videoWriter) {
        jobs.emplace_back([&] {
            videoWriter->append(image);
            return QString();
        });
    }
    if (saveDataFlag) {
        jobs.emplace_back([&] { return dataCsv->write(stem + "_data" + number + ".csv", currents); });
        jobs.emplace_back([&] { return grayCsv->write(stem + "_data_gray" + number + ".csv", grayData); });
    }
    for (const QString &failure : runJobs(jobs))
        countFailure(failure);
}

bool ProcessImage::stopSaving()
{
    if (!savingActive)
        return false;
    savingActive = false;
    savedFrames = 0;
    closeVideo();
    return true;
}

void ProcessImage::writeParameterFile(const QString &text)
{
    OutputFile file(recordingFolder() + "SetParameterData.txt");
    file.write(text.toUtf8());
    countFailure(file.finish());
}

QString ProcessImage::recordingFolder() const
{
    return logPath + u'/' + timeStamp + u'/';
}

void ProcessImage::openVideo()
{
    videoWriter = std::make_unique<VideoFile>(recordingFolder() + "output_video.mp4");
    countFailure(videoWriter->openingFailure());
}

void ProcessImage::closeVideo()
{
    if (!videoWriter)
        return;
    countFailure(videoWriter->finish());
    videoWriter.reset();
}

void ProcessImage::countFailure(const QString &failure)
{
    if (failure.isEmpty())
        return;
    failedFileCount += 1;
    reportFailure(failure);
}
