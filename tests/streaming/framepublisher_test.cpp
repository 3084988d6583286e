#include "streaming/framepublisher.h"
#include "tests/streaming/receiver.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <numeric>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t pixels = std::size_t{1024} * 1024;

/// Any port that is free.
PublishOptions options(bool mustArrive, int receivers)
{
    PublishOptions options;
    options.endpoint = QStringLiteral("0");
    options.mustArrive = mustArrive;
    options.receivers = receivers;
    options.timeoutMs = patienceMs;
    return options;
}

std::vector<double> ramp()
{
    std::vector<double> currents(pixels);
    std::iota(currents.begin(), currents.end(), 0.1);
    return currents;
}

QByteArray rawFrame()
{
    QByteArray raw(static_cast<qsizetype>(pixels) * 4, '\0');
    std::iota(raw.begin(), raw.end(), char{0});
    return raw;
}

/// The numbers of the frames that arrive until the end is told; the receiver goes then.
std::vector<int> framesUntilEnd(Receiver &receiver)
{
    std::vector<int> frames;
    auto message = receiver.next();
    for (; message && !message->isEnd(); message = receiver.next())
        frames.push_back(message->frame());
    EXPECT_TRUE(message) << "the end is told";
    receiver.socket.close();
    return frames;
}

std::vector<int> numbersTo(int last)
{
    std::vector<int> numbers(static_cast<std::size_t>(last));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

struct CurveKeys
{
    CurveKeys() { EXPECT_EQ(zmq_curve_keypair(publicHalf.data(), secretHalf.data()), 0); }
    std::array<char, 41> publicHalf{};
    std::array<char, 41> secretHalf{};
};

} // namespace

TEST(FramePublisher, currents_reach_every_receiver_rounded_to_float_with_what_is_needed_to_read_them)
{
    FramePublisher publisher(options(false, 2));
    publisher.setFacts({{"serial", "QV1K"}});
    Receiver receivers[] = {Receiver(zmq::socket_type::sub), Receiver(zmq::socket_type::sub)};
    for (Receiver &receiver : receivers)
        receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    const std::vector<double> currents = ramp();
    ASSERT_TRUE(publisher.publish({}, currents));
    for (Receiver &receiver : receivers) {
        const auto message = receiver.next();
        ASSERT_TRUE(message);
        EXPECT_EQ(message->header["version"].toInt(), 1);
        EXPECT_EQ(message->header["serial"].toString(), "QV1K");
        EXPECT_EQ(message->frame(), 1);
        EXPECT_EQ(message->header["dtype"].toString(), "<f4");
        EXPECT_EQ(message->header["unit"].toString(), "nA");
        EXPECT_EQ(message->header["shape"].toArray(), (QJsonArray{1024, 1024}));
        EXPECT_TRUE(std::ranges::equal(message->currents(), currents, {}, {},
                                       [](double current) { return static_cast<float>(current); }));
    }
}

TEST(FramePublisher, raw_frames_arrive_as_they_came)
{
    PublishOptions raw = options(true, 1);
    raw.raw = true;
    FramePublisher publisher(raw);
    Receiver receiver(zmq::socket_type::pull);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    ASSERT_TRUE(publisher.publish(rawFrame(), {}));
    const auto message = receiver.next();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->header["dtype"].toString(), ">u4");
    EXPECT_EQ(message->payload, rawFrame());
}

TEST(FramePublisher, what_must_arrive_waits_for_a_slow_receiver_and_loses_nothing)
{
    constexpr int frames = 40;
    std::atomic_bool hasWaited = false;
    FramePublisher publisher(options(true, 1), [&] {
        hasWaited = true;
        hasWaited.notify_all();
        return true;
    });
    Receiver receiver(zmq::socket_type::pull);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    hasWaited = false;
    std::vector<int> arrived;
    std::jthread slow([&] {
        hasWaited.wait(false); // nothing is taken until no more is sent
        arrived = framesUntilEnd(receiver);
    });
    const std::vector<double> currents = ramp();
    for (int frame = 0; frame < frames; ++frame)
        ASSERT_TRUE(publisher.publish({}, currents)) << publisher.problem().toStdString();
    EXPECT_TRUE(publisher.end(patienceMs)) << publisher.problem().toStdString();
    slow.join();
    EXPECT_EQ(arrived, numbersTo(frames));
}

TEST(FramePublisher, a_slow_receiver_of_what_may_be_lost_finds_out_by_the_numbers)
{
    constexpr int frames = 60;
    FramePublisher publisher(options(false, 1));
    Receiver receiver(zmq::socket_type::sub);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    const std::vector<double> currents = ramp();
    for (int frame = 0; frame < frames; ++frame)
        ASSERT_TRUE(publisher.publish({}, currents)) << "nobody is waited for";
    std::vector<int> arrived;
    std::jthread slow([&] { arrived = framesUntilEnd(receiver); });
    EXPECT_TRUE(publisher.end(patienceMs));
    slow.join();
    ASSERT_FALSE(arrived.empty());
    EXPECT_LT(arrived.size(), frames);
    EXPECT_EQ(arrived.front(), 1);
    EXPECT_TRUE(std::is_sorted(arrived.begin(), arrived.end()));
}

TEST(FramePublisher, receivers_that_share_the_frames_are_all_told_the_end)
{
    FramePublisher publisher(options(true, 2));
    Receiver receivers[] = {Receiver(zmq::socket_type::pull), Receiver(zmq::socket_type::pull)};
    for (Receiver &receiver : receivers)
        receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    std::vector<int> arrived[2];
    {
        std::jthread first([&] { arrived[0] = framesUntilEnd(receivers[0]); });
        std::jthread second([&] { arrived[1] = framesUntilEnd(receivers[1]); });
        for (int frame = 0; frame < 6; ++frame)
            EXPECT_TRUE(publisher.publish(rawFrame(), ramp()));
        EXPECT_TRUE(publisher.end(patienceMs));
    }
    std::vector<int> all;
    std::merge(arrived[0].begin(), arrived[0].end(), arrived[1].begin(), arrived[1].end(),
               std::back_inserter(all));
    EXPECT_EQ(all, numbersTo(6));
    EXPECT_FALSE(arrived[0].empty());
    EXPECT_FALSE(arrived[1].empty());
}

TEST(FramePublisher, a_port_alone_is_one_of_this_machine)
{
    const FramePublisher publisher(options(false, 0));
    EXPECT_TRUE(publisher.endpoint().startsWith("tcp://127.0.0.1:")) << publisher.endpoint().toStdString();
    EXPECT_EQ(publisher.problem(), QString());
}

TEST(FramePublisher, an_endpoint_that_cannot_be_bound_is_told)
{
    const FramePublisher first(options(false, 0));
    PublishOptions same = options(false, 0);
    same.endpoint = first.endpoint();
    FramePublisher second(same);
    EXPECT_EQ(second.problem(), QStringLiteral("frames cannot be published at %1: %2")
                                    .arg(first.endpoint(), zmq_strerror(EADDRINUSE)));
    EXPECT_FALSE(second.waitForReceivers());
    EXPECT_FALSE(second.publish(rawFrame(), {}));
    EXPECT_FALSE(second.end(patienceMs));
    EXPECT_EQ(second.endpoint(), QString());
}

TEST(FramePublisher, a_receiver_of_what_may_be_lost_that_stays_is_no_failure)
{
    FramePublisher publisher(options(false, 1));
    Receiver receiver(zmq::socket_type::sub);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    EXPECT_TRUE(publisher.end(0));
    EXPECT_EQ(publisher.problem(), QString());
}

TEST(FramePublisher, receivers_that_do_not_come_are_waited_for_no_longer_than_told)
{
    PublishOptions brief = options(true, 1);
    brief.timeoutMs = 1000;
    FramePublisher publisher(brief);
    EXPECT_FALSE(publisher.waitForReceivers());
    EXPECT_EQ(publisher.problem(), "fewer than 1 receivers came within 1 s");
    EXPECT_TRUE(publisher.end(patienceMs)) << "nobody is there to be told";
    FramePublisher another(brief);
    EXPECT_FALSE(another.publish({}, ramp()));
    EXPECT_EQ(another.problem(), "no receiver took a frame within 1 s");
    EXPECT_EQ(another.frames(), 0);
}

TEST(FramePublisher, a_wait_for_receivers_can_be_ended)
{
    FramePublisher publisher(options(true, 1), [] { return false; });
    EXPECT_FALSE(publisher.waitForReceivers());
    EXPECT_EQ(publisher.problem(), "the wait for receivers was ended");
}

TEST(FramePublisher, a_signal_does_not_end_a_wait)
{
    static std::atomic_int arrived = 0;
    std::signal(SIGINT, [](int) { ++arrived; });
    std::atomic_int looks = 0;
    FramePublisher publisher(options(true, 1), [&] { return ++looks < 3; });
    // One at a time: the next is sent when the last was heard.
    std::jthread sender([&looks, waiting = pthread_self()] {
        for (int sent = 0; looks < 3; std::this_thread::yield())
            if (arrived == sent && pthread_kill(waiting, SIGINT) == 0)
                ++sent;
    });
    EXPECT_FALSE(publisher.waitForReceivers());
    EXPECT_EQ(looks, 3);
    sender.join();
    EXPECT_GT(arrived, 0);
    std::signal(SIGINT, SIG_DFL);
}

TEST(FramePublisher, a_receiver_that_takes_nothing_at_the_end_is_told_of)
{
    FramePublisher publisher(options(true, 1));
    Receiver receiver(zmq::socket_type::pull);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    for (int frame = 0; frame < FramePublisher::queuedFrames - 2; ++frame)
        ASSERT_TRUE(publisher.publish({}, ramp()));
    EXPECT_FALSE(publisher.end(1000));
    EXPECT_EQ(publisher.problem(), "the receivers did not take all frames within 1 s");
}

TEST(FramePublisher, the_first_failure_is_the_one_that_is_told)
{
    bool mayWait = true;
    FramePublisher publisher(options(true, 1), [&] { return mayWait; });
    Receiver receiver(zmq::socket_type::pull);
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    mayWait = false;
    int sent = 0;
    while (sent < 200 && publisher.publish({}, ramp()))
        ++sent;
    EXPECT_LT(sent, 200) << "it takes none";
    EXPECT_EQ(publisher.problem(), "the wait for receivers was ended");
    EXPECT_FALSE(publisher.end(0));
    EXPECT_EQ(publisher.problem(), "the wait for receivers was ended");
}

TEST(FramePublisher, a_slow_one_of_those_who_share_is_told_the_end_behind_its_frames)
{
    FramePublisher publisher(options(true, 2));
    Receiver fast(zmq::socket_type::pull);
    Receiver slow(zmq::socket_type::pull);
    fast.connect(publisher.endpoint());
    slow.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    constexpr int frames = 60; // more than wait for both
    std::vector<int> arrived[2];
    {
        std::jthread taker([&] {
            arrived[0] = framesUntilEnd(fast);
            arrived[1] = framesUntilEnd(slow); // begins when the other has gone
        });
        const std::vector<double> currents = ramp();
        for (int frame = 0; frame < frames; ++frame)
            ASSERT_TRUE(publisher.publish({}, currents)) << publisher.problem().toStdString();
        EXPECT_TRUE(publisher.end(patienceMs)) << publisher.problem().toStdString();
    }
    EXPECT_FALSE(arrived[1].empty());
    EXPECT_EQ(arrived[0].size() + arrived[1].size(), frames);
}

TEST(FramePublisher, with_a_key_frames_go_only_to_those_who_know_its_public_half)
{
    const CurveKeys keys;
    const CurveKeys receivers;
    PublishOptions encrypted = options(true, 1);
    encrypted.secretKey = keys.secretHalf.data();
    FramePublisher publisher(encrypted);

    Receiver stranger(zmq::socket_type::pull);
    stranger.connect(publisher.endpoint());
    zmq_socket_monitor(stranger.socket.handle(), "inproc://fate", ZMQ_EVENT_DISCONNECTED);
    zmq::socket_t fate(stranger.context, zmq::socket_type::pair);
    fate.connect("inproc://fate");
    fate.set(zmq::sockopt::rcvtimeo, patienceMs);
    zmq::message_t event;
    EXPECT_TRUE(fate.recv(event)) << "who has no key is sent away";
    fate.close();

    Receiver receiver(zmq::socket_type::pull);
    receiver.socket.set(zmq::sockopt::curve_serverkey, keys.publicHalf.data());
    receiver.socket.set(zmq::sockopt::curve_publickey, receivers.publicHalf.data());
    receiver.socket.set(zmq::sockopt::curve_secretkey, receivers.secretHalf.data());
    receiver.connect(publisher.endpoint());
    ASSERT_TRUE(publisher.waitForReceivers()) << publisher.problem().toStdString();
    ASSERT_TRUE(publisher.publish({}, ramp()));
    const auto message = receiver.next();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->frame(), 1);
}

TEST(FramePublisher, a_key_that_is_none_is_told)
{
    PublishOptions wrong = options(true, 1);
    wrong.secretKey = "too short";
    const FramePublisher publisher(wrong);
    EXPECT_EQ(publisher.problem(), "frames cannot be published at 0: Invalid argument");
}
