#include "ui/chrome/lightpalette.h"

#include <QApplication>
#include <QFrame>
#include <QPalette>
#include <QProxyStyle>
#include <QToolTip>

namespace LightPalette {

namespace {

const QColor window(240, 243, 246);
const QColor text(0x33, 0x33, 0x33);
const QColor dimmed(0x99, 0x99, 0x99);
const QColor accent(0x89, 0x68, 0x27);

/// Fusion with plain buttons in message boxes, without the icons of the desktop, and with lists that drop
/// down instead of covering their box.
class LightStyle : public QProxyStyle
{
public:
    LightStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override
    {
        switch (hint) {
        case SH_DialogButtonBox_ButtonsHaveIcons:
        case SH_ComboBox_Popup:
            return 0;
        case SH_ComboBox_PopupFrameStyle:
            return QFrame::NoFrame;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returnData);
        }
    }
};

} // namespace

QPalette palette()
{
    QPalette light(text, window, Qt::white, QColor(0xcc, 0xcc, 0xcc), QColor(0xe4, 0xe6, 0xe8), text,
                   Qt::white);
    light.setColor(QPalette::Button, QColor(0xf4, 0xf5, 0xf7));
    light.setColor(QPalette::AlternateBase, QColor(0xf4, 0xf5, 0xf7));
    light.setColor(QPalette::BrightText, Qt::red);
    light.setColor(QPalette::Highlight, accent);
    light.setColor(QPalette::HighlightedText, Qt::white);
    light.setColor(QPalette::Link, QColor(0x41, 0x69, 0xe1));
    light.setColor(QPalette::LinkVisited, QColor(0x6a, 0x5a, 0xcd));
    light.setColor(QPalette::PlaceholderText, dimmed);
    light.setColor(QPalette::ToolTipBase, Qt::white);
    light.setColor(QPalette::ToolTipText, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        light.setColor(QPalette::Disabled, role, dimmed);
    return light;
}

void apply(QApplication &application)
{
    application.setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setStyle(new LightStyle);
    QApplication::setPalette(palette());
    QToolTip::setPalette(palette());
}

} // namespace LightPalette
