// Markup compatibility and Strict namespaces, rule by rule, on hand-written parts.
#include "ooxml/opc/xml.h"
#include "package_support.h" // with ooxml/opc/markup.h

using namespace package_test;

namespace
{
typedef const std::string& Text;
const std::string kMc = " xmlns:mc=\"" + kMcUri + "\"";
const std::string kW = " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";
const std::string kStrict = "http://purl.oclc.org/ooxml/", kTransitional = "http://schemas.openxmlformats.org/",
                  kVml = "urn:schemas-microsoft-com:vml";

// w14 is not understood, a14 is.
std::string Body(Text content, Text attributes = "")
{
    return "<w:body" + kW + kMc + " xmlns:w14=\"http://schemas.microsoft.com/office/word/2010/wordml\" xmlns:a14=\"" +
           "http://schemas.microsoft.com/office/drawing/2010/main\"" + attributes +
           (content.empty() ? "/>" : ">" + content + "</w:body>");
}
std::string AC(Text branches) { return "<mc:AlternateContent>" + branches + "</mc:AlternateContent>"; }
std::string Choice(Text needs, Text in) { return "<mc:Choice Requires=\"" + needs + "\">" + in + "</mc:Choice>"; }
std::string Fallback(Text content) { return "<mc:Fallback>" + content + "</mc:Fallback>"; }

// A wxWidgets copy of a compact tree, to print it as wxWidgets prints its own.
wxXmlNode* Copy(const ooxml::dom::Node* from)
{
    wxXmlNode* to = new wxXmlNode(from->GetType(), from->GetName(), from->GetContent());
    for (const ooxml::dom::Attribute* a = from->GetAttributes(); a; a = a->GetNext())
        to->AddAttribute(a->GetName(), a->GetValue());
    for (const ooxml::dom::Node* child = from->GetChildren(); child; child = child->GetNext())
        to->AddChild(Copy(child));
    return to;
}

// The document after PrepareDocument, then its statistics: AlternateContent, by Choice, by Fallback, recovered,
// ignored elements, ignored attributes, unwrapped [, "strict"]; or the problem.  On the wxWidgets tree and on the
// fast path's, which must agree.
std::string Prepare(Text xml)
{
    auto describe = [](const opc::PrepareStats& s) {
        return Utf8(wxString::Format("  %zu %zu %zu %zu %zu %zu %zu%s", s.alternateContent, s.choices, s.fallbacks,
                                     s.recovered, s.ignoredElements, s.ignoredAttributes, s.unwrapped,
                                     s.strict ? " strict" : ""));
    };
    std::string results[2];
    for (const bool fast : {false, true})
    {
        wxXmlDocument document;
        ooxml::dom::Document compact;
        opc::PrepareStats s;
        wxString problem = "does not parse";
        const bool prepared = fast ? opc::ParseXmlFast(xml.data(), xml.size(), opc::Limits(), &compact, &problem) &&
                                         opc::PrepareDocument(compact, opc::ReadOptions(), &problem, &s)
                                   : Parse(xml, &document) && opc::PrepareDocument(document, opc::ReadOptions(), &problem, &s);
        if (prepared && fast)
            document.SetRoot(Copy(compact.GetRoot()));
        results[fast] = prepared ? Serialise(document) + describe(s) : Utf8(problem);
    }
    EXPECT_EQ(results[1], results[0]) << "the fast path's tree differs";
    return results[0];
}
} // namespace

TEST(MarkupCompatibility, DocumentsBeforeAndAfterUnderstoodNamespacesAndTransitionalUris)
{
    const std::string notMc = "<w:body" + kW + ">" + AC(Choice("w", "<w:p/>")) + "</w:body>";
    const std::string rows[][2] = { // (document, prepared document and statistics, or the problem)
        // The first understood Choice replaces the wrapper in place.
        {Body("<w:p/>" + AC(Choice("w14", "<w14:x/>") + Choice("w", "<w:tbl/><w:sdt/>") + Choice("w", "<w:no/>") +
                            Fallback("<w:no/>")) + "<w:sectPr/>"),
         Body("<w:p/><w:tbl/><w:sdt/><w:sectPr/>") + "  1 1 0 2 0 0 0"},
        // Without an understood Choice the Fallback, or nothing; a Choice needs every prefix understood and declared.
        {Body(AC(Choice("w14", "<w14:x/>") + Fallback("<w:p/>")) + AC(Choice("w14", "<w14:x/>")) +
              AC(Choice("w w14", "<w:no/>") + Choice("zz", "<w:no/>") + Choice(" w  a14 ", "<w:yes/>"))),
         Body("<w:p/><w:yes/>") + "  3 1 1 2 0 0 0"},
        // Nested, and directly inside a Choice.
        {Body(AC(Choice("w", "<w:p>" + AC(Choice("w14", "<w14:x/>") + Fallback("<w:r/>")) + "</w:p>" +
                                 AC(Fallback("<w:i/>"))))),
         Body("<w:p><w:r/></w:p><w:i/>") + "  3 1 2 4 0 0 0"},
        // Ignorable and not understood: dropped, also deep down; understood: kept.
        {Body("<w:p w14:paraId='1' a14:kept=\"2\" w:rsidR=\"3\"><w14:unknown><w:r/></w14:unknown><a14:known/><w:r>"
              "<w14:deep/></w:r></w:p>", " mc:Ignorable='w14 a14'"),
         Body("<w:p a14:kept=\"2\" w:rsidR=\"3\"><a14:known/><w:r/></w:p>") + "  0 0 0 0 2 1 0"},
        // A namespace that is not ignorable stays (the readers skip it); must-understand a14 is understood.
        {Body("<w14:x w14:y=\"1\"/>", " mc:MustUnderstand='a14'"), Body("<w14:x w14:y=\"1\"/>") + "  0 0 0 0 0 0 0"},
        // ProcessContent keeps the children of a dropped element, also with a wildcard.
        {Body("<w14:wrapper><w:p/><w:tbl/></w14:wrapper><w14:other><w:lost/></w14:other>",
              " mc:Ignorable='w14' mc:ProcessContent='w14:wrapper'"),
         Body("<w:p/><w:tbl/>") + "  0 0 0 2 1 0 1"},
        {Body("<w14:a><w:p/></w14:a><w14:b><w:q/></w14:b>", " mc:Ignorable='w14' mc:ProcessContent='w14:*'"),
         Body("<w:p/><w:q/>") + "  0 0 0 2 0 0 2"},
        // Declared only deep inside the part; the prefix mc without its declaration is no markup compatibility.
        {"<w:body" + kW + "><w:p" + kMc + ">" + AC(Choice("w", "<w:t/>")) + "</w:p></w:body>",
         "<w:body" + kW + "><w:p" + kMc + "><w:t/></w:p></w:body>  1 1 0 1 0 0 0"},
        {notMc, notMc + "  0 0 0 0 0 0 0"},
        // Strict declarations rewritten everywhere, values as written; a Strict prefix in Requires is understood.
        {"<x:a xmlns:x=\"" + kStrict + "spreadsheetml/main\"><x:b v=\"50%\" xmlns:r=\"" + kStrict +
             "officeDocument/relationships\"/></x:a>",
         "<x:a xmlns:x=\"" + kTransitional + "spreadsheetml/2006/main\"><x:b v=\"50%\" xmlns:r=\"" + kTransitional +
             "officeDocument/2006/relationships\"/></x:a>  0 0 0 0 0 0 0 strict"},
        {"<w:body xmlns:w='" + kStrict + "wordprocessingml/main'" + kMc + ">" + AC(Choice("w", "<w:p/>")) + "</w:body>",
         "<w:body" + kW + kMc + "><w:p/></w:body>  1 1 0 1 0 0 0 strict"},
        // The declarations of the wrapper and of the branch move onto the content.
        {"<w:r" + kW + "><mc:AlternateContent" + kMc + "><mc:Choice Requires='w' xmlns:v='" + kVml + "'><w:pict>"
                                                        "<v:shape/></w:pict></mc:Choice></mc:AlternateContent></w:r>",
         "<w:r" + kW + "><w:pict" + kMc + " xmlns:v=\"" + kVml + "\"><v:shape/></w:pict></w:r>  1 1 0 1 0 0 0"},
        {Body("", " mc:MustUnderstand='w14'"), "mc:MustUnderstand names a namespace the library does not understand: "
                                               "http://schemas.microsoft.com/office/word/2010/wordml"}};
    for (const auto& row : rows)
        EXPECT_EQ(Prepare(row[0]), row[1]) << row[0];
    // The namespaces understood; the transitional URIs of Strict ones.
    EXPECT_TRUE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/drawing/2014/chartex") &&
                opc::IsUnderstoodNamespace(kVml) && opc::IsUnderstoodNamespace(kSml));
    EXPECT_FALSE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/word/2010/wordml") ||
                 opc::IsUnderstoodNamespace(kMcUri) || opc::IsUnderstoodNamespace(""));
    const std::string uris[][2] = {
        {"spreadsheetml/main", "spreadsheetml/2006/main"}, {"drawingml/chart", "drawingml/2006/chart"},
        {"officeDocument/relationships", "officeDocument/2006/relationships"},
        {"officeDocument/relationships/officeDocument", "officeDocument/2006/relationships/officeDocument"},
        {"officeDocument/extendedProperties", "officeDocument/2006/extended-properties"},
        {"officeDocument/customProperties", "officeDocument/2006/custom-properties"},
        {"officeDocument/relationships/metadata/thumbnail", "package/2006/relationships/metadata/thumbnail"}};
    for (const auto& row : uris)
        EXPECT_EQ(Utf8(opc::TransitionalUri(kStrict + row[0])), kTransitional + row[1]) << row[0];
    for (const std::string& same : {kTransitional + "spreadsheetml/2006/main", kStrict, std::string("urn:x")})
        EXPECT_EQ(Utf8(opc::TransitionalUri(same)), same);
}
