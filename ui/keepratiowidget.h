#pragma once

#include <QFrame>
#include <QImage>

class QHBoxLayout;
class QLabel;
class QMouseEvent;

/// Shows one picture at a fixed aspect ratio, centred, whatever size the frame itself has, and reports left
/// clicks on it. With the focus, arrow keys go on from the place clicked last. GUI thread only.
class KeepRatioWidget : public QFrame
{
    Q_OBJECT

public:
    /// The ratio is 1:1 at first.
    explicit KeepRatioWidget(QWidget *parent = nullptr);

    /// Aspect ratio of the picture's area, both parts above 0. Takes effect at the next resize.
    void setRatio(int width, int height);

    /// Scales `image` smoothly to the label, keeping its own ratio, and shows it. The caller's image is left
    /// scaled; it is null, and nothing is shown, when it was null or the label has no area. The picture is
    /// scaled anew whenever the view changes its size. Where the screen has more pixels than the desktop
    /// counts it is scaled to those, and its device pixel ratio tells so.
    void setImage(QImage &image);

    /// What the picture fills, for those who watch its events.
    [[nodiscard]] QWidget &picture() const;

Q_SIGNALS:
    /// A left press on the label, each coordinate mapped to 0 to 1023; or the place that an arrow key led to,
    /// a step away from the last and 16 with Shift.
    void click_coor(int x, int y);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Scales the picture to the label and shows it; returns it scaled.
    QImage showPicture();
    /// The same on a screen that has `ratio` pixels for each of the desktop's.
    QImage showSharp(qreal ratio);
    void reportClick(const QMouseEvent &press);
    void pick(QPoint place);

    int m_ratioWidth = 1;
    int m_ratioHeight = 1;
    QWidget *m_content;
    QHBoxLayout *m_layout;
    QLabel *m_label;
    QPoint m_picked;  ///< reported last
    QImage m_picture; ///< as it was given, unscaled
};
