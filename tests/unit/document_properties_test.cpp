// Parts 3.2, 3.3 and 3.4: core properties and Dublin Core, extended and custom
// properties with variant types, bibliography, custom XML, schema library,
// characteristics and signature classes.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/package/bibliography.h"
#include "ooxml/package/characteristics.h"
#include "ooxml/package/core_properties.h"
#include "ooxml/package/custom_properties.h"
#include "ooxml/package/custom_xml.h"
#include "ooxml/package/dc.h"
#include "ooxml/package/dcterms.h"
#include "ooxml/package/digital_signature.h"
#include "ooxml/package/extended_properties.h"
#include "ooxml/package/sl.h"
#include "ooxml/package/vt.h"

using ooxml_test::LogCapture;
using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace core = ooxml::core_properties;
namespace custom = ooxml::custom_properties;
namespace extended = ooxml::extended_properties;
namespace vt = ooxml::vt;
namespace bib = ooxml::bibliography;

namespace
{
wxString CoreProperties(const wxString& children)
{
    return "<cp:coreProperties" + Xmlns("cp", uri::core) + Xmlns("dc", uri::dc) + Xmlns("dcterms", uri::dcterms) +
           ">" + children + "</cp:coreProperties>";
}
wxString CustomProperties(const wxString& children)
{
    return "<Properties" + Xmlns("", uri::custom) + Xmlns("vt", uri::vt) + ">" + children + "</Properties>";
}
} // namespace

// -- Part 3.2 ----------------------------------------------------------------------------------

TEST(CoreProperties, StandardDublinCoreElementsLeaveTheDublinCoreMembersNull)
{
    LogCapture log;
    auto r = Read<core::CT_CoreProperties>(CoreProperties(
        "<dc:title>Report</dc:title><dc:creator>Ann</dc:creator><dc:subject>s</dc:subject>"
        "<dc:description>d</dc:description><dc:identifier>i</dc:identifier><dc:language>en</dc:language>"
        "<dcterms:created>2024-01-01T00:00:00Z</dcterms:created><dcterms:modified>x</dcterms:modified>"
        "<cp:revision>3</cp:revision>"));
    ASSERT_TRUE(r.ok);
    const core::CT_CoreProperties& p = *r.object;
    EXPECT_EQ(p.GetDc_any(), nullptr);
    EXPECT_EQ(p.GetDc_any_1(), nullptr);
    EXPECT_EQ(p.GetDc_any_2(), nullptr);
    EXPECT_EQ(p.GetDc_any_3(), nullptr);
    EXPECT_EQ(p.GetDc_any_4(), nullptr);
    EXPECT_EQ(p.GetDc_any_5(), nullptr);
    EXPECT_EQ(p.GetDcterms_any(), nullptr);
    EXPECT_EQ(p.GetDcterms_any_1(), nullptr);
    EXPECT_EQ(p.GetRevision(), "3");
}

TEST(CoreProperties, TermsElementDoesNotMatchEither)
{
    LogCapture log;
    auto r = Read<core::CT_CoreProperties>(CoreProperties("<dcterms:created>2024</dcterms:created>"));
    ASSERT_TRUE(r.ok);
    EXPECT_FALSE(r.object->CheckDcterms_any());
    EXPECT_EQ(log.Count("Invalid name: dcterms:created"), 1u); // the map has no entry for the terms
}

TEST(CoreProperties, EmptyKeywordsArePresentAndEmpty)
{
    auto r = Read<core::CT_CoreProperties>(CoreProperties("<cp:keywords/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckKeywords());
    EXPECT_EQ(r.object->GetKeywords(), "");
}

TEST(CoreProperties, KeywordsWithAnElementFirstKeepTheEmptyString)
{
    auto r = Read<core::CT_CoreProperties>(CoreProperties("<cp:keywords><cp:value>a</cp:value> b</cp:keywords>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckKeywords());
    EXPECT_EQ(r.object->GetKeywords(), "");
}

TEST(CoreProperties, MembersInTableOrderAsText)
{
    auto r = Read<core::CT_CoreProperties>(CoreProperties(
        "<cp:category>c</cp:category><cp:contentStatus>Draft</cp:contentStatus><cp:contentType>t</cp:contentType>"
        "<cp:keywords>k1 k2</cp:keywords><cp:lastModifiedBy>Bo</cp:lastModifiedBy>"
        "<cp:lastPrinted>2020-01-01T00:00:00Z</cp:lastPrinted><cp:revision>x</cp:revision><cp:version>1.0</cp:version>"));
    ASSERT_TRUE(r.ok);
    const core::CT_CoreProperties& p = *r.object;
    EXPECT_EQ(p.GetCategory(), "c");
    EXPECT_EQ(p.GetContentStatus(), "Draft");
    EXPECT_EQ(p.GetContentType(), "t");
    EXPECT_EQ(p.GetKeywords(), "k1 k2");
    EXPECT_EQ(p.GetLastModifiedBy(), "Bo");
    EXPECT_EQ(p.GetLastPrinted(), "2020-01-01T00:00:00Z"); // no date parsed
    EXPECT_EQ(p.GetRevision(), "x");                       // no number parsed
    EXPECT_EQ(p.GetVersion(), "1.0");
    // Bits: category 0, contentStatus 1, contentType 2, keywords 7, version 15.
    core::CT_CoreProperties fresh;
    fresh.SetVersion("v");
    EXPECT_TRUE(fresh.CheckVersion());
    EXPECT_FALSE(fresh.CheckKeywords());
}

TEST(CoreProperties, ElementLiterallyNamedDcAnyLandsInTheFirstMember)
{
    auto r = Read<core::CT_CoreProperties>(CoreProperties("<dc:any a='1'/><dc:any/>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetDc_any(), nullptr);
    EXPECT_TRUE(r.object->CheckDc_any());
    EXPECT_EQ(r.object->GetDc_any_1(), nullptr); // only ever filled by SetDc_any_1
    ooxml::dc::SimpleLiteral* literal = r.object->GetDc_any();
    EXPECT_TRUE(literal->IsNull()); // SimpleLiteral stores no value
    r.object->SetDc_any_5(new ooxml::dc::SimpleLiteral);
    EXPECT_TRUE(r.object->CheckDc_any_5());
}

TEST(DublinCore, ContainersHoldTheirGroupsAsThePartSays)
{
    auto r = Read<ooxml::dc::elementContainer>("<c" + Xmlns("", uri::dc) + "><any/><any/></c>");
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetData__(), nullptr);
    ooxml::dc::elementsGroup* group = r.object->GetData__()->GetElementsGroup();
    ASSERT_NE(group, nullptr);
    ASSERT_EQ(group->GetData__().size(), 2u);
    EXPECT_TRUE(group->GetData__()[0]->CheckAny());

    auto terms = Read<ooxml::dcterms::elementOrRefinementContainer>("<c" + Xmlns("", uri::dcterms) +
                                                                   Xmlns("dc", uri::dc) + "><dc:any/></c>");
    ASSERT_TRUE(terms.ok);
    ooxml::dcterms::elementsAndRefinementsGroup* g = terms.object->GetData__()->GetElementsAndRefinementsGroup();
    ASSERT_EQ(g->GetData__().size(), 1u);
    EXPECT_TRUE(g->GetData__()[0]->CheckDc_any());
}

TEST(DublinCore, EncodingSchemesAreClassesWithoutValue)
{
    ooxml::dcterms::W3CDTF date;
    ooxml::dcterms::ISO639_2 language;
    auto r = Read<ooxml::dcterms::Box>("<x" + Xmlns("", uri::dcterms) + " lang='en'>text</x>");
    EXPECT_TRUE(r.ok);
    (void)date;
    (void)language;
}

// -- Part 3.3 ----------------------------------------------------------------------------------

TEST(CustomProperties, LpwstrPropertySetsBit20Only)
{
    auto r = Read<custom::CT_Properties>(CustomProperties(
        "<property fmtid='{D5CDD505-2E9C-101B-9397-08002B2CF9AE}' pid='2' name='Client'>"
        "<vt:lpwstr>Contoso</vt:lpwstr></property>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckProperty());
    XMLPtrArray<custom::CT_Property> properties = r.object->GetProperty();
    ASSERT_EQ(properties.size(), 1u);
    custom::CT_Property* p = properties[0];
    EXPECT_EQ(p->GetPid(), 2);
    EXPECT_EQ(p->GetName(), "Client");
    custom::CT_PropertyData__* value = p->GetData__();
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(value->CheckVt_lpwstr());
    EXPECT_EQ(value->GetVt_lpwstr(), "Contoso");
    EXPECT_FALSE(value->CheckVt_lpstr());
    EXPECT_FALSE(value->CheckVt_vector());
    EXPECT_FALSE(value->CheckVt_clsid()); // bit 32, in the 64-bit word
}

TEST(CustomProperties, DatesAndFileTimesReadBackAsTheirText)
{
    auto r = Read<custom::CT_Properties>(CustomProperties(
        "<property pid='2' name='a'><vt:filetime>2024-02-30T25:00:00Z</vt:filetime></property>"
        "<property pid='3' name='b'><vt:date>not a date</vt:date></property>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetProperty()[0]->GetData__()->GetVt_filetime(), "2024-02-30T25:00:00Z");
    EXPECT_EQ(r.object->GetProperty()[1]->GetData__()->GetVt_date(), "not a date");
}

TEST(CustomProperties, EmptyI4SetsItsBitAndKeepsZero)
{
    auto r = Read<custom::CT_Properties>(CustomProperties("<property pid='2' name='n'><vt:i4/></property>"));
    ASSERT_TRUE(r.ok);
    custom::CT_PropertyData__* value = r.object->GetProperty()[0]->GetData__();
    EXPECT_TRUE(value->CheckVt_i4());
    EXPECT_EQ(value->GetVt_i4(), 0);
}

TEST(CustomProperties, EveryAlternativeUsesTheConversionOfItsType)
{
    auto r = Read<custom::CT_Properties>(CustomProperties(
        "<property pid='2' name='a'><vt:i1>300</vt:i1></property>"
        "<property pid='3' name='b'><vt:r8>2.5</vt:r8></property>"
        "<property pid='4' name='c'><vt:bool>true</vt:bool></property>"
        "<property pid='5' name='d'><vt:clsid>{X}</vt:clsid></property>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetProperty()[0]->GetData__()->GetVt_i1(), 44); // 8-bit, truncated
    EXPECT_EQ(r.object->GetProperty()[1]->GetData__()->GetVt_r8(), 2.5);
    EXPECT_TRUE(r.object->GetProperty()[2]->GetData__()->GetVt_bool());
    EXPECT_TRUE(r.object->GetProperty()[3]->GetData__()->CheckVt_clsid());

    auto bad = Read<custom::CT_Properties>(CustomProperties("<property pid='2' name='a'><vt:i4>x</vt:i4></property>"));
    EXPECT_FALSE(bad.ok);
}

TEST(VariantTypes, VectorOfThreeStrings)
{
    auto r = Read<vt::CT_Vector>("<vt:vector" + Xmlns("vt", uri::vt) +
                                 " size='3' baseType='lpstr'><vt:lpstr>A</vt:lpstr><vt:lpstr>B</vt:lpstr>"
                                 "<vt:lpstr>C</vt:lpstr></vt:vector>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetSize(), 3u);
    EXPECT_EQ(r.object->GetBaseType(), "lpstr");
    XMLPtrArray<vt::CT_VectorData__> items = r.object->GetData__();
    ASSERT_EQ(items.size(), 3u);
    for (vt::CT_VectorData__* item : items)
        EXPECT_TRUE(item->CheckLpstr());
    EXPECT_EQ(items[2]->GetLpstr(), "C");
}

TEST(VariantTypes, UnprefixedVectorAttributesUnderTheDefaultNamespaceOfTheAppPart)
{
    // docProps/app.xml declares its own namespace as the default: the
    // unprefixed "size" of "vt:vector" resolves to it (Part 1.1), which the
    // variant-types map does not know, so it is not read; the children are.
    LogCapture log;
    auto r = Read<extended::CT_Properties>(
        "<Properties" + Xmlns("", uri::extended) + Xmlns("vt", uri::vt) +
        "><Pages>3</Pages><TitlesOfParts><vt:vector size='3' baseType='lpstr'><vt:lpstr>A</vt:lpstr>"
        "<vt:lpstr>B</vt:lpstr><vt:lpstr>C</vt:lpstr></vt:vector></TitlesOfParts><ScaleCrop>false</ScaleCrop>"
        "<Application>Word</Application></Properties>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetPages(), 3);
    EXPECT_FALSE(r.object->GetScaleCrop());
    EXPECT_TRUE(r.object->CheckScaleCrop());
    EXPECT_EQ(r.object->GetApplication(), "Word");
    vt::CT_Vector* vector = r.object->GetTitlesOfParts()->GetVt_vector();
    ASSERT_NE(vector, nullptr);
    EXPECT_FALSE(vector->CheckSize());
    EXPECT_FALSE(vector->CheckBaseType());
    EXPECT_EQ(vector->GetData__().size(), 3u);
    EXPECT_EQ(log.Count("Invalid name: size"), 1u);
}

TEST(VariantTypes, SizeThatDisagreesWithTheChildrenIsKept)
{
    auto r = Read<vt::CT_Vector>("<vt:vector" + Xmlns("vt", uri::vt) +
                                 " size='5' baseType='variant'><vt:variant><vt:i4>7</vt:i4></vt:variant></vt:vector>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetSize(), 5u);
    ASSERT_EQ(r.object->GetData__().size(), 1u);
    vt::CT_Variant* variant = r.object->GetData__()[0]->GetVariant();
    ASSERT_NE(variant, nullptr);
    EXPECT_EQ(variant->GetData__()->GetI4(), 7); // unprefixed names inside the variant types
}

TEST(VariantTypes, ArrayBoundsAndElements)
{
    auto r = Read<vt::CT_Array>("<vt:array" + Xmlns("vt", uri::vt) +
                                " lBounds='0' uBounds='1' baseType='i4'><vt:i4>1</vt:i4><vt:i4>2</vt:i4></vt:array>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetUBounds(), 1);
    ASSERT_EQ(r.object->GetData__().size(), 2u);
    EXPECT_EQ(r.object->GetData__()[1]->GetI4(), 2);
}

// -- Part 3.4 ----------------------------------------------------------------------------------

TEST(Bibliography, SourceKeepsItsFieldsInDocumentOrder)
{
    auto r = Read<bib::CT_Sources>("<b:Sources" + Xmlns("b", uri::bibliography) +
                                   " SelectedStyle='APA'><b:Source><b:Tag>Smi20</b:Tag><b:SourceType>Book</b:SourceType>"
                                   "<b:Title>On Things</b:Title><b:Year>n.d.</b:Year></b:Source></b:Sources>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetSelectedStyle(), "APA");
    ASSERT_EQ(r.object->GetSource().size(), 1u);
    XMLPtrArray<bib::CT_SourceTypeData__> fields = r.object->GetSource()[0]->GetData__();
    ASSERT_EQ(fields.size(), 4u);
    EXPECT_TRUE(fields[0]->CheckTag());
    EXPECT_TRUE(fields[1]->CheckSourceType());
    EXPECT_TRUE(fields[2]->CheckTitle());
    EXPECT_EQ(fields[2]->GetTitle(), "On Things");
    EXPECT_TRUE(fields[3]->CheckYear());
    EXPECT_EQ(fields[3]->GetYear(), "n.d."); // kept as text
}

TEST(Bibliography, PersonKeepsEveryFirstNameAndEmptyOnes)
{
    auto r = Read<bib::CT_PersonType>("<b:Person" + Xmlns("b", uri::bibliography) +
                                      "><b:Last>Smith</b:Last><b:First>Ann</b:First><b:First/><b:First>Mae</b:First>"
                                      "</b:Person>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetLast(), std::vector<wxString>({"Smith"}));
    EXPECT_EQ(r.object->GetFirst(), std::vector<wxString>({"Ann", "", "Mae"}));
    EXPECT_TRUE(r.object->GetMiddle().empty());
}

TEST(Bibliography, AuthorsThroughTheirHolders)
{
    auto r = Read<bib::CT_AuthorType>(
        "<b:Author" + Xmlns("b", uri::bibliography) +
        "><b:Author><b:NameList><b:Person><b:Last>Lee</b:Last></b:Person></b:NameList></b:Author>"
        "<b:Editor><b:NameList/></b:Editor></b:Author>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<bib::CT_AuthorTypeData__> roles = r.object->GetData__();
    ASSERT_EQ(roles.size(), 2u);
    bib::CT_NameOrCorporateType* author = roles[0]->GetAuthor();
    ASSERT_NE(author, nullptr);
    EXPECT_EQ(author->GetData__()->GetNameList()->GetPerson()[0]->GetLast()[0], "Lee");
    EXPECT_TRUE(roles[1]->CheckEditor());
}

TEST(OtherPackageSchemas, CustomXmlPropertiesSchemaLibraryAndCharacteristics)
{
    auto item = Read<ooxml::custom_xml::CT_DatastoreItem>(
        "<ds:datastoreItem xmlns:ds='http://schemas.openxmlformats.org/officeDocument/2006/customXml' "
        "ds:itemID='{1}'><ds:schemaRefs><ds:schemaRef ds:uri='urn:a'/><ds:schemaRef ds:uri='urn:b'/></ds:schemaRefs>"
        "</ds:datastoreItem>");
    ASSERT_TRUE(item.ok);
    EXPECT_EQ(item.object->GetItemID(), "{1}");
    ASSERT_EQ(item.object->GetSchemaRefs()->GetSchemaRef().size(), 2u);
    EXPECT_EQ(item.object->GetSchemaRefs()->GetSchemaRef()[1]->GetUri(), "urn:b");

    auto library = Read<ooxml::sl::CT_SchemaLibrary>("<sl:schemaLibrary" + Xmlns("sl", uri::sl) +
                                                     "><sl:schema sl:uri='u' sl:schemaLanguage='xsd'/></sl:schemaLibrary>");
    ASSERT_TRUE(library.ok);
    EXPECT_EQ(library.object->GetSchema()[0]->GetSchemaLanguage(), "xsd");

    auto characteristics = Read<ooxml::characteristics::CT_AdditionalCharacteristics>(
        "<additionalCharacteristics xmlns='http://schemas.openxmlformats.org/officeDocument/2006/characteristics'>"
        "<characteristic name='n' relation='ge' val='12' vocabulary='v'/></additionalCharacteristics>");
    ASSERT_TRUE(characteristics.ok);
    EXPECT_EQ(characteristics.object->GetCharacteristic()[0]->GetRelation(), "ge");
    EXPECT_EQ(characteristics.object->GetCharacteristic()[0]->GetVal(), "12");
}

TEST(OtherPackageSchemas, SignatureClassesKeepTextAndLeaveTheValueBitClear)
{
    const char* ns = "http://schemas.openxmlformats.org/package/2006/digital-signature";
    auto time = Read<ooxml::digital_signature::CT_SignatureTime>(
        wxString("<SignatureTime xmlns='") + ns + "'><Format>YYYY-MM-DDThh:mm:ssTZD</Format>"
        "<Value>2024-01-01T10:00:00Z</Value></SignatureTime>");
    ASSERT_TRUE(time.ok);
    EXPECT_EQ(time.object->GetFormat(), "YYYY-MM-DDThh:mm:ssTZD");
    EXPECT_EQ(time.object->GetValue(), "2024-01-01T10:00:00Z");

    auto reference = Read<ooxml::digital_signature::CT_RelationshipReference>(
        wxString("<RelationshipReference xmlns='") + ns + "' SourceId='rId1'>text</RelationshipReference>");
    ASSERT_TRUE(reference.ok);
    EXPECT_EQ(reference.object->GetSourceId(), "rId1");
    EXPECT_EQ(reference.object->GetValue(), "text");
    EXPECT_FALSE(reference.object->CheckValue());
}
