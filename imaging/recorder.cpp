#include "imaging/recorder.h"

#include "imaging/failurelog.h"
#include "imaging/outputfile.h"
#include "imaging/pictures.h"
#include "imaging/videofile.h"

#include <QDir>

#include <opencv2/core.hpp>

#include <functional>
#include <vector>

namespace {

/// Writes one file; returns an empty text or the line that says why it failed.
using FileJob = std::function<QString()>;

/// Runs the jobs side by side on OpenCV's workers and waits for all of them.
std::vector<QString> runJobs(const std::vector<FileJob> &jobs)
{
    std::vector<QString> failures(jobs.size());
    cv::parallel_for_(
        cv::Range(0, static_cast<int>(jobs.size())),
        [&](const cv::Range &range) {
            for (auto i = static_cast<std::size_t>(range.start); i < static_cast<std::size_t>(range.end); ++i)
                failures[i] = jobs[i]();
        },
        static_cast<double>(jobs.size()));
    return failures;
}

} // namespace

Recorder::Recorder(const QString &root, const QString &name) : m_files{root, name} {}

Recorder::~Recorder()
{
    end();
}

void Recorder::setRoot(const QString &path)
{
    if (!path.isEmpty())
        m_files.root = path;
}

void Recorder::start(RecordingForms forms)
{
    end();
    m_failedFiles = 0;
    if (!forms.any())
        return;

    m_savingActive = true;
    m_forms = forms;
    m_savedFrames = 0;
    const QString folder = m_files.folder();
    if (!QDir().exists(folder))
        QDir().mkdir(folder);
    if (forms.video) {
        m_videoWriter = std::make_unique<VideoFile>(m_files.video());
        countFailure(m_videoWriter->openingFailure());
    }
}

void Recorder::store(const RecordedFrame &frame)
{
    const int number = ++m_savedFrames;
    std::vector<FileJob> jobs;
    if (m_forms.picture)
        jobs.emplace_back([&] { return Pictures::savePng(m_files.picture(number), frame.picture); });
    if (m_videoWriter) {
        jobs.emplace_back([&] {
            m_videoWriter->append(frame.picture);
            return QString();
        });
    }
    if (m_forms.data) {
        jobs.emplace_back([&] { return m_dataCsv.write(m_files.data(number), frame.currents); });
        jobs.emplace_back([&] { return m_grayCsv.write(m_files.grayData(number), frame.grayLevels); });
    }
    for (const QString &failure : runJobs(jobs))
        countFailure(failure);
}

void Recorder::endWhenComplete()
{
    if (m_savedFrames == m_saveFrameTotal)
        end();
}

bool Recorder::stop()
{
    if (!m_savingActive)
        return false;
    m_savedFrames = 0;
    end();
    return true;
}

void Recorder::writeParameters(const QString &text)
{
    OutputFile file(m_files.parameters());
    file.write(text.toUtf8());
    countFailure(file.finish());
}

void Recorder::end()
{
    m_savingActive = false;
    if (!m_videoWriter)
        return;
    countFailure(m_videoWriter->finish());
    m_videoWriter.reset();
}

void Recorder::countFailure(const QString &failure)
{
    if (failure.isEmpty())
        return;
    m_failedFiles += 1;
    reportFailure(failure);
}
