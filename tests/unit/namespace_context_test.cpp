// XMLNSContext: qualified names as written mapped to what a schema's classes compare, scopes, logging.
#include "test_support.h"
#include "ooxml/namespaces.h"

using namespace ooxml_test;
typedef std::vector<std::pair<wxString, wxString>> Attributes;

namespace
{
const XMLNSMap& kChartMap = schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap; // chart "", rel "r" ...
const wxString kChart = Uri("c"), kRel = Uri("r");

wxXmlNode* Element(const char* name, const Attributes& attributes)
{
    wxXmlNode* node = new wxXmlNode(wxXML_ELEMENT_NODE, name);
    for (const auto& attribute : attributes)
        node->AddAttribute(attribute.first, attribute.second);
    return node;
}
} // namespace

TEST(NamespaceContext, MapsNamesLogsUnknownNamespacesAndNestsScopes)
{
    struct Row
    {
        Attributes root, inner; // declarations of the root, and of a pushed element
        const XMLNSMap* map;
        const char* name;
        wxString mapped;
        const char* logged; // "": nothing
    };
    const XMLNSMap* dml = &schemas_openxmlformats_org_drawingml_x2006_main::NamespaceMap;
    const XMLNSMap* dsp = &schemas_microsoft_com_office_drawing_x2008_diagram::NamespaceMap;
    const XMLNSMap* core = &schemas_openxmlformats_org_package_x2006_metadata_core_properties::NamespaceMap;
    const wxString sml = Uri("x"), dgm = Uri("d");
    const Row rows[] = {
        {{{"xmlns:c", "urn:other"}}, {{"xmlns:c", kChart}}, &kChartMap, "c:barChart", "barChart", ""}, // innermost wins
        {{{"xmlns", kChart}}, {}, &kChartMap, "barChart", "barChart", ""},
        {{}, {}, &kChartMap, "val", "val", ""},
        {{{"xmlns", sml}}, {}, &kChartMap, "val", sml + ":val", "Invalid name: val"}, // the default applies
        {{{"xmlns:r", kRel}}, {}, &kChartMap, "r:id", "r:id", ""},
        {{{"xmlns:q", kRel}}, {}, &kChartMap, "q:id", "r:id", ""}, // the map's prefix, not the document's
        {{{"xmlns:z", "urn:unknown"}}, {}, &kChartMap, "z:foo", "urn:unknown:foo", "Invalid name: z:foo"},
        {{}, {}, &kChartMap, "x:foo", "x:foo", "Invalid name: x:foo"}, // an unbound prefix stands for itself
        {{{"xmlns", sml}, {"xmlns:c", "urn:unknown"}}, {}, &kChartMap, "xmlns:c", "xmlns:c", ""},
        {{{"xmlns", sml}}, {}, &kChartMap, "xmlns", "xmlns", ""},
        {{{"xmlns:a", kChart}}, {}, &kChartMap, "a:b:c", "b:c", ""}, // split at the first colon
        {{{"xmlns", kRel}}, {}, &kChartMap, ":abc", "r:abc", ""},
        {{}, {{"xmlns:p", kChart}, {"xmlns:p", kRel}}, &kChartMap, "p:x", "r:x", ""}, // same prefix twice: the later
        {{{"xmlns:q", dgm}}, {}, dml, "q:relIds", "dgm:relIds", ""}, // one schema, a prefix per map
        {{{"xmlns:q", dgm}}, {}, dsp, "q:relIds", "d:relIds", ""},
        {{{"xmlns:dc", Uri("dc")}}, {}, core, "dc:title", "dc:title", ""},
        {{{"xmlns:t", Uri("dcterms")}}, {}, core, "t:created", Uri("dcterms") + ":created", "Invalid name: t:created"},
    };
    for (const Row& row : rows)
    {
        wxXmlDocument document;
        document.SetRoot(Element("root", row.root));
        XMLNSContext context(&document);
        std::unique_ptr<wxXmlNode> inner(Element("inner", row.inner));
        context.PushStack(inner.get());
        LogCapture log;
        EXPECT_EQ(context.MapNameSpace(row.name, *row.map), row.mapped) << row.name;
        EXPECT_EQ(log.records.size() + log.Count(row.logged), *row.logged ? 2u : 0u) << row.name;
        for (const LogCapture::Record& record : log.records) // a message, naming the function and the source
            EXPECT_TRUE(record.level == wxLOG_Message && record.function == "XMLNSContext::MapNameSpace" &&
                        record.file.find("ooxml.cpp") != std::string::npos);
        wxLog::SetLogLevel(wxLOG_Warning); // with messages off, nothing is logged
        EXPECT_EQ(context.MapNameSpace(row.name, *row.map) + wxString::Format("%zu", log.records.size()),
                  row.mapped + (*row.logged ? "1" : "0"));
    }
    // Scopes nest, the default namespace is not restored, copies are independent.
    std::unique_ptr<wxXmlDocument> document = ParseXml("<root" + Xmlns("", "c") + Xmlns("p", "c") + "><a" +
                                                       Xmlns("p", "r") + "><b" + Xmlns("", "r") + "/></a><c/></root>");
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    auto map = [](const XMLNSContext& c, const char* name) { return c.MapNameSpace(name, kChartMap); };
    wxXmlNode* a = document->GetRoot()->GetChildren();
    EXPECT_EQ(map(context, "x") + map(context, "p:x"), "xx");
    context.PushStack(a);
    EXPECT_EQ(map(context, "p:x"), "r:x"); // the inner prefix shadows the outer
    context.PushStack(a->GetChildren());
    EXPECT_EQ(map(context, "x"), "r:x");
    context.PopStack();
    context.PopStack();
    EXPECT_EQ(map(context, "p:x"), "x"); // ... until popped
    context.PushStack(a->GetNext());
    EXPECT_EQ(map(context, "c"), "r:c"); // a later sibling still sees the inner default
    context.PopStack();
    context.PushStack(nullptr); // a null node gets a scope too
    context.PopStack();
    EXPECT_EQ(map(context, "p:x"), "x");
    XMLNSContext copy(context);
    std::unique_ptr<wxXmlNode> inner(Element("inner", {{"xmlns:p", kRel}, {"xmlns", kChart}, {"xmlns:q", kChart}}));
    copy.PushStack(inner.get());
    EXPECT_EQ(map(copy, "p:x") + map(copy, "y"), "r:xy");
    EXPECT_EQ(map(context, "p:x") + map(context, "y"), "xr:y"); // the original is untouched
    LogCapture quiet;
    copy = context; // the surplus scope of "q" goes
    EXPECT_EQ(map(copy, "p:x") + map(copy, "q:x") + map(copy, "y"), "xq:xr:y");
    const XMLNSContext& self = copy;
    copy = self;
    EXPECT_EQ(map(copy, "p:x"), "x");
    context.PopStack(); // the root's own scope: "p" is unbound now
    EXPECT_EQ(map(context, "p:x"), "p:x");
}
