#pragma once

#include "device/conversations.h"
#include "device/portmanager.h"
#include "device/protocol/readback.h"
#include "tests/ui/develop/dialogfields.h"
#include "tests/ui/mainwindow/virtualwindow.h"
#include "ui/developwindow.h"

#include <functional>

/// The real window on the virtual detector, with its engineering dialog within reach.
class ParameterWindow : public MainWindowOnVirtualDetector
{
protected:
    void openConnected(const QByteArray &detector = {}, const QByteArray &config = {})
    {
        open(detector, "DebugMode=true\n" + config);
        connectDetector();
    }

    /// Chooses a current range and downloads it.
    void download(const char *range)
    {
        click(range);
        click("pushButton_set");
    }

    /// What the detector holds as hexadecimal text: mode, ADC word, voltages, timing.
    struct Held
    {
        QByteArray mode;
        QByteArray adc;
        QByteArray voltages;
        QByteArray timing;
    };
    static Held held()
    {
        const QByteArray reply = Conversation::readParameters(*PortManager::instance());
        EXPECT_EQ(reply.size(), 2 * Readback::parameterBytes) << reply.constData();
        return {reply.mid(0, 2), reply.mid(2, 4), reply.mid(6, 64), reply.mid(70, 144)};
    }

    using WindowFixture::stored;
    [[nodiscard]] QVariant stored(int field) const { return stored(DialogFields::fieldName(field)); }

    /// Opens the engineering dialog by its button, does something in it and closes it.
    void inDialog(const std::function<void(developwindow &)> &work)
    {
        bool opened = false;
        boxes.onDialog = [&](QDialog *dialog) {
            opened = true;
            work(*qobject_cast<developwindow *>(dialog));
            dialog->reject();
        };
        click("pushButton_develop");
        boxes.onDialog = {};
        EXPECT_TRUE(opened);
    }
};
