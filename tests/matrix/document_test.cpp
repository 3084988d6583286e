#include "tests/matrix/cell.h"
#include "tests/matrix/document.h"

#include <gtest/gtest.h>

#include <QFile>

#include <set>

TEST(ReliabilityDocument, shows_the_table_as_it_is_run)
{
    QFile file(QStringLiteral(QV1K_RELIABILITY_DOCUMENT));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().replace("\r\n", "\n").toStdString() == reliabilityDocument())
        << "write it anew: cmake --build --preset release --target reliability-document";
}

TEST(ReliabilityDocument, tells_of_each_column_what_comes_of_it_or_why_it_makes_no_sense)
{
    for (const Group &group : allGroups()) {
        std::multiset<Fault> told;
        for (const Entry &entry : group.entries)
            told.insert(entry.fault);
        for (const Senseless &senseless : group.senseless)
            told.insert(senseless.faults.begin(), senseless.faults.end());
        for (const Column &column : allColumns())
            EXPECT_EQ(told.count(column.fault), 1U) << group.title << ": " << column.name;
    }
}

TEST(ReliabilityDocument, tells_each_cell_once)
{
    std::set<std::string> names;
    for (const Cell &cell : allCells())
        EXPECT_TRUE(names.insert(cell.name()).second) << cell.name();
    EXPECT_GE(names.size(), 200U);
}
