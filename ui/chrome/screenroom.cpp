#include "ui/chrome/screenroom.h"

#include <QDialog>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

namespace ScreenRoom {

QSize of(const QDialog &dialog)
{
    const QWidget *where = dialog.parentWidget() != nullptr ? dialog.parentWidget() : &dialog;
    // What the desktop will take is known when it is shown; the style's own measure comes close.
    const int title = dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &dialog);
    const int frame = dialog.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &dialog);
    return where->screen()->availableSize() - QSize(2 * frame, title + 2 * frame);
}

void keepWithin(QDialog &dialog, QSize room)
{
    QSize wanted = dialog.size().expandedTo(dialog.minimumSizeHint());
    if (wanted.boundedTo(room) == wanted)
        return;
    auto *content = new QWidget;
    content->setLayout(dialog.layout());
    content->setMinimumSize(wanted); // fields as wide as they were designed, whatever else they could do with
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // it is no field
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto *layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
    // A bar for one direction is no reason for one in the other.
    wanted += QSize(area->verticalScrollBar()->sizeHint().width(),
                    area->horizontalScrollBar()->sizeHint().height());
    dialog.resize(wanted.boundedTo(room));
}

} // namespace ScreenRoom
