// XMLNSContext: how a qualified name as written maps to the form a schema's
// classes compare against, scopes, the default namespace, and what is logged.
#include "test_support.h"

#include "ooxml/namespaces.h"

using ooxml_test::LogCapture;
typedef std::vector<std::pair<const char*, const char*>> Attributes;

namespace
{
const char* const kChart = "http://schemas.openxmlformats.org/drawingml/2006/chart";
const char* const kRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const kSml = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const XMLNSMap& kChartMap = schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap; // chart "", rel "r" ...

wxXmlNode* Element(const char* name, const Attributes& attributes)
{
    wxXmlNode* node = new wxXmlNode(wxXML_ELEMENT_NODE, name);
    for (const auto& attribute : attributes)
        node->AddAttribute(attribute.first, attribute.second);
    return node;
}

// A document whose root carries the given declarations.
std::unique_ptr<wxXmlDocument> DocumentWith(const Attributes& declarations)
{
    std::unique_ptr<wxXmlDocument> document(new wxXmlDocument);
    document->SetRoot(Element("root", declarations));
    return document;
}
} // namespace

TEST(NamespaceContext, MapsNamesAndLogsUnknownNamespaces)
{
    struct Row
    {
        Attributes root, inner; // declarations of the root, and of a pushed element
        const XMLNSMap* map;
        const char* name;
        wxString mapped;
        const char* logged; // "" if nothing is logged
    };
    const XMLNSMap* dml = &schemas_openxmlformats_org_drawingml_x2006_main::NamespaceMap;
    const XMLNSMap* dsp = &schemas_microsoft_com_office_drawing_x2008_diagram::NamespaceMap;
    const XMLNSMap* core = &schemas_openxmlformats_org_package_x2006_metadata_core_properties::NamespaceMap;
    const char* const dgm = "http://schemas.openxmlformats.org/drawingml/2006/diagram";
    const Row rows[] = {
        {{{"xmlns:c", "urn:other"}}, {{"xmlns:c", kChart}}, &kChartMap, "c:barChart", "barChart", ""}, // innermost wins
        {{{"xmlns", kChart}}, {}, &kChartMap, "barChart", "barChart", ""},
        {{}, {}, &kChartMap, "val", "val", ""},
        {{{"xmlns", kSml}}, {}, &kChartMap, "val", wxString(kSml) + ":val", "Invalid name: val"}, // default applies
        {{{"xmlns:r", kRel}}, {}, &kChartMap, "r:id", "r:id", ""},
        {{{"xmlns:q", kRel}}, {}, &kChartMap, "q:id", "r:id", ""}, // the map's prefix, not the document's
        {{{"xmlns:z", "urn:unknown"}}, {}, &kChartMap, "z:foo", "urn:unknown:foo", "Invalid name: z:foo"},
        {{}, {}, &kChartMap, "x:foo", "x:foo", "Invalid name: x:foo"}, // unbound prefix stands for itself
        {{{"xmlns", kSml}, {"xmlns:c", "urn:unknown"}}, {}, &kChartMap, "xmlns:c", "xmlns:c", ""},
        {{{"xmlns", kSml}}, {}, &kChartMap, "xmlns", "xmlns", ""},
        {{{"xmlns:a", kChart}}, {}, &kChartMap, "a:b:c", "b:c", ""}, // split at the first colon
        {{{"xmlns", kRel}}, {}, &kChartMap, ":abc", "r:abc", ""},
        {{}, {{"xmlns:p", kChart}, {"xmlns:p", kRel}}, &kChartMap, "p:x", "r:x", ""}, // same prefix twice: the later
        {{{"xmlns:q", dgm}}, {}, dml, "q:relIds", "dgm:relIds", ""}, // one schema, a prefix per map
        {{{"xmlns:q", dgm}}, {}, dsp, "q:relIds", "d:relIds", ""},
        {{{"xmlns:dc", "http://purl.org/dc/elements/1.1/"}}, {}, core, "dc:title", "dc:title", ""},
        {{{"xmlns:t", "http://purl.org/dc/terms/"}}, {}, core, "t:created", "http://purl.org/dc/terms/:created",
         "Invalid name: t:created"},
    };
    for (const Row& row : rows)
    {
        auto document = DocumentWith(row.root);
        XMLNSContext context(document.get());
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
}

TEST(NamespaceContext, ScopesNestTheDefaultNamespaceIsNotRestoredCopiesAreIndependent)
{
    std::unique_ptr<wxXmlDocument> document = ooxml_test::ParseXml(wxString("<root xmlns='") + kChart + "' xmlns:p='" +
                                                                   kChart + "'><a xmlns:p='" + kRel + "'><b xmlns='" +
                                                                   kRel + "'/></a><c/></root>");
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    auto map = [&context](const char* name) { return context.MapNameSpace(name, kChartMap); };
    wxXmlNode* a = document->GetRoot()->GetChildren();
    EXPECT_EQ(map("x") + map("p:x"), "xx");
    context.PushStack(a);
    EXPECT_EQ(map("p:x"), "r:x"); // the inner prefix shadows the outer
    context.PushStack(a->GetChildren());
    EXPECT_EQ(map("x"), "r:x");
    context.PopStack();
    context.PopStack();
    EXPECT_EQ(map("p:x"), "x"); // ... until popped
    context.PushStack(a->GetNext());
    EXPECT_EQ(map("c"), "r:c"); // a later sibling still sees the inner default
    context.PopStack();
    context.PushStack(nullptr); // a null node gets a scope too
    context.PopStack();
    EXPECT_EQ(map("p:x"), "x");
    XMLNSContext copy(context);
    std::unique_ptr<wxXmlNode> inner(Element("inner", {{"xmlns:p", kRel}, {"xmlns", kChart}, {"xmlns:q", kChart}}));
    copy.PushStack(inner.get());
    EXPECT_EQ(copy.MapNameSpace("p:x", kChartMap) + copy.MapNameSpace("y", kChartMap), "r:xy");
    EXPECT_EQ(map("p:x") + map("y"), "xr:y"); // the original is untouched
    LogCapture quiet;
    copy = context; // the surplus scope of "q" goes
    EXPECT_EQ(copy.MapNameSpace("p:x", kChartMap) + copy.MapNameSpace("q:x", kChartMap) +
                  copy.MapNameSpace("y", kChartMap), "xq:xr:y");
    const XMLNSContext& self = copy;
    copy = self;
    EXPECT_EQ(copy.MapNameSpace("p:x", kChartMap), "x");
    context.PopStack(); // the root's own scope: "p" is unbound now
    EXPECT_EQ(map("p:x"), "p:x");
}
