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

    const QString folder = recordingFiles().folder();
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
    const RecordingFiles files = recordingFiles();
    // Between frames the frame that was processed last stands in lastFrameData.
    const std::vector<double> &currents = lastFrameData.empty() ? frameData : lastFrameData;

    std::vector<FileJob> jobs;
    if (savePictureFlag)
        jobs.emplace_back([&] { return Pictures::savePng(files.picture(savedFrames), image); });
    if (saveVideoFlag && videoWriter) {
        jobs.emplace_back([&] {
            videoWriter->append(image);
            return QString();
        });
    }
    if (saveDataFlag) {
        jobs.emplace_back([&] { return dataCsv->write(files.data(savedFrames), currents); });
        jobs.emplace_back([&] { return grayCsv->write(files.grayData(savedFrames), grayData); });
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
    OutputFile file(recordingFiles().parameters());
    file.write(text.toUtf8());
    countFailure(file.finish());
}

void ProcessImage::openVideo()
{
    videoWriter = std::make_unique<VideoFile>(recordingFiles().video());
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
