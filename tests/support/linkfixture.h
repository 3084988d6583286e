#pragma once

#include "device/portmanager.h"
#include "tests/support/faked2xx.h"
#include "tests/support/hex.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

/// A link on the hand-driven driver library, with the log in an empty folder.
class LinkFixture : public testing::Test
{
protected:
    LinkFixture()
    {
        PortManager::setDriver(fake.driver());
        PortManager::createInstance();
    }
    ~LinkFixture() override { PortManager::destroyInstance(); }

    static PortManager &link() { return *PortManager::instance(); }

    LogFile log;
    FakeD2xx fake;
};
