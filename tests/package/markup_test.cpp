// Markup compatibility and Strict namespaces, rule by rule, on hand-written parts.
#include "ooxml/opc/markup.h"
#include "package_support.h"

using namespace package_test;

namespace
{
const std::string kMc = " xmlns:mc=\"" + kMcUri + "\"";
const std::string kW = " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";
const std::string kW14 = " xmlns:w14=\"http://schemas.microsoft.com/office/word/2010/wordml\""; // not understood
const std::string kA14 = " xmlns:a14=\"http://schemas.microsoft.com/office/drawing/2010/main\"";  // understood

std::string Body(const std::string& content, const std::string& attributes = "")
{
    return "<w:body" + kW + kMc + kW14 + kA14 + attributes + (content.empty() ? "/>" : ">" + content + "</w:body>");
}
std::string AC(const std::string& branches) { return "<mc:AlternateContent>" + branches + "</mc:AlternateContent>"; }
std::string Choice(const std::string& requires, const std::string& content)
{
    return "<mc:Choice Requires=\"" + requires + "\">" + content + "</mc:Choice>";
}
std::string Fallback(const std::string& content) { return "<mc:Fallback>" + content + "</mc:Fallback>"; }

struct Prepared
{
    bool ok = false;
    std::string text, stats; // stats: AlternateContent, by Choice, by Fallback, recovered, ignored elements,
    wxString problem;        // ignored attributes, unwrapped [, "strict"]
};

Prepared Prepare(const std::string& xml, const opc::ReadOptions& options = opc::ReadOptions())
{
    wxXmlDocument document;
    Prepared result;
    if (!Parse(xml, &document))
    {
        ADD_FAILURE() << "does not parse: " << xml;
        return result;
    }
    opc::PrepareStats s;
    result.ok = opc::PrepareDocument(document, options, &result.problem, &s);
    result.text = Serialise(document);
    result.stats = Utf8(wxString::Format("%zu %zu %zu %zu %zu %zu %zu%s", s.alternateContent, s.choices, s.fallbacks,
                                         s.recovered, s.ignoredElements, s.ignoredAttributes, s.unwrapped,
                                         s.strict ? " strict" : ""));
    return result;
}
} // namespace

TEST(MarkupCompatibility, DocumentsBeforeAndAfter)
{
    const std::string strictW = "<w:body xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'" + kMc + ">";
    const std::string notMc = "<w:body" + kW + ">" + AC(Choice("w", "<w:p/>")) + "</w:body>";
    const std::string strict = "http://purl.oclc.org/ooxml/", transitional = "http://schemas.openxmlformats.org/";
    const std::string rows[][4] = {
        {"the first understood Choice replaces the wrapper in place",
         Body("<w:p/>" + AC(Choice("w14", "<w14:x/>") + Choice("w", "<w:tbl/><w:sdt/>") + Choice("w", "<w:no/>") +
                            Fallback("<w:no/>")) + "<w:sectPr/>"),
         Body("<w:p/><w:tbl/><w:sdt/><w:sectPr/>"), "1 1 0 2 0 0 0"},
        {"the Fallback, or nothing, without an understood Choice",
         Body(AC(Choice("w14", "<w14:x/>") + Fallback("<w:p/>")) + AC(Choice("w14", "<w14:x/>"))), Body("<w:p/>"),
         "2 0 1 1 0 0 0"},
        {"every required prefix understood and declared",
         Body(AC(Choice("w w14", "<w:no/>") + Choice("zz", "<w:no/>") + Choice(" w  a14 ", "<w:yes/>"))),
         Body("<w:yes/>"), "1 1 0 1 0 0 0"},
        {"nested, and directly inside a Choice",
         Body(AC(Choice("w", "<w:p>" + AC(Choice("w14", "<w14:x/>") + Fallback("<w:r/>")) + "</w:p>" +
                                 AC(Fallback("<w:i/>"))))),
         Body("<w:p><w:r/></w:p><w:i/>"), "3 1 2 4 0 0 0"},
        {"ignorable and not understood: dropped, also deep down; understood: kept",
         Body("<w:p w14:paraId='1' a14:kept=\"2\" w:rsidR=\"3\"><w14:unknown><w:r/></w14:unknown><a14:known/><w:r>"
              "<w14:deep/></w:r></w:p>", " mc:Ignorable='w14 a14'"),
         Body("<w:p a14:kept=\"2\" w:rsidR=\"3\"><a14:known/><w:r/></w:p>"), "0 0 0 0 2 1 0"},
        {"a namespace that is not ignorable stays (the readers skip it)", Body("<w14:x w14:y=\"1\"/>"),
         Body("<w14:x w14:y=\"1\"/>"), "0 0 0 0 0 0 0"},
        {"ProcessContent keeps the children of a dropped element",
         Body("<w14:wrapper><w:p/><w:tbl/></w14:wrapper><w14:other><w:lost/></w14:other>",
              " mc:Ignorable='w14' mc:ProcessContent='w14:wrapper'"),
         Body("<w:p/><w:tbl/>"), "0 0 0 2 1 0 1"},
        {"ProcessContent with a wildcard",
         Body("<w14:a><w:p/></w14:a><w14:b><w:q/></w14:b>", " mc:Ignorable='w14' mc:ProcessContent='w14:*'"),
         Body("<w:p/><w:q/>"), "0 0 0 2 0 0 2"},
        {"declared only deep inside the part",
         "<w:body" + kW + "><w:p" + kMc + ">" + AC(Choice("w", "<w:t/>")) + "</w:p></w:body>",
         "<w:body" + kW + "><w:p" + kMc + "><w:t/></w:p></w:body>", "1 1 0 1 0 0 0"},
        {"prefix mc without its declaration is no markup compatibility", notMc, notMc, "0 0 0 0 0 0 0"},
        {"Strict declarations rewritten everywhere, values as written",
         "<x:a xmlns:x=\"" + strict + "spreadsheetml/main\"><x:b v=\"50%\" xmlns:r=\"" + strict +
             "officeDocument/relationships\"/></x:a>",
         "<x:a xmlns:x=\"" + transitional + "spreadsheetml/2006/main\"><x:b v=\"50%\" xmlns:r=\"" + transitional +
             "officeDocument/2006/relationships\"/></x:a>",
         "0 0 0 0 0 0 0 strict"},
        {"a Strict prefix in Requires is understood after the rewrite",
         strictW + AC(Choice("w", "<w:p/>")) + "</w:body>", "<w:body" + kW + kMc + "><w:p/></w:body>",
         "1 1 0 1 0 0 0 strict"},
    };
    for (const auto& row : rows)
    {
        const Prepared p = Prepare(row[1]);
        EXPECT_TRUE(p.ok) << row[0] << ": " << Utf8(p.problem);
        EXPECT_EQ(p.text, row[2]) << row[0];
        EXPECT_EQ(p.stats, row[3]) << row[0];
    }
}

TEST(MarkupCompatibility, DeclarationsOfTheWrapperAndBranchMoveOntoTheContent)
{
    const Prepared p = Prepare("<w:r" + kW + "><mc:AlternateContent" + kMc + "><mc:Choice Requires='w' "
                               "xmlns:v='urn:schemas-microsoft-com:vml'><w:pict><v:shape/></w:pict></mc:Choice>"
                               "</mc:AlternateContent></w:r>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text.rfind("<w:r" + kW + "><w:pict ", 0), 0u) << p.text;
    EXPECT_NE(p.text.find("xmlns:v=\"urn:schemas-microsoft-com:vml\""), std::string::npos) << p.text;
    EXPECT_NE(p.text.find(kMc), std::string::npos) << p.text;
    EXPECT_EQ(p.text.find("AlternateContent"), std::string::npos) << p.text;
}

TEST(MarkupCompatibility, MustUnderstandAndSwitches)
{
    const Prepared unknown = Prepare(Body("", " mc:MustUnderstand='w14'"));
    EXPECT_FALSE(unknown.ok);
    EXPECT_EQ(Utf8(unknown.problem), "mc:MustUnderstand names a namespace the library does not understand: "
                                     "http://schemas.microsoft.com/office/word/2010/wordml");
    EXPECT_TRUE(Prepare(Body("", " mc:MustUnderstand='a14'")).ok);
    const std::string alternate = "<w:body" + kW + kMc + ">" + AC(Choice("w", "<w:p/>")) + "</w:body>";
    EXPECT_EQ(Prepare(alternate, opc::ReadOptions{false, true}).text, alternate);
    const std::string strict = "<x:a xmlns:x=\"http://purl.oclc.org/ooxml/spreadsheetml/main\"/>";
    EXPECT_EQ(Prepare(strict, opc::ReadOptions{true, false}).text, strict);
    EXPECT_TRUE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/drawing/2014/chartex") &&
                opc::IsUnderstoodNamespace("urn:schemas-microsoft-com:vml") && opc::IsUnderstoodNamespace(kSml));
    EXPECT_FALSE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/word/2010/wordml") ||
                 opc::IsUnderstoodNamespace(kMcUri) || opc::IsUnderstoodNamespace(""));
}

TEST(Strict, TransitionalUris)
{
    const std::string strict = "http://purl.oclc.org/ooxml/", transitional = "http://schemas.openxmlformats.org/";
    const std::string rows[][2] = {
        {"spreadsheetml/main", "spreadsheetml/2006/main"}, {"drawingml/chart", "drawingml/2006/chart"},
        {"officeDocument/relationships", "officeDocument/2006/relationships"},
        {"officeDocument/relationships/officeDocument", "officeDocument/2006/relationships/officeDocument"},
        {"officeDocument/extendedProperties", "officeDocument/2006/extended-properties"},
        {"officeDocument/customProperties", "officeDocument/2006/custom-properties"},
        {"officeDocument/relationships/metadata/thumbnail", "package/2006/relationships/metadata/thumbnail"}};
    for (const auto& row : rows)
        EXPECT_EQ(Utf8(opc::TransitionalUri(strict + row[0])), transitional + row[1]) << row[0];
    for (const std::string& same : {transitional + "spreadsheetml/2006/main", strict, std::string("urn:x")})
        EXPECT_EQ(Utf8(opc::TransitionalUri(same)), same);
}
