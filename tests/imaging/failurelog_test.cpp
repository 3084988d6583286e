#include "imaging/failurelog.h"

#include "tests/support/debugoutput.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

TEST(FailureLog, a_line_takes_texts_with_percent_signs_as_they_are)
{
    EXPECT_EQ(failureLine("文件打开失败", "/a%3/50%1 %2.csv", "no %1"),
              "文件打开失败：/a%3/50%1 %2.csv（no %1）");
}

TEST(FailureLog, an_exception_becomes_the_failure_of_the_file_in_one_line)
{
    EXPECT_EQ(guardedFile("a.csv", []() -> QString { throw std::runtime_error("two\nlines "); }),
              "文件写入异常：a.csv（two lines）");
    EXPECT_TRUE(guardedFile("a.csv", []() -> QString { throw std::bad_alloc(); }).contains("bad_alloc"));
    EXPECT_EQ(guardedFile("a.csv", [] { return QString(); }), QString());
    EXPECT_EQ(guardedFile("a.csv", [] { return QString("line"); }), "line");
}

TEST(FailureLog, a_line_goes_to_the_debug_output_where_no_log_can_take_it)
{
    const auto isTold = [] {
        const DebugOutput output;
        reportFailure("文件打开失败");
        return output.contains("文件打开失败");
    };
    EXPECT_TRUE(isTold());
    const UnopenedLog log;
    EXPECT_TRUE(isTold());
}
