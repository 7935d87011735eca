// Generic traversal: members in declaration order with XML name, bit,
// presence and value or child, base class first, arrays item by item.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ooxml/aliases.h"
#include "ooxml/package/relationships.h"
#include "ooxml/traversal/all.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
namespace traversal = ooxml::traversal;

namespace
{

// Records every call as one line.
class Recorder : public traversal::Visitor
{
public:
    std::vector<std::string> lines;
    void OnValue(const traversal::Member& m, const wxAny& value) override
    {
        wxString text;
        value.GetAs(&text);
        lines.push_back(Describe(m) + " = " + Utf8(text));
    }
    void OnObject(const traversal::Member& m, const traversal::Node& child) override
    {
        lines.push_back(Describe(m) + " -> " + child.info->schema + "::" + child.info->name);
        traversal::Visit(child, *this);
    }
    void OnAbsentObject(const traversal::Member& m) override { lines.push_back(Describe(m) + " absent"); }

private:
    static std::string Describe(const traversal::Member& m)
    {
        return std::string(m.name) + "/" + m.xml + "#" + std::to_string(m.bit) + (m.present ? "+" : "-") +
               (m.repeated ? "[" + std::to_string(m.index) + "]" : "") + "@" + m.owner->name;
    }
};

template <class T>
T Read(const std::string& xml)
{
    wxXmlDocument document;
    EXPECT_TRUE(Parse(xml, &document));
    XMLNSContext context(&document);
    T object;
    EXPECT_TRUE(object.ReadXML(document.GetRoot(), &context));
    return object;
}

} // namespace

TEST(Traversal, MembersInDeclarationOrderWithNamesBitsAndPresence)
{
    auto rels = Read<ooxml::relationships::CT_Relationships>(
        "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
        "<Relationship Id='rId1' Type='t1' Target='a.xml'/><Relationship Id='rId2' Type='t2' Target='b' "
        "TargetMode='External'/></Relationships>");
    Recorder recorder;
    traversal::Visit(traversal::NodeOf(rels), recorder);
    const std::vector<std::string> expected = {
        "Relationship/Relationship#0+[0]@CT_Relationships -> relationships::CT_Relationship",
        "Value/#0-@CT_Relationship = ",
        "TargetMode/TargetMode#1-@CT_Relationship = ",
        "Target/Target#2+@CT_Relationship = a.xml",
        "Type/Type#3+@CT_Relationship = t1",
        "Id/Id#4+@CT_Relationship = rId1",
        "Relationship/Relationship#0+[1]@CT_Relationships -> relationships::CT_Relationship",
        "Value/#0-@CT_Relationship = ",
        "TargetMode/TargetMode#1+@CT_Relationship = External",
        "Target/Target#2+@CT_Relationship = b",
        "Type/Type#3+@CT_Relationship = t2",
        "Id/Id#4+@CT_Relationship = rId2",
    };
    EXPECT_EQ(recorder.lines, expected);
}

TEST(Traversal, BaseClassMembersComeFirst)
{
    auto change = Read<ooxml::wml::CT_TrackChange>(
        "<w:ins xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main' w:id='7' w:author='Ann'/>");
    Recorder recorder;
    traversal::Visit(traversal::NodeOf(change), recorder);
    // A derived class reads only its own members (Part 2.2): the base's id stays absent.
    const std::vector<std::string> expected = {
        "Id/id#0-@CT_Markup = 0",
        "Author/author#0+@CT_TrackChange = Ann",
        "Date/date#1-@CT_TrackChange = ",
    };
    EXPECT_EQ(recorder.lines, expected);
}

TEST(Traversal, AbsentSingleObjectsAndEmptyArrays)
{
    ooxml::wml::CT_R run;
    Recorder recorder;
    traversal::Visit(traversal::NodeOf(run), recorder);
    ASSERT_FALSE(recorder.lines.empty());
    EXPECT_EQ(recorder.lines[0], "EG_RPr/#0-@CT_R absent") << recorder.lines[0];
    for (const std::string& line : recorder.lines)
        EXPECT_EQ(line.find("EG_RunInnerContent"), std::string::npos) << "an empty array reports no item";
    EXPECT_FALSE(traversal::NodeOf(run).info == nullptr);
    traversal::Node none{nullptr, nullptr};
    traversal::Visit(none, recorder); // a null node visits nothing
    EXPECT_FALSE(none);
}
