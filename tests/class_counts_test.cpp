// Part 1.3: the number of generated classes of every schema.  The generator
// writes one test per class into the suite of its schema (tests/generated/),
// so the suites' sizes are the class counts; this test runs beside them.
#include <gtest/gtest.h>

#include "part13.h"

namespace
{
int SuiteSize(const std::string& suite)
{
    const ::testing::UnitTest& unit = *::testing::UnitTest::GetInstance();
    for (int i = 0; i < unit.total_test_suite_count(); ++i)
        if (unit.GetTestSuite(i)->name() == "Generated_" + suite)
            return unit.GetTestSuite(i)->total_test_count();
    return -1;
}
} // namespace

TEST(ClassCounts, EverySchemaHasTheClassesOfPart13)
{
    int total = 0;
    for (const part13::SchemaRow& row : part13::kSchemas)
    {
        EXPECT_EQ(SuiteSize(row.suite), row.classes) << row.suite << " (" << row.uri << ")";
        total += row.classes;
    }
    EXPECT_EQ(total, 1959);
}
