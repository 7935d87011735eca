// Markup compatibility (ECMA-376 Part 3) and Strict namespaces, rule by rule,
// on hand-written parts.
#include <gtest/gtest.h>

#include "ooxml/opc/markup.h"
#include "package_support.h"

using namespace package_test;
namespace opc = ooxml::opc;

namespace
{

const std::string kMc = " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"";
const std::string kW = " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";
const std::string kW14 = " xmlns:w14=\"http://schemas.microsoft.com/office/word/2010/wordml\"";  // not bound
const std::string kA14 = " xmlns:a14=\"http://schemas.microsoft.com/office/drawing/2010/main\"";  // bound

struct Prepared
{
    bool ok;
    std::string text;
    wxString problem;
    opc::PrepareStats stats;
};

Prepared Prepare(const std::string& xml, const opc::ReadOptions& options = opc::ReadOptions())
{
    wxXmlDocument document;
    Prepared result{false, "", "", {}};
    EXPECT_TRUE(Parse(xml, &document)) << xml;
    if (!document.GetRoot())
        return result;
    result.ok = opc::PrepareDocument(document, options, &result.problem, &result.stats);
    result.text = Serialise(document);
    return result;
}

} // namespace

TEST(MarkupCompatibility, FirstUnderstoodChoiceReplacesTheWrapperInPlace)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + "><w:p/>"
                               "<mc:AlternateContent><mc:Choice Requires='w14'><w14:x/></mc:Choice>"
                               "<mc:Choice Requires='w'><w:tbl/><w:sdt/></mc:Choice>"
                               "<mc:Choice Requires='w'><w:second/></mc:Choice>"
                               "<mc:Fallback><w:fallback/></mc:Fallback></mc:AlternateContent>"
                               "<w:sectPr/></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p/><w:tbl/><w:sdt/><w:sectPr/></w:body>");
    EXPECT_EQ(p.stats.alternateContent, 1u);
    EXPECT_EQ(p.stats.choices, 1u);
    EXPECT_EQ(p.stats.fallbacks, 0u);
    EXPECT_EQ(p.stats.recovered, 2u);
}

TEST(MarkupCompatibility, FallbackWhenNoChoiceIsUnderstood)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + "><mc:AlternateContent>"
                               "<mc:Choice Requires='w14'><w14:x/></mc:Choice>"
                               "<mc:Fallback><w:p/></mc:Fallback></mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p/></w:body>");
    EXPECT_EQ(p.stats.fallbacks, 1u);
}

TEST(MarkupCompatibility, NothingWhenNoChoiceIsUnderstoodAndNoFallback)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + "><w:p/><mc:AlternateContent>"
                               "<mc:Choice Requires='w14'><w14:x/></mc:Choice></mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p/></w:body>");
    EXPECT_EQ(p.stats.alternateContent, 1u);
    EXPECT_EQ(p.stats.recovered, 0u);
}

TEST(MarkupCompatibility, EveryRequiredPrefixMustBeUnderstoodAndDeclared)
{
    // "w a14" are both bound; "w w14" is not; "zz" is not declared at all.
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + kA14 + ">"
                               "<mc:AlternateContent><mc:Choice Requires='w w14'><w:no1/></mc:Choice>"
                               "<mc:Choice Requires='zz'><w:no2/></mc:Choice>"
                               "<mc:Choice Requires=' w  a14 '><w:yes/></mc:Choice></mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + kA14 + "><w:yes/></w:body>");
}

TEST(MarkupCompatibility, NestedAlternateContent)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + "><mc:AlternateContent><mc:Choice Requires='w'>"
                               "<w:p><mc:AlternateContent><mc:Choice Requires='w14'><w14:x/></mc:Choice>"
                               "<mc:Fallback><w:r/></mc:Fallback></mc:AlternateContent></w:p>"
                               "</mc:Choice></mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p><w:r/></w:p></w:body>");
    EXPECT_EQ(p.stats.alternateContent, 2u);
    EXPECT_EQ(p.stats.choices, 1u);
    EXPECT_EQ(p.stats.fallbacks, 1u);
}

TEST(MarkupCompatibility, AlternateContentDirectlyInsideAChoice)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + "><mc:AlternateContent><mc:Choice Requires='w'>"
                               "<mc:AlternateContent><mc:Fallback><w:inner/></mc:Fallback></mc:AlternateContent>"
                               "</mc:Choice></mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + "><w:inner/></w:body>");
}

TEST(MarkupCompatibility, DeclarationsOfTheWrapperAndBranchMoveOntoTheContent)
{
    const std::string v = " xmlns:v='urn:schemas-microsoft-com:vml'";
    const Prepared p = Prepare("<w:r" + kW + "><mc:AlternateContent" + kMc + "><mc:Choice Requires='w'" + v +
                               "><w:pict><v:shape/></w:pict></mc:Choice></mc:AlternateContent></w:r>");
    ASSERT_TRUE(p.ok);
    EXPECT_NE(p.text.find("<w:pict"), std::string::npos) << p.text;
    EXPECT_NE(p.text.find("xmlns:v=\"urn:schemas-microsoft-com:vml\""), std::string::npos) << p.text;
    EXPECT_NE(p.text.find("xmlns:mc="), std::string::npos) << p.text;
    EXPECT_EQ(p.text.find("AlternateContent"), std::string::npos) << p.text;
}

TEST(MarkupCompatibility, IgnorableElementsAndAttributesOfUnknownNamespacesAreDropped)
{
    const Prepared p = Prepare("<w:document" + kW + kMc + kW14 + kA14 + " mc:Ignorable='w14 a14'>"
                               "<w:p w14:paraId='1' a14:kept='2' w:rsidR='3'><w14:unknown><w:r/></w14:unknown>"
                               "<a14:known/><w:r/></w:p></w:document>");
    ASSERT_TRUE(p.ok);
    // w14 is ignorable and not understood: gone.  a14 is understood: kept.
    EXPECT_EQ(p.text, "<w:document" + kW + kMc + kW14 + kA14 +
                          "><w:p a14:kept=\"2\" w:rsidR=\"3\"><a14:known/><w:r/></w:p></w:document>");
    EXPECT_EQ(p.stats.ignoredElements, 1u);
    EXPECT_EQ(p.stats.ignoredAttributes, 1u);
}

TEST(MarkupCompatibility, UnknownNamespaceThatIsNotIgnorableStays)
{
    // The generated readers skip it (Part 2.2); preprocessing leaves it.
    const Prepared p = Prepare("<w:p" + kW + kW14 + "><w14:x w14:y='1'/></w:p>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:p" + kW + kW14 + "><w14:x w14:y=\"1\"/></w:p>");
}

TEST(MarkupCompatibility, IgnorableIsInheritedByDescendants)
{
    const Prepared p = Prepare("<w:document" + kW + kMc + kW14 + " mc:Ignorable='w14'><w:body><w:p>"
                               "<w14:deep/></w:p></w:body></w:document>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text.find("w14:deep"), std::string::npos) << p.text;
}

TEST(MarkupCompatibility, ProcessContentKeepsTheChildrenOfADroppedElement)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 +
                               " mc:Ignorable='w14' mc:ProcessContent='w14:wrapper'>"
                               "<w14:wrapper><w:p/><w:tbl/></w14:wrapper><w14:other><w:lost/></w14:other></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p/><w:tbl/></w:body>");
    EXPECT_EQ(p.stats.unwrapped, 1u);
    EXPECT_EQ(p.stats.ignoredElements, 1u);
}

TEST(MarkupCompatibility, ProcessContentWithWildcard)
{
    const Prepared p = Prepare("<w:body" + kW + kMc + kW14 + " mc:Ignorable='w14' mc:ProcessContent='w14:*'>"
                               "<w14:a><w:p/></w14:a><w14:b><w:q/></w14:b></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + kMc + kW14 + "><w:p/><w:q/></w:body>");
}

TEST(MarkupCompatibility, MustUnderstandAnUnknownNamespaceIsAnError)
{
    const Prepared p = Prepare("<w:document" + kW + kMc + kW14 + " mc:MustUnderstand='w14'/>");
    EXPECT_FALSE(p.ok);
    EXPECT_EQ(Utf8(p.problem), "mc:MustUnderstand names a namespace the library does not understand: "
                               "http://schemas.microsoft.com/office/word/2010/wordml");
    const Prepared known = Prepare("<w:document" + kW + kMc + kA14 + " mc:MustUnderstand='a14'/>");
    EXPECT_TRUE(known.ok) << Utf8(known.problem);
}

TEST(MarkupCompatibility, MarkupCompatibilityAttributesAreRemoved)
{
    const Prepared p = Prepare("<w:document" + kW + kMc + kA14 + " mc:Ignorable='a14' mc:MustUnderstand='a14'/>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text.find("mc:Ignorable"), std::string::npos) << p.text;
    EXPECT_EQ(p.text.find("mc:MustUnderstand"), std::string::npos) << p.text;
}

TEST(MarkupCompatibility, SwitchedOffLeavesTheDocumentAsWritten)
{
    const std::string xml = "<w:body" + kW + kMc + "><mc:AlternateContent><mc:Choice Requires='w'><w:p/>"
                            "</mc:Choice></mc:AlternateContent></w:body>";
    const Prepared p = Prepare(xml, opc::ReadOptions{false, true});
    ASSERT_TRUE(p.ok);
    EXPECT_NE(p.text.find("mc:AlternateContent"), std::string::npos);
    EXPECT_EQ(p.stats.alternateContent, 0u);
}

TEST(MarkupCompatibility, DeclaredOnlyDeepInsideThePartStillProcessed)
{
    const Prepared p = Prepare("<w:body" + kW + "><w:p><w:r" + kMc + "><mc:AlternateContent>"
                               "<mc:Choice Requires='w'><w:t/></mc:Choice></mc:AlternateContent></w:r></w:p></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, "<w:body" + kW + "><w:p><w:r" + kMc + "><w:t/></w:r></w:p></w:body>");
    EXPECT_EQ(p.stats.alternateContent, 1u);
}

TEST(MarkupCompatibility, PrefixMcWithoutTheDeclarationIsNotMarkupCompatibility)
{
    const std::string xml = "<w:body" + kW + "><mc:AlternateContent><mc:Choice Requires=\"w\"><w:p/></mc:Choice>"
                            "</mc:AlternateContent></w:body>";
    const Prepared p = Prepare(xml);
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.text, xml);
    EXPECT_EQ(p.stats.alternateContent, 0u);
}

TEST(MarkupCompatibility, TheBoundSchemasAreUnderstood)
{
    EXPECT_TRUE(opc::IsUnderstoodNamespace("http://schemas.openxmlformats.org/spreadsheetml/2006/main"));
    EXPECT_TRUE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/drawing/2014/chartex"));
    EXPECT_TRUE(opc::IsUnderstoodNamespace("urn:schemas-microsoft-com:vml"));
    EXPECT_FALSE(opc::IsUnderstoodNamespace("http://schemas.microsoft.com/office/word/2010/wordml"));
    EXPECT_FALSE(opc::IsUnderstoodNamespace("http://schemas.openxmlformats.org/markup-compatibility/2006"));
    EXPECT_FALSE(opc::IsUnderstoodNamespace(""));
}

TEST(Strict, RegularAndIrregularUris)
{
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/spreadsheetml/main")),
              "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/drawingml/chart")),
              "http://schemas.openxmlformats.org/drawingml/2006/chart");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/officeDocument/relationships")),
              "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument")),
              "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/officeDocument/extendedProperties")),
              "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/officeDocument/customProperties")),
              "http://schemas.openxmlformats.org/officeDocument/2006/custom-properties");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/officeDocument/relationships/metadata/thumbnail")),
              "http://schemas.openxmlformats.org/package/2006/relationships/metadata/thumbnail");
    // Not Strict: unchanged.
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://schemas.openxmlformats.org/spreadsheetml/2006/main")),
              "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    EXPECT_EQ(Utf8(opc::TransitionalUri("http://purl.oclc.org/ooxml/")), "http://purl.oclc.org/ooxml/");
}

TEST(Strict, DeclarationsAreRewrittenEverywhereValuesStayAsWritten)
{
    const Prepared p = Prepare("<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'>"
                               "<x:sheetViews><x:sheetView zoomScale='50%' "
                               "xmlns:r='http://purl.oclc.org/ooxml/officeDocument/relationships'/></x:sheetViews>"
                               "</x:worksheet>");
    ASSERT_TRUE(p.ok);
    EXPECT_TRUE(p.stats.strict);
    EXPECT_EQ(p.text, "<x:worksheet xmlns:x=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
                      "<x:sheetViews><x:sheetView zoomScale=\"50%\" "
                      "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"/>"
                      "</x:sheetViews></x:worksheet>");
    const Prepared off = Prepare("<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'/>",
                                 opc::ReadOptions{true, false});
    EXPECT_FALSE(off.stats.strict);
    EXPECT_NE(off.text.find("purl.oclc.org"), std::string::npos);
}

TEST(Strict, StrictChoiceRequirementsAreUnderstoodAfterTheRewrite)
{
    const Prepared p = Prepare("<w:body xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'" + kMc +
                               "><mc:AlternateContent><mc:Choice Requires='w'><w:p/></mc:Choice>"
                               "</mc:AlternateContent></w:body>");
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.stats.choices, 1u);
    EXPECT_NE(p.text.find("<w:p/>"), std::string::npos);
}
