// Part 1.2: the value converters, accepted, rejected and truncated texts.
#include <limits>

#include "test_support.h"

#include "ooxml/ooxml_read.h"

namespace
{

// Converts `text`; on failure checks that the destination kept `sentinel`.
template <class T>
bool Converts(bool (*parse)(T*, const wxString&), const wxString& text, T* out, T sentinel)
{
    T value = sentinel;
    const bool ok = parse(&value, text);
    if (!ok)
    {
        EXPECT_EQ(value, sentinel) << "destination written on failure of \"" << text.utf8_str() << "\"";
    }
    *out = value;
    return ok;
}

} // namespace

TEST(Converters, Int8TruncatesToLowEightBits)
{
    char v;
    ASSERT_TRUE(Converts(ParseInt8, "300", &v, char(9)));
    EXPECT_EQ(v, 44);
    ASSERT_TRUE(Converts(ParseInt8, "-129", &v, char(9)));
    EXPECT_EQ(v, 127);
    ASSERT_TRUE(Converts(ParseInt8, "-5", &v, char(9)));
    EXPECT_EQ(v, -5);
    EXPECT_FALSE(Converts(ParseInt8, "2147483648", &v, char(9))); // outside the 32-bit long
    EXPECT_FALSE(Converts(ParseInt8, "x", &v, char(9)));
}

TEST(Converters, UInt8TruncatesToLowEightBits)
{
    unsigned char v;
    ASSERT_TRUE(Converts(ParseUInt8, "255", &v, (unsigned char)9));
    EXPECT_EQ(v, 255);
    ASSERT_TRUE(Converts(ParseUInt8, "256", &v, (unsigned char)9));
    EXPECT_EQ(v, 0);
    EXPECT_FALSE(Converts(ParseUInt8, "4294967296", &v, (unsigned char)9));
    EXPECT_FALSE(Converts(ParseUInt8, "-1", &v, (unsigned char)9));
}

TEST(Converters, Int16AndUInt16TruncateToLowSixteenBits)
{
    short s;
    ASSERT_TRUE(Converts(ParseInt16, "70000", &s, short(9)));
    EXPECT_EQ(s, 4464);
    ASSERT_TRUE(Converts(ParseInt16, "-32769", &s, short(9)));
    EXPECT_EQ(s, 32767);
    unsigned short u;
    ASSERT_TRUE(Converts(ParseUInt16, "65536", &u, (unsigned short)9));
    EXPECT_EQ(u, 0);
    ASSERT_TRUE(Converts(ParseUInt16, "65535", &u, (unsigned short)9));
    EXPECT_EQ(u, 65535);
}

TEST(Converters, Int32AcceptsExactlyTheSigned32BitRange)
{
    int v;
    ASSERT_TRUE(Converts(ParseInt32, "2147483647", &v, 9));
    EXPECT_EQ(v, 2147483647);
    ASSERT_TRUE(Converts(ParseInt32, "-2147483648", &v, 9));
    EXPECT_EQ(v, std::numeric_limits<int>::min());
    EXPECT_FALSE(Converts(ParseInt32, "2147483648", &v, 9));
    EXPECT_FALSE(Converts(ParseInt32, "-2147483649", &v, 9));
}

TEST(Converters, UInt32RejectsValuesBeyond32Bits)
{
    unsigned int v;
    ASSERT_TRUE(Converts(ParseUInt32, "4294967295", &v, 9u));
    EXPECT_EQ(v, 4294967295u);
    EXPECT_FALSE(Converts(ParseUInt32, "4294967296", &v, 9u));
    EXPECT_FALSE(Converts(ParseUInt32, "-1", &v, 9u));
}

TEST(Converters, Int64AndUInt64UseThe64BitRange)
{
    long long s;
    ASSERT_TRUE(Converts(ParseInt64, "9223372036854775807", &s, 9ll));
    EXPECT_EQ(s, std::numeric_limits<long long>::max());
    EXPECT_FALSE(Converts(ParseInt64, "9223372036854775808", &s, 9ll));
    unsigned long long u;
    ASSERT_TRUE(Converts(ParseUInt64, "18446744073709551615", &u, 9ull));
    EXPECT_EQ(u, std::numeric_limits<unsigned long long>::max());
    EXPECT_FALSE(Converts(ParseUInt64, "18446744073709551616", &u, 9ull));
}

TEST(Converters, IntegersAreBase10WholeTextWithLeadingSpaceAndSign)
{
    int v;
    ASSERT_TRUE(Converts(ParseInt32, " +12", &v, 9));
    EXPECT_EQ(v, 12);
    ASSERT_TRUE(Converts(ParseInt32, "010", &v, 9)); // not octal
    EXPECT_EQ(v, 10);
    EXPECT_FALSE(Converts(ParseInt32, "0x10", &v, 9)); // not hexadecimal
    EXPECT_FALSE(Converts(ParseInt32, "12 ", &v, 9)); // trailing characters
    EXPECT_FALSE(Converts(ParseInt32, "", &v, 9));
    EXPECT_FALSE(Converts(ParseInt32, "1.5", &v, 9));
}

TEST(Converters, DoubleUsesTheDecimalPointWhateverTheLocale)
{
    double v;
    ASSERT_TRUE(Converts(ParseDouble, "1.5", &v, 9.0));
    EXPECT_EQ(v, 1.5);
    ASSERT_TRUE(Converts(ParseDouble, "1e3", &v, 9.0));
    EXPECT_EQ(v, 1000.0);
    ASSERT_TRUE(Converts(ParseDouble, " -2.25", &v, 9.0));
    EXPECT_EQ(v, -2.25);
    EXPECT_FALSE(Converts(ParseDouble, "1,5", &v, 9.0));
    EXPECT_FALSE(Converts(ParseDouble, "0x1p3", &v, 9.0)); // base 10 only
    EXPECT_FALSE(Converts(ParseDouble, "2.5 ", &v, 9.0));
    EXPECT_FALSE(Converts(ParseDouble, "", &v, 9.0));
    EXPECT_FALSE(Converts(ParseDouble, "1e400", &v, 9.0)); // out of range
}

TEST(Converters, FloatRoundsTheDouble)
{
    float v;
    ASSERT_TRUE(Converts(ParseFloat, "0.1", &v, 9.0f));
    EXPECT_EQ(v, 0.1f);
    EXPECT_FALSE(Converts(ParseFloat, "abc", &v, 9.0f));
}

TEST(Converters, BoolAcceptsExactlyFourTexts)
{
    bool v;
    ASSERT_TRUE(Converts(ParseBool, "true", &v, false));
    EXPECT_TRUE(v);
    ASSERT_TRUE(Converts(ParseBool, "1", &v, false));
    EXPECT_TRUE(v);
    ASSERT_TRUE(Converts(ParseBool, "false", &v, true));
    EXPECT_FALSE(v);
    ASSERT_TRUE(Converts(ParseBool, "0", &v, true));
    EXPECT_FALSE(v);
    for (const char* text : {"TRUE", "True", "yes", " true", "true ", "", "on"})
        EXPECT_FALSE(Converts(ParseBool, text, &v, true)) << text;
}

TEST(Converters, StringNeverFails)
{
    wxString v = "old";
    EXPECT_TRUE(ParseString(&v, ""));
    EXPECT_EQ(v, "");
    EXPECT_TRUE(ParseString(&v, "  any text "));
    EXPECT_EQ(v, "  any text ");
}

TEST(Converters, VariantPrefersIntegerThenDoubleThenText)
{
    wxAny v;
    EXPECT_TRUE(ParseVariant(&v, "12"));
    EXPECT_TRUE(v.CheckType<long long>());
    EXPECT_EQ(v.As<long long>(), 12);
    EXPECT_TRUE(ParseVariant(&v, "12.5"));
    EXPECT_TRUE(v.CheckType<double>());
    EXPECT_EQ(v.As<double>(), 12.5);
    EXPECT_TRUE(ParseVariant(&v, "1e3"));
    EXPECT_TRUE(v.CheckType<double>());
    EXPECT_TRUE(ParseVariant(&v, "auto"));
    EXPECT_TRUE(v.CheckType<wxString>());
    EXPECT_EQ(v.As<wxString>(), "auto");
    EXPECT_TRUE(ParseVariant(&v, "150%"));
    EXPECT_EQ(v.As<wxString>(), "150%");
}

TEST(Converters, VariantOfEmptyTextIsEmptyString)
{
    wxAny v = 5;
    EXPECT_TRUE(ParseVariant(&v, ""));
    ASSERT_TRUE(v.CheckType<wxString>());
    EXPECT_EQ(v.As<wxString>(), "");
}

TEST(Converters, ListOfEmptyTextAppendsNothing)
{
    std::vector<int> items;
    EXPECT_TRUE(ParseList(&items, "", ParseInt32));
    EXPECT_TRUE(items.empty());
}

TEST(Converters, ListAppendsThenFailsOnEmptyLastPiece)
{
    std::vector<int> items;
    EXPECT_FALSE(ParseList(&items, "1 ", ParseInt32));
    EXPECT_EQ(items, std::vector<int>({1}));
}

TEST(Converters, ListSplitsAtSingleSpacesAndAppends)
{
    std::vector<int> items{7};
    EXPECT_TRUE(ParseList(&items, "1 2 -1", ParseInt32));
    EXPECT_EQ(items, std::vector<int>({7, 1, 2, -1}));
    std::vector<int> doubled;
    EXPECT_FALSE(ParseList(&doubled, "1  2", ParseInt32)); // the empty piece fails
    EXPECT_EQ(doubled, std::vector<int>({1}));
}

TEST(Converters, ListEscapedSpaceStaysInItsPiece)
{
    std::vector<wxString> items;
    EXPECT_TRUE(ParseList(&items, "a\\ b c", ParseString));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0], "a b");
    EXPECT_EQ(items[1], "c");
}
