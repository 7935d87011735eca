// Parsing parts: the fast path's tree against wxWidgets' own, the checks on
// the parser's events, streaming, and the package's element total.
#include <algorithm>

#include <wx/strconv.h>

#include "ooxml/opc/xml.h"
#include "package_support.h"

using namespace package_test;

namespace
{
std::string Describe(wxXmlNodeType type, const wxString& name, const wxString& content)
{
    return std::to_string(type) + " " + Utf8(name) + " [" + Utf8(content) + "]";
}
std::string Describe(const wxXmlNode* n)
{
    std::string text = n ? Describe(n->GetType(), n->GetName(), n->GetContent()) : "(none)";
    for (const wxXmlAttribute* a = n ? n->GetAttributes() : nullptr; a; a = a->GetNext())
        text += " " + Utf8(a->GetName()) + "=" + Utf8(a->GetValue());
    return text;
}
std::string Describe(const ooxml::dom::Node* n)
{
    std::string text = n ? Describe(n->GetType(), n->GetName(), n->GetContent()) : "(none)";
    for (const ooxml::dom::Attribute* a = n ? n->GetAttributes() : nullptr; a; a = a->GetNext())
        text += " " + Utf8(a->GetName()) + "=" + Utf8(a->GetValue());
    return text;
}

std::string Attribute(const ooxml::dom::Node* n, const char* name)
{
    for (const ooxml::dom::Attribute* a = n->GetAttributes(); a; a = a->GetNext())
        if (a->GetName() == name)
            return std::string(a->GetText().view());
    return "";
}

// The first difference between the two trees ("" when none): the prolog
// (wxWidgets keeps it around the root), then every node, with a stack.
std::string Difference(const wxXmlDocument& expected, const ooxml::dom::Document& actual)
{
    std::vector<std::pair<const wxXmlNode*, const ooxml::dom::Node*>> pending{{expected.GetRoot(), actual.GetRoot()}};
    std::vector<const wxXmlNode*> before;
    std::vector<const ooxml::dom::Node*> prolog;
    for (const wxXmlNode* e = expected.GetDocumentNode()->GetChildren(); e; e = e->GetNext())
        if (e != expected.GetRoot())
            before.push_back(e);
    for (const ooxml::dom::Node* a = actual.GetProlog(); a; a = a->GetNext())
        prolog.push_back(a);
    for (std::size_t i = 0; i < std::max(before.size(), prolog.size()); ++i)
        pending.emplace_back(i < before.size() ? before[i] : nullptr, i < prolog.size() ? prolog[i] : nullptr);
    while (!pending.empty())
    {
        auto [e, a] = pending.back();
        pending.pop_back();
        if (Describe(e) != Describe(a))
            return "wxWidgets: " + Describe(e) + "\n     fast: " + Describe(a);
        if (e->GetType() == wxXML_ELEMENT_NODE)
            for (auto [c, d] = std::make_pair(e->GetChildren(), a->GetChildren()); c || d;
                 c = c ? c->GetNext() : c, d = d ? d->GetNext() : d)
                pending.emplace_back(c, d);
    }
    return "";
}

// "ok" or the problem, of the fast path and of the check alone.
std::string Fast(const std::string& xml, const opc::Limits& limits = opc::Limits(), opc::XmlCounts* counts = nullptr)
{
    ooxml::dom::Document document;
    wxString problem;
    return opc::ParseXmlFast(xml.data(), xml.size(), limits, &document, &problem, counts) ? "ok" : Utf8(problem);
}
std::string Check(const std::string& xml, const opc::Limits& limits = opc::Limits())
{
    wxString problem;
    return opc::CheckXml(xml.data(), xml.size(), limits, &problem) ? "ok" : Utf8(problem);
}
std::string Encode(const std::string& utf8, const wxMBConv& conv)
{
    const wxCharBuffer bytes = wxString::FromUTF8(utf8.c_str()).mb_str(conv);
    return std::string(bytes.data(), bytes.length());
}
} // namespace

TEST(Xml, FastTreeIsWxWidgetsTree)
{
    // Text pieces land at every offset of the 1 KiB buffers: indented lines,
    // white space around entities, CDATA beside text, comments and PIs.
    std::string rows;
    for (int i = 0; i < 400; ++i)
        rows += "<p n=\"" + std::to_string(i) + "\">" + std::string(i % 9, ' ') + "\n  line " + std::to_string(i) +
                "\n\t tail &amp; " + std::string(i % 5, '\n') + "&#65;</p>\n  " + (i % 7 ? "" : "<e/>\t\n") +
                (i % 11 ? "" : "<![CDATA[  ]]>  <!-- c -->  <![CDATA[x]]>y <?pi z?>  ");
    std::string lines, deep;
    for (int i = 0; i < 5000; ++i)
        lines += "ab\n";
    for (int i = 0; i < 200; ++i)
        deep = "<d" + std::to_string(i) + (i % 3 ? ">" : "> t ") + deep + "</d" + std::to_string(i) + ">";
    const std::string mixed = "<?xml version=\"1.0\"?>\n<!--before--><?first data here?>\n<r a=\"x&#10;y\tz\n w &lt;&quot;\" "
                              "b='&apos;\xC3\xA9\xF0\x9F\x98\x80'>  <![CDATA[]]>text<![CDATA[ <raw> ]]> \n more "
                              "&lt;&gt;&amp;&quot;&apos;&#x1F600;\xE2\x82\xAC<x/>  \n<!-- in -->  after<?pi  ?>  "
                              "<y></y></r>\n<!--after--><?last?>\n";
    const std::vector<std::pair<std::string, std::string>> inputs = {
        {"rows", "<r>\n" + rows + "</r>"},
        {"mixed", mixed},
        {"UTF-16LE", "\xFF\xFE" + Encode(mixed.substr(0, mixed.find("<y>")) + rows + mixed.substr(mixed.find("<y>")),
                                          wxMBConvUTF16LE())},
        {"UTF-16BE", "\xFE\xFF" + Encode("<r>" + rows + "</r>", wxMBConvUTF16BE())},
        {"ISO-8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?><r a='\xE9'>\xE9t\xE9 \xA0</r>"},
        {"lines", "<r><t>\n\n" + lines + "</t><t>" + lines + "</t></r>"},
        {"deep", deep},
        {"DTD", "<!DOCTYPE r [<!ENTITY e \"expanded\"><!-- in the DTD --><?in dtd?>]><r a='&e;'>a &e; b</r>"}};
    opc::Limits limits;
    limits.allowDtd = true;
    for (const auto& input : inputs)
    {
        wxXmlDocument expected;
        ooxml::dom::Document actual;
        wxString problem;
        ASSERT_TRUE(opc::ParseXml(input.second.data(), input.second.size(), limits, &expected, &problem))
            << input.first << ": " << problem;
        ASSERT_TRUE(opc::ParseXmlFast(input.second.data(), input.second.size(), limits, &actual, &problem))
            << input.first << ": " << problem;
        EXPECT_EQ(Difference(expected, actual), "") << input.first;
    }
    // The comparison itself sees a difference.
    wxXmlDocument expected;
    ooxml::dom::Document actual;
    wxString problem;
    ASSERT_TRUE(opc::ParseXml(mixed.data(), mixed.size(), limits, &expected, &problem));
    const std::string other = "<r a='x'/>";
    ASSERT_TRUE(opc::ParseXmlFast(other.data(), other.size(), limits, &actual, &problem));
    EXPECT_NE(Difference(expected, actual), "");
}

TEST(Xml, ChecksOnTheParsersEvents)
{
    opc::Limits three;
    three.maxDepth = 3;
    opc::XmlCounts counts;
    // Markup that looks like tags in comments, CDATA and attribute values is no nesting.
    EXPECT_EQ(Fast("<?xml version='1.0'?><!-- <x><y> --><a><![CDATA[<q><r>]]><b x='>'/><c><d>t</d></c></a>", three,
                   &counts), "ok");
    EXPECT_EQ(std::to_string(counts.depth) + " " + std::to_string(counts.elements), "3 4");
    EXPECT_EQ(Fast("<a><b><c><d/></c></b></a>", three), "XML nested deeper than 3 elements");
    EXPECT_EQ(Check("<a><b><c><d/></c></b></a>", three), "XML nested deeper than 3 elements");
    EXPECT_EQ(Fast("<!DOCTYPE x SYSTEM \"x><!--\"><x/>", three),
              "XML has a document type declaration, which packages never use");
    std::string siblings = "<r>";
    for (int i = 0; i < 1000; ++i)
        siblings += "<e a='1'>x</e>";
    const std::string utf16 = "\xFF\xFE" + Encode(siblings + "</r>", wxMBConvUTF16LE());
    EXPECT_EQ(Fast(utf16, opc::Limits(), &counts), "ok");
    EXPECT_EQ(std::to_string(counts.depth) + " " + std::to_string(counts.elements) + " " +
                  std::to_string(counts.attributes), "2 1001 1000");

    opc::Limits few;
    few.maxElements = 3;
    few.maxAttributes = 3;
    few.maxAttributesPerElement = 2;
    EXPECT_EQ(Check("<a x='1'><b y='2' z='3'/><c/></a>", few), "ok");
    EXPECT_EQ(Fast("<a><b/><c/><d/></a>", few), "XML has more than 3 elements (limit maxElements)");
    EXPECT_EQ(Check("<a x='1' y='2'><b z='3' w='4'/></a>", few), "XML has more than 3 attributes (limit maxAttributes)");
    EXPECT_EQ(Fast("<a><b x='1' y='2' z='3'/></a>", few),
              "XML element <b> has more than 2 attributes (limit maxAttributesPerElement)");

    opc::Limits dtd;
    dtd.allowDtd = true;
    EXPECT_EQ(Check("<!DOCTYPE r><r/>") + " " + Fast("<!DOCTYPE r><r/>", dtd), std::string("XML has a document type "
                                                                                           "declaration, which packages "
                                                                                           "never use ok"));
    const std::string unknown = "<?xml version='1.0' encoding='x-unknown-42'?><r/>";
    wxXmlDocument document;
    wxString problem;
    EXPECT_FALSE(opc::ParseXml(unknown.data(), unknown.size(), opc::Limits(), &document, &problem));
    EXPECT_NE(Utf8(problem).find("encoding x-unknown-42"), std::string::npos) << problem;
    EXPECT_EQ(Fast(unknown), Utf8(problem));
    EXPECT_EQ(Fast("<?xml version='1.0' encoding='US-ASCII'?><r/>"), "ok");

    // One attribute through two prefixes of one namespace, bound here or above;
    // a binding ends with its element.
    EXPECT_EQ(Fast("<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'/>"),
              "duplicate attribute: p:x and q:x of <a> name the same attribute of one namespace");
    EXPECT_EQ(Check("<a xmlns:p='u'><b xmlns:q='u' q:x='1' y='0' p:x='2'/></a>").substr(0, 19), "duplicate attribute");
    EXPECT_EQ(Fast("<a xmlns:p='u' xmlns:q='v' p:x='1' q:x='2' p:y='3'><b xmlns:p='v' p:x='1' q:y='2'/>"
                   "<c xmlns:r='v' r:x='1' p:x='2'/></a>") + " " +
                  Check("<a><b xmlns:p='u' p:x='1'/><c xmlns:q='u' q:x='1' p:x='2'/></a>"),
              "ok ok");

    EXPECT_EQ(Fast("<a>\n<b>\n</a>"), "XML does not parse: mismatched tag at line 3");
    EXPECT_EQ(Check("<a>&foo;</a>"), "XML does not parse: undefined entity at line 1");
    EXPECT_EQ(Fast("") + " " + Check(""), "empty part, not XML empty part, not XML");

    // wxWidgets copies a text node again for every line: bounded on its path only.
    std::string lines = "<t>";
    for (int i = 0; i < 1000; ++i)
        lines += "abc\n";
    opc::Limits copies;
    copies.maxTextCopyBytes = 100000;
    EXPECT_EQ(Check(lines + "</t>", copies) + " " + Fast(lines + "</t>", copies),
              "XML text would copy more than 100000 bytes while wxWidgets merges it (limit maxTextCopyBytes) ok");
    EXPECT_EQ(Check(lines.substr(0, 400) + "</t>", copies), "ok");
}

TEST(Xml, StreamingHandsOutEachElementAndFreesIt)
{
    std::vector<std::string> seen;
    bool stopAt3 = false;
    opc::XmlStream stream;
    stream.path = {"worksheet", "sheetData", "row"};
    stream.element = [&](const std::vector<ooxml::dom::Node*>& ancestors, ooxml::dom::Node* row) {
        std::string text = Attribute(row, "r");
        for (const ooxml::dom::Node* a : ancestors)
            text += " " + Utf8(a->GetName());
        for (const ooxml::dom::Node* c = row->GetChildren(); c; c = c->GetNext())
            text += " " + Utf8(c->GetName()) + "=" + Utf8(c->GetChildren()->GetContent());
        seen.push_back(text);
        return !(stopAt3 && seen.size() == 3);
    };
    const std::string sheet = "<x:worksheet xmlns:x='s'><x:row r='no'/><x:sheetData><x:row r='1'><x:c>a</x:c></x:row>"
                              "<x:row r='2'/><x:row r='3'><x:c>b</x:c><x:c>c</x:c></x:row><x:row r='4'/>"
                              "</x:sheetData></x:worksheet>";
    ooxml::dom::Document document;
    wxString problem;
    opc::XmlCounts counts;
    ASSERT_TRUE(opc::ParseXmlFast(sheet.data(), sheet.size(), opc::Limits(), &document, &problem, &counts, &stream));
    const std::vector<std::string> all = {"1 x:worksheet x:sheetData x:c=a", "2 x:worksheet x:sheetData",
                                          "3 x:worksheet x:sheetData x:c=b x:c=c", "4 x:worksheet x:sheetData"};
    EXPECT_EQ(seen, all);
    // The rows are not in the tree; the row elsewhere is.
    EXPECT_EQ(Describe(document.GetRoot()->GetChildren()) + " | " +
                  Describe(document.GetRoot()->GetChildren()->GetNext()->GetChildren()),
              "1 x:row [] r=no | (none)");
    EXPECT_EQ(counts.elements, 10u);
    EXPECT_EQ(counts.streamedElements, 7u);
    seen.clear();
    stopAt3 = true;
    ooxml::dom::Document stopped;
    EXPECT_TRUE(opc::ParseXmlFast(sheet.data(), sheet.size(), opc::Limits(), &stopped, &problem, nullptr, &stream));
    EXPECT_EQ(seen, std::vector<std::string>(all.begin(), all.begin() + 3));

    // 200,000 rows in bounded memory, and beyond the part's element limit.
    std::string big = "<worksheet><sheetData>";
    for (int i = 0; i < 200000; ++i)
        big += "<row r='" + std::to_string(i) + "'><c t='n'><v>" + std::to_string(i * 7) + "</v></c></row>";
    big += "</sheetData></worksheet>";
    std::size_t rows = 0;
    stream.element = [&](const std::vector<ooxml::dom::Node*>&, ooxml::dom::Node* row) {
        return Attribute(row, "r") == std::to_string(rows++);
    };
    opc::Limits limits;
    limits.maxElements = 1000;
    ooxml::dom::Document large;
    ASSERT_TRUE(opc::ParseXmlFast(big.data(), big.size(), limits, &large, &problem, &counts, &stream)) << problem;
    EXPECT_EQ(rows, 200000u);
    EXPECT_EQ(counts.elements, 600002u);
    EXPECT_LE(large.ArenaBytes(), 256u << 10);
}

TEST(Xml, PackageCountsTheElementsItKeeps)
{
    opc::Limits limits;
    limits.maxPackageElements = 8; // the content types: 3 elements
    opc::Package package(limits);
    opc::Error e;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types()}, {"a.xml", "<a><b/><c/></a>"}, {"d.xml", "<a>"}}, &e));
    ooxml::dom::Document one, two, three, four;
    opc::XmlStream stream;
    stream.path = {"a", "b"};
    stream.element = [](const std::vector<ooxml::dom::Node*>&, ooxml::dom::Node*) { return true; };
    EXPECT_EQ(Result(package.ParsePart("/a.xml", &one, &e), e), "ok");
    EXPECT_EQ(Result(package.ParsePart("/d.xml", &four, &e), e),
              "test.docx: /d.xml: XML does not parse: no element found at line 1");
    EXPECT_EQ(Result(package.ParsePart("/a.xml", &two, &e, &stream), e), "ok"); // 2 kept: 8 in all
    EXPECT_EQ(Result(package.ParsePart("/a.xml", &three, &e), e),
              "test.docx: /a.xml: the package's parts have more than 8 elements (limit maxPackageElements)");
    wxXmlDocument document;
    EXPECT_FALSE(package.LoadXml("/a.xml", &document, &e));
    EXPECT_NE(Utf8(e.message).find("maxPackageElements"), std::string::npos) << e.message;
}

TEST(Xml, PartsParseAsTheyAreInflated)
{
    // Many 64 KiB blocks of text, white space, CDATA and comments: the tree is wxWidgets' own, also when the part
    // ends exactly on a block; a part cut inside a block fails as it fails when it is parsed whole.  Runs of spaces
    // after <t> fall across the 1 KiB pieces, which decide what text survives.
    std::string xml = "<?xml version='1.0'?><doc>";
    for (int i = 0; xml.size() < 300000; ++i)
        xml += "<r i='" + std::to_string(i) + "'>\n  <t>" + std::string(i % 37, ' ') + "text " + std::to_string(i) +
               " &amp; more</t>" + std::string(i % 53, '\n') + "<![CDATA[ c ]]><!-- " + std::to_string(i) + " --></r>";
    xml += "</doc>";
    const std::string exact = xml + std::string(65536 * 5 - xml.size(), '\n'), cut = xml.substr(0, 65536 * 3 + 100);
    opc::Package package;
    opc::Error e;
    const Entries parts = {{"[Content_Types].xml", Types()}, {"a.xml", xml}, {"b.xml", exact}, {"c.xml", cut}};
    ASSERT_TRUE(Open(package, parts, &e));
    for (const char* name : {"/a.xml", "/b.xml"})
    {
        wxXmlDocument expected;
        ooxml::dom::Document actual;
        ASSERT_TRUE(package.LoadXml(name, &expected, &e) && package.ParsePart(name, &actual, &e)) << e.ToString();
        EXPECT_EQ(Difference(expected, actual), "") << name;
    }
    ooxml::dom::Document whole, inflated;
    wxString problem;
    EXPECT_FALSE(opc::ParseXmlFast(cut.data(), cut.size(), opc::Limits(), &whole, &problem));
    EXPECT_EQ(Result(package.ParsePart("/c.xml", &inflated, &e), e), "test.docx: /c.xml: " + Utf8(problem));

    // A large worksheet streams through in bounded memory; a stop ends the parse early, without failure.
    std::string sheet = "<worksheet><sheetData>";
    for (int i = 0; i < 100000; ++i)
        sheet += "<row r='" + std::to_string(i) + "'><c t='n'><v>" + std::to_string(i * 7) + "</v></c></row>";
    sheet += "</sheetData></worksheet>";
    const Entries entries = {{"[Content_Types].xml", Types()}, {"sheet.xml", sheet}};
    opc::Limits limits;
    limits.maxElements = 1000;
    opc::Package sheets(limits);
    ASSERT_TRUE(Open(sheets, entries, &e));
    std::size_t rows = 0, stopAt = 0;
    opc::XmlStream stream;
    stream.path = {"worksheet", "sheetData", "row"};
    stream.element = [&](const std::vector<ooxml::dom::Node*>&, ooxml::dom::Node* row) {
        return Attribute(row, "r") == std::to_string(rows++) && rows != stopAt;
    };
    ooxml::dom::Document streamed, stopped;
    ASSERT_TRUE(sheets.ParsePart("/sheet.xml", &streamed, &e, &stream)) << e.ToString();
    EXPECT_EQ(rows, 100000u);
    EXPECT_LE(streamed.ArenaBytes(), 256u << 10);
    rows = 0;
    stopAt = 3;
    EXPECT_TRUE(sheets.ParsePart("/sheet.xml", &stopped, &e, &stream) && rows == 3) << e.ToString();
    // Over the part limit: the same failure as a whole read.
    limits.maxPartSize = 100000;
    opc::Package limited(limits);
    std::string bytes;
    ASSERT_TRUE(Open(limited, entries, &e));
    EXPECT_EQ(Result(limited.ParsePart("/sheet.xml", &streamed, &e, &stream), e) + " | " +
                  Result(limited.ReadPartBytes("/sheet.xml", &bytes, &e), e),
              "test.docx: /sheet.xml: larger than the limit of 100000 bytes | "
              "test.docx: /sheet.xml: larger than the limit of 100000 bytes");
}
