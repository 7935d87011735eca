// Part 1.3: the bound schemas, their class counts, namespace maps, namespace
// identifiers and name constants.
#include <map>
#include <set>
#include <string>

#include "part13.h"
#include "test_support.h"

#include "ooxml/constants/core_properties.h"
#include "ooxml/constants/vml.h"
#include "ooxml/constants/wml.h"
#include "ooxml/namespaces.h"

using ooxml_test::LogCapture;

namespace
{

using namespace part13;

const OOXMLSchemaInfo* FindSchema(const std::string& uri)
{
    for (std::size_t i = 0; i < OOXMLSchemaCount; ++i)
        if (uri == OOXMLSchemas[i].uri)
            return &OOXMLSchemas[i];
    return nullptr;
}

} // namespace

TEST(Schemas, ThirtyEightSchemasWithClassesAndTheirMaps)
{
    int withClasses = 0;
    for (std::size_t i = 0; i < OOXMLSchemaCount; ++i)
        withClasses += OOXMLSchemas[i].hasClasses;
    EXPECT_EQ(withClasses, 38);
    EXPECT_EQ(sizeof kSchemas / sizeof kSchemas[0], 38u);
}

TEST(Schemas, EveryMapIsAsPart13Says)
{
    for (const SchemaRow& row : kSchemas)
    {
        SCOPED_TRACE(row.uri);
        const OOXMLSchemaInfo* info = FindSchema(row.uri);
        ASSERT_NE(info, nullptr);
        EXPECT_TRUE(info->hasClasses);
        EXPECT_STREQ(info->prefix, row.prefix);
        std::map<std::string, std::string> expected = row.knows;
        expected[row.uri] = "";
        std::map<std::string, std::string> actual;
        for (const auto& entry : *info->map)
            actual[entry.first.ToStdString()] = entry.second.ToStdString();
        EXPECT_EQ(actual, expected);
    }
}

TEST(Schemas, MapsOfSchemasWithoutClassesExist)
{
    for (const char* uri : {S, R, "http://purl.org/dc/dcmitype/"})
    {
        const OOXMLSchemaInfo* info = FindSchema(uri);
        ASSERT_NE(info, nullptr) << uri;
        EXPECT_FALSE(info->hasClasses);
        EXPECT_EQ(info->map->at(uri), "");
    }
    EXPECT_STREQ(FindSchema(S)->prefix, "s");
    EXPECT_STREQ(FindSchema(R)->prefix, "r");
}

TEST(Schemas, NamespaceIdentifiersFollowTheRuleOfPart13)
{
    // Compiles only if the identifiers are as the rule derives them.
    namespace sml = schemas_openxmlformats_org_spreadsheetml_x2006_main;
    namespace dc = purl_org_dc_elements_x1_x1_;
    namespace dcterms = purl_org_dc_terms_;
    namespace a3danim = schemas_microsoft_com_office_drawing_x2018_animation_model3d;
    namespace vml = urn_schemas_microsoft_com_vml;
    namespace office = urn_schemas_microsoft_com_office_office;
    namespace a1611 = schemas_microsoft_com_office_drawing_x2016_x11_main;
    EXPECT_EQ(&sml::NamespaceMap, FindSchema("http://schemas.openxmlformats.org/spreadsheetml/2006/main")->map);
    EXPECT_EQ(&dc::NamespaceMap, FindSchema(DC)->map);
    EXPECT_EQ(&dcterms::NamespaceMap, FindSchema("http://purl.org/dc/terms/")->map);
    EXPECT_EQ(&a3danim::NamespaceMap,
              FindSchema("http://schemas.microsoft.com/office/drawing/2018/animation/model3d")->map);
    EXPECT_EQ(&vml::NamespaceMap, FindSchema(V)->map);
    EXPECT_EQ(&office::NamespaceMap, FindSchema("urn:schemas-microsoft-com:office:office")->map);
    EXPECT_EQ(&a1611::NamespaceMap, FindSchema("http://schemas.microsoft.com/office/drawing/2016/11/main")->map);
}

TEST(Schemas, OneSchemaCarriesDifferentPrefixesInDifferentMaps)
{
    std::unique_ptr<wxXmlDocument> document =
        ooxml_test::ParseXml(wxString("<root xmlns:q='") + DGM + "'/>");
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    EXPECT_EQ(context.MapNameSpace("q:relIds", schemas_openxmlformats_org_drawingml_x2006_main::NamespaceMap),
              "dgm:relIds");
    EXPECT_EQ(context.MapNameSpace("q:relIds", schemas_microsoft_com_office_drawing_x2008_diagram::NamespaceMap),
              "d:relIds");
}

TEST(Schemas, NameOfASchemaTheMapDoesNotKnowNeverMatches)
{
    // The core-properties map knows Dublin Core elements ("dc") but not the
    // terms: a terms name maps to a form no comparison of that schema equals.
    std::unique_ptr<wxXmlDocument> document =
        ooxml_test::ParseXml("<root xmlns:dcterms='http://purl.org/dc/terms/' xmlns:dc='http://purl.org/dc/elements/1.1/'/>");
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    LogCapture log;
    const XMLNSMap& map = schemas_openxmlformats_org_package_x2006_metadata_core_properties::NamespaceMap;
    EXPECT_EQ(context.MapNameSpace("dcterms:created", map), "http://purl.org/dc/terms/:created");
    EXPECT_EQ(context.MapNameSpace("dc:title", map), "dc:title");
}

TEST(Schemas, NameConstantsHoldTheMappedForm)
{
    namespace wml = schemas_openxmlformats_org_wordprocessingml_x2006_main;
    namespace vml = urn_schemas_microsoft_com_vml;
    namespace core = schemas_openxmlformats_org_package_x2006_metadata_core_properties;
    EXPECT_EQ(wml::s_r_id, "r:id");
    EXPECT_EQ(wml::s_xml_space, "xml:space");
    EXPECT_EQ(wml::s_m_oMath, "m:oMath");
    EXPECT_EQ(wml::s_val, "val");
    EXPECT_EQ(vml::s_o_spid, "o:spid");
    EXPECT_EQ(core::s_dc_any, "dc:any");
    EXPECT_EQ(core::s_dcterms_any, "dcterms:any");
    // Enumeration values are constants too (ST_Jc's "center").
    EXPECT_EQ(wml::s_center, "center");
}
