// The picture's inspector: what it is told while it is open.

#include "ui/inspector/inspector.h"

#include "device/portmanager.h"
#include "ui/chrome/regiondrag.h"
#include "ui/chrome/screenroom.h"
#include "ui/mainwindow.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QStyle>

void mainwindow::buildInspectorEntry()
{
    auto *entry = new QAction(tr("Inspector…"), ui->frame);
    entry->setShortcut(Qt::CTRL | Qt::Key_I);
    entry->setShortcutVisibleInContextMenu(true);
    entry->setAutoRepeat(false);
    connect(entry, &QAction::triggered, this, &mainwindow::openInspector);
    ui->frame->addAction(entry);
    ui->frame->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void mainwindow::openInspector()
{
    if (m_inspector) {
        m_inspector->show();
        m_inspector->raise();
        m_inspector->activateWindow();
        return;
    }
    const auto frame = [this] {
        return std::span<const double>(m_process->lastFrame());
    };
    QElapsedTimer clock;
    clock.start();
    const auto counts = [this] {
        const RecordingResult &recording = m_process->recordingResult();
        const qint64 waiting = m_link->framesWaiting();
        return FrameCounts{.received = m_frameCount + waiting,
                           .waiting = waiting,
                           .recorded = recording.stored,
                           .wanted = recording.wanted,
                           .losses = m_lossCount};
    };
    m_inspector = new Inspector(
        frame, [clock] { return clock.elapsed(); }, counts, this);
    m_inspector->setAttribute(Qt::WA_DeleteOnClose);
    // Its own connections: without it nobody asks.
    connect(m_process.get(), &ProcessImage::sendImagetoMain, m_inspector, &Inspector::frameArrived);
    connect(ui->frame, &KeepRatioWidget::click_coor, m_inspector, &Inspector::pick);
    const auto *drag = new RegionDrag(ui->frame->picture(), m_inspector);
    connect(drag, &RegionDrag::chosen, m_inspector, [this](const QRect &shown) {
        m_inspector->chooseRegion(MainWindowRules::partOfFrame(shown, m_rotation, m_mirrorH, m_mirrorV));
    });
    m_inspector->pick(m_clickX, m_clickY);
    m_inspector->frameArrived();
    const QSize room = ScreenRoom::of(*m_inspector);
    // Its diagrams give way before anything is scrolled, and then there is room for the bar.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    m_inspector->resize(m_inspector->size().boundedTo(room - QSize(bar, 0)));
    ScreenRoom::keepWithin(*m_inspector, room);
    m_inspector->show();
}

void mainwindow::closeInspector()
{
    delete m_inspector;
}
