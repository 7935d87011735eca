// Every generated class reads a sample giving each member a value once; the traversal must then report each member
// the class reads as present with the converted value, every other one (inherited, names an earlier member took) as
// absent. A broken reader, name mapping, converter, presence bit or registry entry gives a differing report.
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <gtest/gtest.h>
#include <wx/log.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>
#include "ooxml/dom.h"
#include "ooxml/opc/xml.h"
#include "ooxml/traversal/traversal.h"

namespace
{
struct SchemaDeclarations
{
    const char* schema;
    const char* xmlns;   // the schema's namespace map as declarations
};
struct ClassSample
{
    const char* schema;
    const char* name;
    const char* attributes;
    const char* content;
    const char* expected;   // "Name+value" / "Name-" / "Name[i]+value", in visit order
};
#include "generated/class_samples.inc"

// A value as the expected reports write it: a type letter and the value.
std::string Typed(const wxAny& value)
{
    char buffer[64];
    if (value.CheckType<bool>())
        return value.As<bool>() ? "b1" : "b0";
    if (value.CheckType<long long>())
    {
        std::snprintf(buffer, sizeof buffer, "i%lld", value.As<long long>());
        return buffer;
    }
    if (value.CheckType<unsigned long long>())
    {
        std::snprintf(buffer, sizeof buffer, "u%llu", value.As<unsigned long long>());
        return buffer;
    }
    if (value.CheckType<double>())
    {
        std::snprintf(buffer, sizeof buffer, "d%.17g", value.As<double>());
        return buffer;
    }
    if (value.CheckType<wxString>())
        return "s" + std::string(value.As<wxString>().utf8_str());
    return "?";
}
// Prints the members of one object (not of its children) as the expected reports do.
class Report : public ooxml::traversal::Visitor
{
public:
    std::string text;
    void OnValue(const ooxml::traversal::Member& m, const wxAny& value) override
    {
        Add(m);
        // The text of an element is read without setting its presence bit.
        if (m.present || m.kind == ooxml::traversal::MemberKind::Text)
            text += Typed(value);
    }
    void OnObject(const ooxml::traversal::Member& m, const ooxml::traversal::Node&) override { Add(m); }
    void OnAbsentObject(const ooxml::traversal::Member& m) override { Add(m); }
private:
    void Add(const ooxml::traversal::Member& m)
    {
        if (!text.empty())
            text += ' ';
        text += m.name;
        if (m.repeated)
            text += "[" + std::to_string(m.index) + "]";
        text += m.present ? '+' : '-';
    }
};

const char* DeclarationsOf(const char* schema)
{
    for (const SchemaDeclarations& row : kSchemaDeclarations)
        if (std::strcmp(row.schema, schema) == 0)
            return row.xmlns;
    return nullptr;
}

// Reads the sample on one of the two trees; the report of the traversal afterwards.
std::string ReadSample(const ooxml::traversal::ClassInfo& info, const wxString& xml, bool fast, bool* read)
{
    std::unique_ptr<void, void (*)(void*)> object(info.create(), info.destroy);
    if (fast)
    {
        const wxScopedCharBuffer utf8 = xml.utf8_str();
        ooxml::dom::Document document;
        wxString problem;
        EXPECT_TRUE(ooxml::opc::ParseXmlFast(utf8.data(), utf8.length(), ooxml::opc::Limits(), &document, &problem))
            << problem;
        XMLNSContext context(&document);
        *read = document.GetRoot() && info.readDom(object.get(), document.GetRoot(), &context);
    }
    else
    {
        wxStringInputStream input(xml);
        wxXmlDocument document;
        EXPECT_TRUE(document.Load(input));
        XMLNSContext context(&document);
        *read = document.GetRoot() && info.read(object.get(), document.GetRoot(), &context);
    }
    Report report;
    info.visit(object.get(), report);
    return report.text;
}

// Both trees: the wxWidgets one and the compact one of the fast path.
TEST(ClassSamples, EveryClassReadsItsSampleMemberByMember)
{
    const ooxml::traversal::ClassList classes = ooxml::traversal::AllClasses();
    const std::size_t samples = sizeof(kClassSamples) / sizeof(kClassSamples[0]);
    ASSERT_EQ(classes.count, samples) << "the registry and the samples list different classes";
    wxLogNull quiet; // names of unbound prefixes are logged as invalid
    std::size_t failures = 0;
    for (std::size_t i = 0; i < samples && failures < 20; ++i)
    {
        const ooxml::traversal::ClassInfo& info = *classes.items[i];
        const ClassSample& sample = kClassSamples[i];
        SCOPED_TRACE(std::string(sample.schema) + "::" + sample.name);
        ASSERT_STREQ(info.name, sample.name);
        ASSERT_STREQ(info.schema, sample.schema);
        const char* xmlns = DeclarationsOf(sample.schema);
        ASSERT_NE(xmlns, nullptr);
        const wxString xml = wxString::Format("<sample %s %s>%s</sample>", xmlns, wxString::FromUTF8(sample.attributes),
                                              wxString::FromUTF8(sample.content));
        for (const bool fast : {false, true})
        {
            bool read = false;
            const std::string report = ReadSample(info, xml, fast, &read);
            EXPECT_TRUE(read) << (fast ? "fast path: " : "wxWidgets: ") << xml.utf8_str();
            EXPECT_EQ(report, sample.expected) << (fast ? "fast path: " : "wxWidgets: ") << xml.utf8_str();
            if (!read || report != sample.expected)
                ++failures;
        }
    }
    EXPECT_EQ(failures, 0u);
}
} // namespace
