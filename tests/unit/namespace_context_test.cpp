// Part 1.1: XMLNSContext, its consequence table, edge cases and logging.
#include "test_support.h"

#include "ooxml/namespaces.h"

using ooxml_test::LogCapture;
using ooxml_test::ParseXml;

namespace
{

const char* const kChart = "http://schemas.openxmlformats.org/drawingml/2006/chart";
const char* const kRelationships = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const kSpreadsheet = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

// The chart schema's map: own URI -> "", relationships -> "r", ...
const XMLNSMap& ChartMap()
{
    return schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap;
}

wxXmlNode* Element(const wxString& name, std::initializer_list<std::pair<const char*, const char*>> attributes)
{
    wxXmlNode* node = new wxXmlNode(wxXML_ELEMENT_NODE, name);
    for (const auto& attribute : attributes)
        node->AddAttribute(attribute.first, attribute.second);
    return node;
}

// A document whose root carries the given declarations.
std::unique_ptr<wxXmlDocument> DocumentWith(std::initializer_list<std::pair<const char*, const char*>> declarations)
{
    std::unique_ptr<wxXmlDocument> document(new wxXmlDocument);
    document->SetRoot(Element("root", declarations));
    return document;
}

} // namespace

// -- The consequence table ----------------------------------------------------------------

TEST(NamespaceContext, OwnPrefixBoundInnermostGivesBareLocalName)
{
    auto document = DocumentWith({{"xmlns:c", "urn:other"}});
    XMLNSContext context(document.get());
    std::unique_ptr<wxXmlNode> inner(Element("inner", {{"xmlns:c", kChart}}));
    context.PushStack(inner.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("c:barChart", ChartMap()), "barChart");
    EXPECT_TRUE(log.Records().empty());
}

TEST(NamespaceContext, DefaultNamespaceOfTheSchemaGivesBareLocalName)
{
    auto document = DocumentWith({{"xmlns", kChart}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("barChart", ChartMap()), "barChart");
    EXPECT_TRUE(log.Records().empty());
}

TEST(NamespaceContext, UnprefixedNameWithoutDefaultNamespaceStaysAsIs)
{
    auto document = DocumentWith({});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("val", ChartMap()), "val");
    EXPECT_TRUE(log.Records().empty());
}

TEST(NamespaceContext, UnprefixedNameUnderForeignDefaultNamespaceIsQualifiedAndLogged)
{
    auto document = DocumentWith({{"xmlns", kSpreadsheet}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("val", ChartMap()), wxString(kSpreadsheet) + ":val");
    EXPECT_EQ(log.Count("Invalid name: val"), 1u);
}

TEST(NamespaceContext, KnownForeignNamespaceTakesTheMapsPrefix)
{
    auto document = DocumentWith({{"xmlns:r", kRelationships}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("r:id", ChartMap()), "r:id");
    EXPECT_TRUE(log.Records().empty());
}

TEST(NamespaceContext, DocumentPrefixDoesNotMatter)
{
    auto document = DocumentWith({{"xmlns:q", kRelationships}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("q:id", ChartMap()), "r:id");
    EXPECT_TRUE(log.Records().empty());
}

TEST(NamespaceContext, UnknownNamespaceIsQualifiedByItsUriAndLogged)
{
    auto document = DocumentWith({{"xmlns:z", "urn:unknown"}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("z:foo", ChartMap()), "urn:unknown:foo");
    EXPECT_EQ(log.Count("Invalid name: z:foo"), 1u);
}

TEST(NamespaceContext, UnboundPrefixStandsForItselfAndIsLogged)
{
    auto document = DocumentWith({});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("x:foo", ChartMap()), "x:foo");
    EXPECT_EQ(log.Count("Invalid name: x:foo"), 1u);
}

TEST(NamespaceContext, NamespaceDeclarationsPassThroughUntouched)
{
    auto document = DocumentWith({{"xmlns", kSpreadsheet}, {"xmlns:c", "urn:unknown"}});
    XMLNSContext context(document.get());
    LogCapture log;
    EXPECT_EQ(context.MapNameSpace("xmlns:c", ChartMap()), "xmlns:c");
    EXPECT_EQ(context.MapNameSpace("xmlns", ChartMap()), "xmlns");
    EXPECT_TRUE(log.Records().empty());
}

// -- Edge cases ------------------------------------------------------------------------------

TEST(NamespaceContext, NameWithTwoColonsSplitsAtTheFirst)
{
    auto document = DocumentWith({{"xmlns:a", kChart}});
    XMLNSContext context(document.get());
    EXPECT_EQ(context.MapNameSpace("a:b:c", ChartMap()), "b:c");
}

TEST(NamespaceContext, LeadingColonMeansNoPrefix)
{
    auto without = DocumentWith({});
    XMLNSContext plain(without.get());
    EXPECT_EQ(plain.MapNameSpace(":abc", ChartMap()), "abc");

    auto document = DocumentWith({{"xmlns", kRelationships}});
    XMLNSContext context(document.get());
    EXPECT_EQ(context.MapNameSpace(":abc", ChartMap()), "r:abc");
}

TEST(NamespaceContext, InnerDefaultNamespaceIsNotRestoredByPop)
{
    std::unique_ptr<wxXmlDocument> document =
        ParseXml(wxString("<root xmlns='") + kChart + "'><a><b xmlns='" + kRelationships + "'/></a><c/></root>");
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    wxXmlNode* a = document->GetRoot()->GetChildren();
    wxXmlNode* b = a->GetChildren();
    EXPECT_EQ(context.MapNameSpace("x", ChartMap()), "x");
    context.PushStack(a);
    context.PushStack(b);
    EXPECT_EQ(context.MapNameSpace("x", ChartMap()), "r:x");
    context.PopStack();
    context.PopStack();
    // The following sibling of the ancestor still sees the inner default.
    context.PushStack(a->GetNext());
    EXPECT_EQ(context.MapNameSpace("c", ChartMap()), "r:c");
    context.PopStack();
}

TEST(NamespaceContext, InnerPrefixShadowsOuterUntilPopped)
{
    auto document = DocumentWith({{"xmlns:p", kChart}});
    XMLNSContext context(document.get());
    std::unique_ptr<wxXmlNode> inner(Element("inner", {{"xmlns:p", kRelationships}}));
    EXPECT_EQ(context.MapNameSpace("p:x", ChartMap()), "x");
    context.PushStack(inner.get());
    EXPECT_EQ(context.MapNameSpace("p:x", ChartMap()), "r:x");
    context.PopStack();
    EXPECT_EQ(context.MapNameSpace("p:x", ChartMap()), "x");
}

TEST(NamespaceContext, SamePrefixTwiceOnOneElementTakesTheLater)
{
    // No parser accepts a duplicate attribute, so the node is built directly.
    auto document = DocumentWith({});
    XMLNSContext context(document.get());
    std::unique_ptr<wxXmlNode> node(Element("e", {{"xmlns:p", kChart}, {"xmlns:p", kRelationships}}));
    context.PushStack(node.get());
    EXPECT_EQ(context.MapNameSpace("p:x", ChartMap()), "r:x");
    context.PopStack();
}

TEST(NamespaceContext, PushAndPopOfPlainNodeLeavesContextAsBefore)
{
    auto document = DocumentWith({{"xmlns", kRelationships}, {"xmlns:c", kChart}});
    XMLNSContext context(document.get());
    std::unique_ptr<wxXmlNode> plain(Element("plain", {}));
    const wxString before1 = context.MapNameSpace("c:x", ChartMap());
    const wxString before2 = context.MapNameSpace("y", ChartMap());
    context.PushStack(plain.get());
    context.PopStack();
    context.PushStack(nullptr); // a null node gets a scope too
    context.PopStack();
    EXPECT_EQ(context.MapNameSpace("c:x", ChartMap()), before1);
    EXPECT_EQ(context.MapNameSpace("y", ChartMap()), before2);
    // The root's own scope is still there: popping it unbinds "c".
    LogCapture quiet;
    context.PopStack();
    EXPECT_EQ(context.MapNameSpace("c:x", ChartMap()), "c:x");
}

TEST(NamespaceContext, CopyIsIndependentOfTheOriginal)
{
    auto document = DocumentWith({{"xmlns:p", kChart}});
    XMLNSContext original(document.get());
    XMLNSContext copy(original);
    std::unique_ptr<wxXmlNode> inner(Element("inner", {{"xmlns:p", kRelationships}, {"xmlns", kRelationships}}));
    copy.PushStack(inner.get());
    EXPECT_EQ(copy.MapNameSpace("p:x", ChartMap()), "r:x");
    EXPECT_EQ(copy.MapNameSpace("y", ChartMap()), "r:y");
    EXPECT_EQ(original.MapNameSpace("p:x", ChartMap()), "x");
    EXPECT_EQ(original.MapNameSpace("y", ChartMap()), "y");
}

TEST(NamespaceContext, AssignmentCopiesScopesAndDefaultNamespace)
{
    auto first = DocumentWith({{"xmlns:p", kChart}});
    auto second = DocumentWith({{"xmlns:p", kRelationships}, {"xmlns", kRelationships}});
    XMLNSContext target(first.get());
    std::unique_ptr<wxXmlNode> extra(Element("extra", {{"xmlns:q", kChart}}));
    target.PushStack(extra.get()); // a surplus scope, freed by the assignment
    XMLNSContext source(second.get());
    target = source;
    EXPECT_EQ(target.MapNameSpace("p:x", ChartMap()), "r:x");
    EXPECT_EQ(target.MapNameSpace("q:x", ChartMap()), "q:x");
    EXPECT_EQ(target.MapNameSpace("y", ChartMap()), "r:y");
    const XMLNSContext& self = target; // through a reference: compilers warn on a literal self-assignment
    target = self;                     // self-assignment keeps everything
    EXPECT_EQ(target.MapNameSpace("p:x", ChartMap()), "r:x");
}

// -- Logging ---------------------------------------------------------------------------------

TEST(NamespaceContext, InvalidNameRecordNamesFunctionAndSourceUnitAtMessageLevel)
{
    auto document = DocumentWith({{"xmlns:z", "urn:unknown"}});
    XMLNSContext context(document.get());
    LogCapture log;
    context.MapNameSpace("z:foo", ChartMap());
    ASSERT_EQ(log.Records().size(), 1u);
    const LogCapture::Record& record = log.Records()[0];
    EXPECT_EQ(record.level, wxLOG_Message);
    EXPECT_EQ(record.message, "Invalid name: z:foo");
    EXPECT_EQ(record.function, "XMLNSContext::MapNameSpace");
    EXPECT_NE(record.file.find("ooxml.cpp"), std::string::npos) << record.file;
}

TEST(NamespaceContext, NothingIsLoggedWhenMessageLevelIsDisabled)
{
    auto document = DocumentWith({{"xmlns:z", "urn:unknown"}});
    XMLNSContext context(document.get());
    LogCapture log;
    wxLog::SetLogLevel(wxLOG_Warning);
    EXPECT_EQ(context.MapNameSpace("z:foo", ChartMap()), "urn:unknown:foo");
    EXPECT_TRUE(log.Records().empty());
}
