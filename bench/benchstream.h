#pragma once

#include "device/conversations.h"
#include "device/d2xxlibrary.h"
#include "device/portmanager.h"
#include "imaging/processimage.h"
#include "log/logmanager.h"
#include "ui/keepratiowidget.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

/// From the cable to the shown picture, as the window puts it together: the virtual detector, the receive
/// thread, the pipeline and the image view. Runs in a temporary working folder while it lives.
class BenchStream
{
public:
    enum class View { Shown, None };

    /// `settings`: of virtual-detector.ini. Pattern 0 is the sensor's own picture. Without a view it is what
    /// the program for the command line puts together.
    BenchStream(const QByteArray &settings, int testPattern, View view = View::Shown)
        : m_before(QDir::currentPath())
    {
        QDir::setCurrent(m_folder.path());
        QFile file(QStringLiteral("virtual-detector.ini"));
        if (file.open(QIODevice::WriteOnly))
            file.write(settings);
        file.close();

        LogManager::createInstance();
        PortManager::setDriver(D2xxLibrary::load(QStringLiteral("virtual")).driver);
        PortManager::createInstance();
        m_pipeline = std::make_unique<ProcessImage>();
        m_pipeline->setContrastRatio(1.0);
        m_view.resize(760, 760);
        m_view.setVisible(view == View::Shown);
        QObject::connect(m_pipeline.get(), &ProcessImage::sendImagetoMain, &m_view,
                         [this, view](QImage picture) {
                             if (view == View::Shown)
                                 m_view.setImage(picture);
                             ++m_shown;
                         });
        m_running = start(*PortManager::instance(), testPattern);
    }

    ~BenchStream()
    {
        PortManager::instance()->closeDevice();
        m_pipeline.reset();
        PortManager::destroyInstance();
        LogManager::destroyInstance();
        QDir::setCurrent(m_before);
    }
    Q_DISABLE_COPY_MOVE(BenchStream)

    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] ProcessImage &pipeline() { return *m_pipeline; }

    /// Handles events until that many more pictures are shown.
    void showFrames(int count)
    {
        const int end = m_shown + count;
        while (m_shown < end)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    static bool start(PortManager &link, int testPattern)
    {
        if (!link.openDevice(QStringLiteral("QV1K")) ||
            (testPattern != 0 && !Conversation::selectTestPattern(link, testPattern)) ||
            !Conversation::isReady(link) || !Conversation::start(link))
            return false;
        Conversation::beginReceiving(link);
        return true;
    }

    QTemporaryDir m_folder;
    QString m_before;
    KeepRatioWidget m_view{nullptr};
    std::unique_ptr<ProcessImage> m_pipeline;
    int m_shown = 0;
    bool m_running = false;
};
