#include "streaming/framepublisher.h"

// Where ZeroMQ is not installed.

struct FramePublisher::Socket
{
};

FramePublisher::FramePublisher(const PublishOptions &options, MayWait /*mayWait*/)
    : m_problem(QStringLiteral("frames cannot be published at %1: the program was built without ZeroMQ")
                    .arg(options.endpoint))
{
}

FramePublisher::~FramePublisher() = default;

QString FramePublisher::endpoint() const
{
    return {};
}

bool FramePublisher::waitForReceivers()
{
    return false;
}

bool FramePublisher::publish(const QByteArray & /*raw*/, std::span<const double> /*currents*/)
{
    return false;
}

bool FramePublisher::end(int /*withinMs*/)
{
    return false;
}
