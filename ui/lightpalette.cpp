#include "ui/lightpalette.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>

namespace LightPalette {

namespace {

const QColor window(240, 243, 246);
const QColor text(0x33, 0x33, 0x33);
const QColor dimmed(0x99, 0x99, 0x99);
const QColor accent(0x89, 0x68, 0x27);

} // namespace

QPalette palette()
{
    QPalette light(text, window, Qt::white, QColor(0xcc, 0xcc, 0xcc), QColor(0xe4, 0xe6, 0xe8), text,
                   Qt::white);
    light.setColor(QPalette::Button, QColor(0xf4, 0xf5, 0xf7));
    light.setColor(QPalette::ButtonText, text);
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
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(palette());
    QToolTip::setPalette(palette());
}

} // namespace LightPalette
