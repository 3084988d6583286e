#pragma once

#include <QFrame>
#include <QImage>

class QHBoxLayout;
class QLabel;
class QMouseEvent;

/// Shows one picture at a fixed aspect ratio, centred, whatever size the frame itself has, and reports left
/// clicks on it. GUI thread only.
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
    /// scaled anew whenever the view changes its size.
    void setImage(QImage &image);

Q_SIGNALS:
    /// A left press on the label, each coordinate mapped to 0 to 1023.
    void click_coor(int x, int y);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Scales the picture to the label and shows it; returns it scaled.
    QImage showPicture();
    void reportClick(const QMouseEvent &press);

    int m_ratioWidth = 1;
    int m_ratioHeight = 1;
    QWidget *m_content;
    QHBoxLayout *m_layout;
    QLabel *m_label;
    QImage m_picture; ///< as it was given, unscaled
};
