#include "support/ByteCountFormatter.h"

#include <gtest/gtest.h>

using kestrow::ByteCountFormatter;

TEST(ByteCountFormatter, MatchesTheFileStyleWithDecimalUnits)
{
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "Zero KB"},         {1, "1 byte"},           {2, "2 bytes"},
        {999, "999 bytes"},     {1000, "1 KB"},          {1499, "1 KB"},
        {1500, "2 KB"},         {999499, "999 KB"},      {999500, "1 MB"},
        {1000000, "1 MB"},      {1234567, "1.2 MB"},     {1250000, "1.3 MB"},
        {10000000, "10 MB"},    {999950000, "1 GB"},     {1234567890, "1.23 GB"},
        {1100000000, "1.1 GB"}, {5000000000000, "5 TB"}, {1234567890123456, "1.23 PB"},
        {-1500, "-2 KB"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(ByteCountFormatter::format(bytes).toStdString(), text) << bytes;
}

TEST(ByteCountFormatter, HandlesTheExtremes)
{
    EXPECT_EQ(ByteCountFormatter::format(std::numeric_limits<std::int64_t>::max()).toStdString(), "9.22 EB");
    EXPECT_EQ(ByteCountFormatter::format(std::numeric_limits<std::int64_t>::min()).toStdString(), "-9.22 EB");
}
