// Generic traversal: members in declaration order (base class first) with C++ and XML name, presence bit,
// owner, and value, child or absence.
#include "ooxml/aliases.h"
#include "ooxml/package/relationships.h"
#include "ooxml/traversal/all.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
namespace traversal = ooxml::traversal;

namespace
{
// Every call as "name/xml#bit+|-[index]@owner" and " = value", the child's class or " absent", one per line.
struct Recorder : traversal::Visitor
{
    std::string lines;
    void Add(const traversal::Member& m, const std::string& what)
    {
        lines += std::string(m.name) + "/" + m.xml + "#" + std::to_string(m.bit) + (m.present ? "+" : "-") +
                 (m.repeated ? "[" + std::to_string(m.index) + "]" : "") + "@" + m.owner->name + what + "\n";
    }
    void OnValue(const traversal::Member& m, const wxAny& value) override
    {
        wxString text;
        value.GetAs(&text);
        Add(m, " = " + Utf8(text));
    }
    void OnAbsentObject(const traversal::Member& m) override { Add(m, " absent"); }
    void OnObject(const traversal::Member& m, const traversal::Node& child) override { Add(m, child.info->name); }
};

template <class T>
std::string Visit(const std::string& xml)
{
    wxXmlDocument document;
    EXPECT_TRUE(Parse("<" + xml + " xmlns='http://schemas.openxmlformats.org/package/2006/relationships' xmlns:w="
                      "'http://schemas.openxmlformats.org/wordprocessingml/2006/main'/>", &document));
    XMLNSContext context(&document);
    T object;
    EXPECT_TRUE(object.ReadXML(document.GetRoot(), &context));
    Recorder recorder;
    traversal::Visit(traversal::NodeOf(object), recorder);
    return recorder.lines;
}
} // namespace

TEST(Traversal, MembersInOrderWithNamesBitsAndOwners)
{
    EXPECT_EQ(Visit<ooxml::relationships::CT_Relationship>("Relationship Id='1' Target='a'"),
              "Value/#0-@CT_Relationship = \nTargetMode/TargetMode#1-@CT_Relationship = \n"
              "Target/Target#2+@CT_Relationship = a\nType/Type#3-@CT_Relationship = \nId/Id#4+@CT_Relationship = 1\n");
    // The base class's members come first; a derived class reads only its own, so the base's id stays unread.
    EXPECT_EQ(Visit<ooxml::wml::CT_TrackChange>("w:ins w:id='7' w:author='A'"),
              "Id/id#0-@CT_Markup = 0\nAuthor/author#0+@CT_TrackChange = A\nDate/date#1-@CT_TrackChange = \n");
    Recorder recorder;
    traversal::Node none{nullptr, nullptr};
    traversal::Visit(none, recorder);
    EXPECT_TRUE(!none && recorder.lines.empty());
}
