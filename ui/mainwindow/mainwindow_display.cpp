// The picture, how it lies, and the current of the clicked pixel.

#include "ui/mainwindow.h"

#include "ui/mainwindow/mainwindow_rules.h"
#include "ui_mainwindow.h"

void mainwindow::on_pushButton_rotate_clicked()
{
    m_rotation = MainWindowRules::nextRotation(m_rotation);
    showPicture();
}

void mainwindow::on_pushButton_mirrorHorizontal_clicked()
{
    m_mirrorH = !m_mirrorH;
    showPicture();
}

void mainwindow::on_pushButton_mirrorVertical_clicked()
{
    m_mirrorV = !m_mirrorV;
    showPicture();
}

void mainwindow::receive_displayImage(QImage displayImage)
{
    ++m_frameCount;
    m_elapsedMs += m_fpsTimer.restart();
    ui->label_fps->setText(MainWindowRules::frameRateText(m_frameCount, m_elapsedMs));

    m_picture = std::move(displayImage);
    showPicture();
    updateCurrentReadout();
}

void mainwindow::showPicture()
{
    if (m_picture.isNull())
        return;
    QImage picture = MainWindowRules::oriented(m_picture, m_rotation, m_mirrorH, m_mirrorV);
    ui->frame->setImage(picture);
}

void mainwindow::handleLabelClick(int x, int y)
{
    m_clickX = x;
    m_clickY = y;
    ui->label_coor->setText(QStringLiteral("Coordinate: (%1,%2)").arg(x).arg(y));
    updateCurrentReadout();
}

void mainwindow::updateCurrentReadout()
{
    ui->label_current->setText(
        QStringLiteral("Current: %1nA").arg(m_process->pixelValueText(m_clickX, m_clickY)));
}

void mainwindow::receive_errorOccurred(errormessage) {}
