// Generic traversal: members in order (base class first), C++ and XML names, presence bits, owners, values, children.
#include "ooxml/aliases.h"
#include "ooxml/package/relationships.h"
#include "ooxml/traversal/schemas.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
using namespace ooxml::traversal;

namespace
{
// Every call of the traversal of a T read from `xml` as "name/xml#bit+|-[index]@owner" and " = value", the child's
// class or " absent", one per line.
template <class T>
struct Recorder : Visitor
{
    std::string lines;
    Recorder() = default;
    explicit Recorder(const std::string& xml)
    {
        wxXmlDocument document;
        EXPECT_TRUE(Parse("<" + xml + " xmlns='http://schemas.openxmlformats.org/package/2006/relationships' xmlns:w="
                          "'http://schemas.openxmlformats.org/wordprocessingml/2006/main'/>", &document));
        XMLNSContext context(&document);
        T object;
        EXPECT_TRUE(object.ReadXML(document.GetRoot(), &context));
        Visit(NodeOf(object), *this);
    }
    void Add(const Member& m, const std::string& what)
    {
        lines += std::string(m.name) + "/" + m.xml + "#" + std::to_string(m.bit) + (m.present ? "+" : "-") +
                 (m.repeated ? "[" + std::to_string(m.index) + "]" : "") + "@" + m.owner->name + what + "\n";
    }
    void OnValue(const Member& m, const wxAny& value) override
    {
        wxString text;
        Add(m, " = " + Utf8(value.GetAs(&text) ? text : "?"));
    }
    void OnAbsentObject(const Member& m) override { Add(m, " absent"); }
    void OnObject(const Member& m, const Node& child) override { Add(m, child.info->name); }
};
} // namespace

TEST(Traversal, MembersInOrderWithNamesBitsAndOwners)
{
    EXPECT_EQ(Recorder<ooxml::relationships::CT_Relationship>("Relationship Id='1' Target='a'").lines,
              "Value/#0-@CT_Relationship = \nTargetMode/TargetMode#1-@CT_Relationship = \n"
              "Target/Target#2+@CT_Relationship = a\nType/Type#3-@CT_Relationship = \nId/Id#4+@CT_Relationship = 1\n");
    // The base class's members come first; a derived class reads only its own, so the base's id stays unread.
    EXPECT_EQ(Recorder<ooxml::wml::CT_TrackChange>("w:ins w:id='7' w:author='A'").lines,
              "Id/id#0-@CT_Markup = 0\nAuthor/author#0+@CT_TrackChange = A\nDate/date#1-@CT_TrackChange = \n");
    Recorder<ooxml::relationships::CT_Relationship> recorder;
    Node none{nullptr, nullptr};
    Visit(none, recorder);
    EXPECT_TRUE(!none && recorder.lines.empty());
}
