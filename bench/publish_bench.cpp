#include "streaming/framepublisher.h"

#include <benchmark/benchmark.h>

#include <zmq.hpp>

#include <thread>
#include <vector>

// Each sends frames of 4 MiB over loopback to a receiver on a thread of its own, which lets nothing be lost:
// the sender is as fast as both ends together.

namespace {

constexpr std::size_t pixels = std::size_t{1024} * 1024;
constexpr std::size_t frameBytes = pixels * 4;

/// Takes what comes until it comes empty.
class Taker
{
public:
    explicit Taker(const std::string &endpoint)
        : m_thread([this, endpoint] {
              zmq::socket_t socket(m_context, zmq::socket_type::pull);
              socket.set(zmq::sockopt::rcvhwm, FramePublisher::queuedFrames);
              socket.connect(endpoint);
              zmq::message_t part;
              do {
                  do
                      (void)socket.recv(part);
                  while (part.more());
              } while (!part.empty());
          })
    {
    }

private:
    zmq::context_t m_context;
    std::jthread m_thread;
};

/// Copies each frame into a message and sends it.
void publishPlainly(benchmark::State &state)
{
    zmq::context_t context;
    zmq::socket_t socket(context, zmq::socket_type::push);
    socket.set(zmq::sockopt::sndhwm, FramePublisher::queuedFrames);
    socket.bind("tcp://127.0.0.1:*");
    const Taker taker(socket.get(zmq::sockopt::last_endpoint));
    const std::vector<char> frame(frameBytes, 1);
    for (auto _ : state) {
        zmq::message_t message(frame.data(), frame.size());
        (void)socket.send(message, zmq::send_flags::none);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frameBytes));
    zmq::message_t end;
    (void)socket.send(end, zmq::send_flags::none);
}

void publishOurs(benchmark::State &state, bool raw)
{
    PublishOptions options;
    options.endpoint = QStringLiteral("0");
    options.mustArrive = true;
    options.raw = raw;
    options.receivers = 1;
    FramePublisher publisher(options);
    const Taker taker(publisher.endpoint().toStdString());
    const QByteArray bytes(static_cast<qsizetype>(frameBytes), '\1');
    const std::vector<double> currents(pixels, 1.0);
    bool isSent = publisher.waitForReceivers();
    for (auto _ : state)
        isSent = isSent && publisher.publish(bytes, currents);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frameBytes));
    if (!publisher.end(options.timeoutMs) || !isSent)
        state.SkipWithError("not everything was sent");
}

BENCHMARK(publishPlainly)->Name("publish/plain")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(publishOurs, raw, true)->Name("publish/raw")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(publishOurs, currents, false)
    ->Name("publish/currents")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
