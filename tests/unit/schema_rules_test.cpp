// Behaviours of the generated classes that look odd but are required: native types, defaults without presence,
// values kept as written, closed extension lists, renamed, guarded and foreign members.
#include <cmath>
#include <type_traits>
#include <utility>

#include "test_support.h"

#include "ooxml/all.h"

using namespace ooxml_test;
namespace sml = ooxml::sml;
namespace wml = ooxml::wml;
namespace dml = ooxml::dml;
namespace pml = ooxml::pml;
namespace chart = ooxml::chart;

// The native type of a member's getter, from its schema type.
#define NATIVE(Class, Getter, Type) \
    static_assert(std::is_same<decltype(std::declval<Class&>().Getter()), Type>::value, #Class "::" #Getter)
NATIVE(sml::CT_Row, GetOutlineLevel, unsigned char); // xsd:unsignedByte
NATIVE(dml::CT_TextFont, GetPitchFamily, char);      // xsd:byte
NATIVE(chart::CT_FirstSliceAng, GetVal, unsigned short);
NATIVE(ooxml::custom_properties::CT_PropertyData__, GetVt_i2, short);
NATIVE(ooxml::vml_o::CT_Extrusion, GetSkewangle, float);
NATIVE(chart::CT_Orientation, GetVal, wxString); // enumerations are text
NATIVE(wml::CT_OnOff, GetVal, wxAny);            // unions are variants
NATIVE(sml::CT_Row, GetSpans, std::vector<wxString>); // lists are vectors
NATIVE(ooxml::dgm::AG_IteratorAttributes, GetHideLastTrans, std::vector<bool>);

TEST(SchemaRules, DefaultsAreNotPresence)
{
    auto view = Read<sml::CT_SheetView>("<sheetView" + Xmlns("", uri::sml) + "/>");
    ASSERT_TRUE(view.ok);
    const sml::CT_SheetView& v = *view.object;
    EXPECT_TRUE(v.GetShowGridLines() && v.GetShowZeros() && !v.GetRightToLeft() && !v.GetTabSelected() && !v.GetPane());
    EXPECT_TRUE(v.GetView() == "normal" && v.GetColorId() == 64 && v.GetZoomScale() == 100 && !v.GetZoomScaleNormal());
    EXPECT_FALSE(v.CheckZoomScale() || v.CheckShowGridLines() || v.CheckView());
    auto cell = Read<sml::CT_Cell>("<x:c r='A1'><x:v>1.5</x:v></x:c>");
    EXPECT_TRUE(cell.object->GetT() == "n" && !cell.object->CheckT());
    auto bare = Read<sml::CT_BooleanProperty>("<x:b/>");
    EXPECT_TRUE(bare.object->GetVal() && !bare.object->CheckVal());
    EXPECT_TRUE(Read<sml::CT_BooleanProperty>("<x:b val='1'/>").object->CheckVal()); // equal to the default: present
    auto overlap = Read<chart::CT_BarChart>("<c:barChart><c:overlap/></c:barChart>");
    EXPECT_EQ(overlap.object->GetOverlap()->GetVal().As<wxString>(), "0%");
    EXPECT_FALSE(overlap.object->CheckGapWidth());
    EXPECT_EQ(sml::CT_Selection().GetSqref(), std::vector<wxString>({"A1"}));
    EXPECT_EQ(sml::CT_CalcPr().GetIterateDelta(), 0.001);
    EXPECT_EQ(pml::CT_Presentation().GetServerZoom().As<wxString>(), "50%");
    EXPECT_TRUE(chart::CT_MarkerSize().GetVal() == 5 && dml::CT_Point2D().GetX().IsNull()); // no default: null
    EXPECT_TRUE(std::isnan(ooxml::dgm::CT_NumericRule().GetVal()));
    EXPECT_EQ(ooxml::dgm::AG_IteratorAttributes().GetCnt(), std::vector<unsigned int>({0}));
    EXPECT_EQ(ooxml::relationships::CT_Relationship().GetTargetMode(), ""); // no default "Internal"
}

TEST(SchemaRules, ValuesKeptAsWritten)
{
    auto sheets = Read<sml::CT_Sheets>("<x:sheets><x:sheet name='A' state='hidden'/><x:sheet state='veryHidden-ish'/>"
                                       "</x:sheets>");
    EXPECT_TRUE(sheets.ok && sheets.object->GetSheet()[1]->GetState() == "veryHidden-ish"); // enumerations unchecked
    auto run = Read<dml::CT_TextCharacterProperties>("<a:rPr b='1' i='true' cap='all'/>");
    EXPECT_TRUE(run.object->GetB() == "1" && run.object->GetI() == "true");
    for (const char* val : {"0", "false", "on"}) // a number if it is one, else the text
    {
        auto b = Read<wml::CT_OnOff>("<w:b w:val='" + wxString(val) + "'/>");
        wxString text;
        EXPECT_TRUE(b.ok && b.object->GetVal().GetAs(&text) && text == val) << val;
        EXPECT_EQ(b.object->GetVal().CheckType<long long>(), *val == '0') << val;
    }
    EXPECT_TRUE(Read<wml::CT_OnOff>("<w:b/>").object->GetVal().IsNull());
    EXPECT_EQ(Read<chart::CT_GapAmount>("<c:gapWidth val='219'/>").object->GetVal().As<long long>(), 219);
    EXPECT_EQ(Read<chart::CT_NumVal>("<c:pt idx='0'><c:v>1.5E-3</c:v></c:pt>").object->GetV(), "1.5E-3");
    EXPECT_EQ(Read<ooxml::dgm::CT_Pt>("<d:pt modelId='{5F1A}'/>").object->GetModelId().As<wxString>(), "{5F1A}");
    auto core = Read<ooxml::core_properties::CT_CoreProperties>(
        "<cp:coreProperties><cp:lastPrinted>2020-02-30T25:00:00Z</cp:lastPrinted><cp:revision>x</cp:revision>"
        "<cp:keywords><cp:value>a</cp:value> b</cp:keywords></cp:coreProperties>");
    ASSERT_TRUE(core.ok); // no date or number parsed
    EXPECT_TRUE(core.object->GetLastPrinted() == "2020-02-30T25:00:00Z" && core.object->GetRevision() == "x");
    EXPECT_TRUE(core.object->CheckKeywords() && core.object->GetKeywords().empty()); // an element first: no text
}

TEST(SchemaRules, ExtensionListsAreClosed)
{
    LogCapture quiet; // the unknown children are logged
    auto unknown = Read<dml::CT_OfficeArtExtension>("<a:ext uri='{28A0}'><a14:useLocalDpi val='0'/></a:ext>");
    EXPECT_TRUE(unknown.ok && unknown.object->GetUri() == "{28A0}");
    EXPECT_FALSE(unknown.object->CheckDsp_dataModelExt() || unknown.object->CheckA3danim_posterFrame());
    EXPECT_EQ(Read<dml::CT_OfficeArtExtension>("<a:ext uri='u'><dsp:dataModelExt relId='rId6'/></a:ext>")
                  .object->GetDsp_dataModelExt()->GetRelId(), "rId6");
    auto charts = Read<chart::CT_ExtensionList>("<c:extLst><c:ext uri='{A}'><c15:datalabelsRange/></c:ext>"
                                                "<c:ext uri='{B}'><c15:filteredSeriesTitle/></c:ext></c:extLst>");
    ASSERT_EQ(charts.object->GetExt().size(), 2u);
    EXPECT_FALSE(charts.object->GetExt()[0]->CheckC15_filteredSeriesTitle() ||
                 charts.object->GetExt()[0]->CheckC15_filteredCategoryTitle());
    EXPECT_TRUE(charts.object->GetExt()[1]->CheckC15_filteredSeriesTitle());
    // Graphic data: the five known children; anything else leaves only the URI.
    auto picture = Read<dml::CT_GraphicalObjectData>("<a:graphicData uri='p'><pic:pic/></a:graphicData>");
    const dml::CT_GraphicalObjectData& data = *picture.object;
    EXPECT_FALSE(data.GetUri() != "p" || data.CheckDgm_relIds() || data.CheckC_chart() || data.CheckCx_chart() ||
                 data.CheckAm3d_model3d() || data.CheckTbl());
    auto charted = Read<dml::CT_GraphicalObjectData>("<a:graphicData><c:chart r:id='rId2'/><cx:chart r:id='rId9'/>"
                                                     "</a:graphicData>");
    EXPECT_EQ(charted.object->GetC_chart()->GetR_id() + charted.object->GetCx_chart()->GetR_id(), "rId2rId9");
}

TEST(SchemaRules, RenamedGuardedAndForeignMembers)
{
    // An element and an attribute of one name: the second member takes a suffix.
    auto pivot = Read<sml::CT_PivotCacheDefinition>("<x:pivotCacheDefinition tupleCache='1'><x:tupleCache/>"
                                                    "</x:pivotCacheDefinition>");
    EXPECT_TRUE(pivot.object->CheckTupleCache() && pivot.object->GetTupleCache() != nullptr);
    EXPECT_TRUE(pivot.object->CheckTupleCache_1() && pivot.object->GetTupleCache_1());
    auto anchor = Read<ooxml::wp::CT_Anchor>("<wp:anchor simplePos='1'><wp:simplePos x='10' y='20'/></wp:anchor>");
    EXPECT_TRUE(anchor.object->GetSimplePos_1() && anchor.object->GetSimplePos()->GetY().As<long long>() == 20);
    auto levels = Read<ooxml::chartex::CT_NumericDimension>("<cx:numDim type='val'><cx:lvl ptCount='1'><cx:pt idx='0'>5"
                                                            "</cx:pt></cx:lvl><cx:lvl ptCount='0'/></cx:numDim>");
    EXPECT_TRUE(levels.object->GetData__()->GetLvl().empty()); // without a formula the levels fill the second array
    ASSERT_EQ(levels.object->GetData__()->GetLvl_1().size(), 2u);
    EXPECT_EQ(levels.object->GetData__()->GetLvl_1()[0]->GetPt()[0]->GetValue(), 5.0);
    auto formula = Read<ooxml::chartex::CT_NumericDimension>("<cx:numDim><cx:f>S!$A$1</cx:f><cx:lvl/></cx:numDim>");
    EXPECT_TRUE(formula.object->GetData__()->GetLvl().size() == 1 && formula.object->GetData__()->GetLvl_1().empty());
    // Dublin Core: only an element literally named "any" fills the first member; the terms are unknown.
    LogCapture log;
    auto core = Read<ooxml::core_properties::CT_CoreProperties>(
        "<cp:coreProperties><dc:title>T</dc:title><dc:creator/><dcterms:created>2024</dcterms:created><dc:any/>"
        "</cp:coreProperties>");
    ASSERT_TRUE(core.ok);
    EXPECT_TRUE(core.object->CheckDc_any() && core.object->GetDc_any()->IsNull());
    EXPECT_FALSE(core.object->GetDc_any_1() || core.object->GetDc_any_5());
    EXPECT_FALSE(core.object->CheckDcterms_any() || core.object->CheckDcterms_any_1());
    EXPECT_GE(log.Count("Invalid name: dcterms:created"), 1u);
    // The presentation's verifier is read from "ChangeVerifier", not from its schema name.
    auto verifier = Read<pml::CT_Presentation>("<p:presentation><p:ChangeVerifier spinCount='9'/></p:presentation>");
    EXPECT_TRUE(verifier.object->CheckModifyVerifier() && verifier.object->GetModifyVerifier()->GetSpinCount() == 9);
    EXPECT_FALSE(Read<pml::CT_Presentation>("<p:presentation><p:modifyVerifier/></p:presentation>").object->
                 GetModifyVerifier());
    // A member of another schema matches only in that schema's namespace: "v:fill", not the Office "o:fill".
    auto defaults = Read<ooxml::vml_o::CT_ShapeDefaults>("<o:shapedefaults v:ext='edit' o:spidmax='2049'><o:fill/>"
                                                         "<v:fill color='white'/></o:shapedefaults>");
    EXPECT_TRUE(defaults.object->GetSpidmax() == 2049 && defaults.object->GetV_AG_Ext()->GetExt() == "edit");
    EXPECT_EQ(defaults.object->GetV_fill()->GetColor(), "white"); // the VML fill, not the Office one
    EXPECT_FALSE(Read<ooxml::vml_o::CT_ShapeDefaults>("<o:shapedefaults><o:fill/></o:shapedefaults>").object->
                 CheckV_fill());
}
