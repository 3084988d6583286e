// Workers for OpenCV that are plain threads, begun and ended for each piece of work, so that ThreadSanitizer
// sees what the pieces share. They are there before main().

#include <opencv2/core/parallel/parallel_backend.hpp>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace {

class PlainWorkers : public cv::parallel::ParallelForAPI
{
public:
    void parallel_for(int tasks, FN_parallel_for_body_cb_t body, void *data) override
    {
        const int share = (tasks + m_threads - 1) / m_threads;
        std::vector<std::jthread> threads;
        for (int begin = 0; begin < tasks; begin += share)
            threads.emplace_back([=] { body(begin, std::min(begin + share, tasks), data); });
    }
    [[nodiscard]] int getThreadNum() const override { return 0; }
    [[nodiscard]] int getNumThreads() const override { return m_threads; }
    int setNumThreads(int threads) override { return m_threads = std::max(threads, 1); }
    [[nodiscard]] const char *getName() const override { return "plain threads"; }

private:
    int m_threads = 4;
};

const bool areSet = [] {
    cv::parallel::setParallelForBackend(std::make_shared<PlainWorkers>(), false);
    return true;
}();

} // namespace
