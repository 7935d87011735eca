// The value converters: accepted, rejected and truncated texts.
#include <limits>

#include "test_support.h"
#include "ooxml/dom.h"
#include "ooxml/ooxml_read.h"

namespace
{
// Both overloads of a converter: the wxString one and the UTF-8 one of the fast path.
#define BOTH(parse) [](auto* dest, const auto& text) { return parse(dest, text); }

ooxml::dom::Text Utf8(ooxml::dom::Document& document, const wxString& text)
{
    const wxScopedCharBuffer utf8 = text.utf8_str();
    return document.NewText(std::string_view(utf8.data(), utf8.length()));
}

// Each accepted text converts to its value; each rejected one fails and leaves the destination as it was; both
// overloads agree on every text.
template <class T, class Parse>
void Check(Parse parse, T sentinel, std::initializer_list<std::pair<const char*, T>> accepted,
           std::initializer_list<const char*> rejected)
{
    ooxml::dom::Document document;
    auto both = [&](T* value, const wxString& text) {
        T fromUtf8 = *value;
        const bool ok = parse(value, text);
        EXPECT_EQ(parse(&fromUtf8, Utf8(document, text)), ok) << '"' << text << '"';
        EXPECT_TRUE(fromUtf8 == *value) << '"' << text << "\" from UTF-8 gives " << +fromUtf8;
        return ok;
    };
    for (const auto& row : accepted)
    {
        T value = sentinel;
        EXPECT_TRUE(both(&value, wxString::FromUTF8(row.first)) && value == row.second)
            << '"' << row.first << "\" gives " << +value;
    }
    for (const char* text : rejected)
    {
        T value = sentinel;
        EXPECT_TRUE(!both(&value, wxString::FromUTF8(text)) && value == sentinel)
            << '"' << text << "\" accepted or written: " << +value;
    }
}
} // namespace

TEST(Converters, NumbersBooleansVariantsAndLists)
{
    typedef std::numeric_limits<long long> LL;
    // 8 and 16 bits: a 32-bit value, its low bits kept without a range check.
    Check<char>(BOTH(ParseInt8), 9, {{"300", 44}, {"-129", 127}, {"-5", -5}, {"255", -1}}, {"2147483648", "x", ""});
    Check<unsigned char>(BOTH(ParseUInt8), 9, {{"255", 255}, {"256", 0}, {"4294967295", 255}}, {"4294967296", "-1"});
    Check<short>(BOTH(ParseInt16), 9, {{"70000", 4464}, {"-32769", 32767}}, {"2147483648", "-2147483649"});
    Check<unsigned short>(BOTH(ParseUInt16), 9, {{"65536", 0}, {"65535", 65535}}, {"4294967296"});
    Check<int>(BOTH(ParseInt32), 9, {{"2147483647", 2147483647}, {"-2147483648", std::numeric_limits<int>::min()},
                               {" +12", 12}, {"010", 10}},
               {"2147483648", "-2147483649", "0x10", "12 ", "", "1.5", "1e3", "\xEF\xBC\x91\xEF\xBC\x92",
                "\xC2\xA0" "12", "12\xC2\xA0"});
    // strtoul wraps a negative number around instead of refusing it.
    Check<unsigned int>(BOTH(ParseUInt32), 9, {{"4294967295", 4294967295u}, {"0", 0}, {"-0", 0}},
                        {"4294967296", "-1", "-18446744073709551615", "x"});
    Check<long long>(BOTH(ParseInt64), 9, {{"9223372036854775807", LL::max()}, {"-9223372036854775808", LL::min()}},
                     {"9223372036854775808", "0x1", "", "1 "});
    Check<unsigned long long>(BOTH(ParseUInt64), 9, {{"18446744073709551615", ~0ull}},
                              {"18446744073709551616", "-1", " -2", "x"});
    // Floats: base 10 in any locale, no hexadecimal. Booleans: exactly four texts.
    Check<double>(BOTH(ParseDouble), 9, {{"1.5", 1.5}, {"1e3", 1000}, {" -2.25", -2.25}, {"-0", 0}, {"1E-3", 0.001}},
                  {"1,5", "0x1p3", "-0X10", " 0x1", "2.5 ", "", "1e400", "abc"});
    Check<float>(BOTH(ParseFloat), 9, {{"0.1", 0.1f}, {"-3.5", -3.5f}}, {"abc", "0x1p3", ""});
    Check<bool>(BOTH(ParseBool), true, {{"false", false}, {"0", false}}, {"TRUE", "True", "yes", " true", "true ", "", "2"});
    Check<bool>(BOTH(ParseBool), false, {{"true", true}, {"1", true}}, {"FALSE", "no", "off", " 0"});
    // A variant is a 64-bit integer, else a base-10 double, else the text.
    wxAny v = 5;
    EXPECT_TRUE(ParseVariant(&v, "12") && v.CheckType<long long>() && v.As<long long>() == 12);
    for (const char* number : {"12.5", "1e3", "9223372036854775808"})
        EXPECT_TRUE(ParseVariant(&v, number) && v.CheckType<double>()) << number;
    EXPECT_EQ(v.As<double>(), 9223372036854775808.0);
    for (const char* text : {"auto", "150%", "0x1p3", "", " 1 "})
        EXPECT_TRUE(ParseVariant(&v, text) && v.CheckType<wxString>() && v.As<wxString>() == text) << text;
    ooxml::dom::Document document;
    for (const char* text : {"12", "-7", "12.5", "1e400", "9223372036854775808", "auto", "\xC3\xA9t\xC3\xA9", " 3"})
    {
        wxAny wide, narrow;
        EXPECT_TRUE(ParseVariant(&wide, wxString::FromUTF8(text)) && ParseVariant(&narrow, Utf8(document, wxString::FromUTF8(text))));
        auto printed = [](const wxAny& a) {
            return a.CheckType<wxString>() ? a.As<wxString>()
                                           : wxString::Format("%.17g", a.CheckType<double>() ? a.As<double>() : a.As<long long>());
        };
        EXPECT_TRUE(wide.HasSameType(narrow)) << text;
        EXPECT_EQ(printed(wide), printed(narrow)) << text;
    }
    // Lists split at single spaces and append.
    std::vector<int> items{7};
    EXPECT_TRUE(ParseList(&items, "", ParseInt32) && ParseList(&items, "1 2 -1", ParseInt32));
    EXPECT_EQ(items, std::vector<int>({7, 1, 2, -1})); // empty text: nothing
    std::vector<int> failed;
    EXPECT_FALSE(ParseList(&failed, "1  2", ParseInt32) || ParseList(&failed, "3 ", ParseInt32)); // an empty piece
    EXPECT_EQ(failed, std::vector<int>({1, 3})); // fails; what came before it stays
    std::vector<wxString> texts;
    EXPECT_TRUE(ParseList(&texts, "a\\ b c", ParseString) && texts == std::vector<wxString>({"a b", "c"})); // escaped
}
