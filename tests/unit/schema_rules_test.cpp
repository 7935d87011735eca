// Odd-looking but required: native types, defaults without presence, values as written, closed extension lists...
#include <cmath>
#include <type_traits>
#include <utility>

#include "test_support.h"
#include "ooxml/all.h"

using namespace ooxml;
using namespace ooxml_test;

// The native type of a member's getter, from its schema type.
#define NATIVE(Class, Getter, Type) \
    static_assert(std::is_same<decltype(std::declval<Class&>().Getter()), Type>::value, #Class "::" #Getter)
NATIVE(sml::CT_Row, GetOutlineLevel, unsigned char); // xsd:unsignedByte
NATIVE(dml::CT_TextFont, GetPitchFamily, char);      // xsd:byte
NATIVE(chart::CT_FirstSliceAng, GetVal, unsigned short); NATIVE(custom_properties::CT_PropertyData__, GetVt_i2, short);
NATIVE(vml_o::CT_Extrusion, GetSkewangle, float); NATIVE(chart::CT_Orientation, GetVal, wxString); // enumerations: text
NATIVE(wml::CT_OnOff, GetVal, wxAny); NATIVE(sml::CT_Row, GetSpans, std::vector<wxString>); // unions: variants; lists
NATIVE(dgm::AG_IteratorAttributes, GetHideLastTrans, std::vector<bool>);

TEST(SchemaRules, DefaultsAreNotPresenceValuesKeptAsWritten)
{
    auto view = Read<sml::CT_SheetView>("<sheetView" + Xmlns("", "x") + "/>");
    const sml::CT_SheetView& v = *view.object;
    EXPECT_TRUE(view.ok && v.GetShowGridLines() && v.GetShowZeros() && !v.GetRightToLeft() && !v.GetPane());
    EXPECT_TRUE(v.GetView() == "normal" && v.GetColorId() == 64 && v.GetZoomScale() == 100 && !v.GetZoomScaleNormal());
    EXPECT_FALSE(v.CheckZoomScale() || v.CheckShowGridLines() || v.CheckView() || v.GetTabSelected());
    auto bare = Read<sml::CT_BooleanProperty>("<x:b/>");
    EXPECT_TRUE(bare->GetVal() && !bare->CheckVal());
    EXPECT_TRUE(Read<sml::CT_BooleanProperty>("<x:b val='1'/>")->CheckVal()); // equal to the default: present
    auto overlap = Read<chart::CT_BarChart>("<c:barChart><c:overlap/></c:barChart>");
    EXPECT_TRUE(overlap->GetOverlap()->GetVal().As<wxString>() == "0%" && !overlap->CheckGapWidth());
    EXPECT_EQ(sml::CT_Selection().GetSqref(), std::vector<wxString>({"A1"}));
    EXPECT_TRUE(sml::CT_CalcPr().GetIterateDelta() == 0.001 &&
                pml::CT_Presentation().GetServerZoom().As<wxString>() == "50%");
    EXPECT_TRUE(chart::CT_MarkerSize().GetVal() == 5 && dml::CT_Point2D().GetX().IsNull()); // no default: null
    EXPECT_TRUE(std::isnan(dgm::CT_NumericRule().GetVal()) && dgm::AG_IteratorAttributes().GetCnt() ==
                                                                  std::vector<unsigned int>({0}));
    EXPECT_EQ(relationships::CT_Relationship().GetTargetMode(), ""); // no default "Internal"
    // Values kept as written.
    auto sheets = Read<sml::CT_Sheets>("<x:sheets><x:sheet name='A' state='hidden'/><x:sheet state='veryHidden-ish'/>"
                                       "</x:sheets>");
    EXPECT_TRUE(sheets.ok && sheets->GetSheet()[1]->GetState() == "veryHidden-ish"); // enumerations unchecked
    auto run = Read<dml::CT_TextCharacterProperties>("<a:rPr b='1' i='true' cap='all'/>"); // booleans as written
    EXPECT_EQ(run->GetB() + run->GetI(), "1true");
    for (const char* val : {"0", "false", "on"}) // a number if it is one, else the text
    {
        auto b = Read<wml::CT_OnOff>("<w:b w:val='" + wxString(val) + "'/>");
        wxString text;
        EXPECT_TRUE(b.ok && b->GetVal().GetAs(&text) && text == val) << val;
        EXPECT_EQ(b->GetVal().CheckType<long long>(), *val == '0') << val;
    }
    EXPECT_TRUE(Read<wml::CT_OnOff>("<w:b/>")->GetVal().IsNull());
    EXPECT_EQ(Read<chart::CT_GapAmount>("<c:gapWidth val='219'/>")->GetVal().As<long long>(), 219);
    EXPECT_EQ(Read<chart::CT_NumVal>("<c:pt idx='0'><c:v>1.5E-3</c:v></c:pt>")->GetV(), "1.5E-3");
    EXPECT_EQ(Read<dgm::CT_Pt>("<d:pt modelId='{5F1A}'/>")->GetModelId().As<wxString>(), "{5F1A}");
    auto core = Read<core_properties::CT_CoreProperties>(
        "<cp:coreProperties><cp:lastPrinted>2020-02-30T25:00:00Z</cp:lastPrinted><cp:revision>x</cp:revision>"
        "<cp:keywords><cp:value>a</cp:value> b</cp:keywords></cp:coreProperties>");
    EXPECT_TRUE(core.ok && core->GetLastPrinted() == "2020-02-30T25:00:00Z" && core->GetRevision() == "x"); // as text
    EXPECT_TRUE(core->CheckKeywords() && core->GetKeywords().empty()); // an element first: no text
}

TEST(SchemaRules, ExtensionListsAreClosed)
{
    LogCapture quiet; // the unknown children are logged
    auto unknown = Read<dml::CT_OfficeArtExtension>("<a:ext uri='{28A0}'><a14:useLocalDpi val='0'/></a:ext>");
    EXPECT_TRUE(unknown.ok && unknown->GetUri() == "{28A0}");
    EXPECT_FALSE(unknown->CheckDsp_dataModelExt() || unknown->CheckA3danim_posterFrame());
    EXPECT_EQ(Read<dml::CT_OfficeArtExtension>("<a:ext uri='u'><dsp:dataModelExt relId='rId6'/></a:ext>")
                  ->GetDsp_dataModelExt()->GetRelId(), "rId6");
    auto charts = Read<chart::CT_ExtensionList>("<c:extLst><c:ext uri='{A}'><c15:datalabelsRange/></c:ext>"
                                                "<c:ext uri='{B}'><c15:filteredSeriesTitle/></c:ext></c:extLst>");
    ASSERT_EQ(charts->GetExt().size(), 2u);
    chart::CT_Extension &first = *charts->GetExt()[0], &second = *charts->GetExt()[1];
    EXPECT_FALSE(first.CheckC15_filteredSeriesTitle() || first.CheckC15_filteredCategoryTitle());
    EXPECT_TRUE(second.CheckC15_filteredSeriesTitle());
    // Graphic data: the five known children; anything else leaves only the URI.
    auto picture = Read<dml::CT_GraphicalObjectData>("<a:graphicData uri='p'><pic:pic/></a:graphicData>");
    EXPECT_FALSE(picture->GetUri() != "p" || picture->CheckDgm_relIds() || picture->CheckC_chart() ||
                 picture->CheckCx_chart() || picture->CheckAm3d_model3d() || picture->CheckTbl());
    auto charted = Read<dml::CT_GraphicalObjectData>("<a:graphicData><c:chart r:id='rId2'/><cx:chart r:id='rId9'/>"
                                                     "</a:graphicData>");
    EXPECT_EQ(charted->GetC_chart()->GetR_id() + charted->GetCx_chart()->GetR_id(), "rId2rId9");
}

TEST(SchemaRules, RenamedGuardedAndForeignMembers)
{
    // An element and an attribute of one name: the second member takes a suffix.
    auto p = Read<sml::CT_PivotCacheDefinition>("<x:pivotCacheDefinition tupleCache='1'><x:tupleCache/>"
                                                "</x:pivotCacheDefinition>");
    EXPECT_TRUE(p->CheckTupleCache() && p->GetTupleCache() && p->CheckTupleCache_1() && p->GetTupleCache_1());
    auto anchor = Read<wp::CT_Anchor>("<wp:anchor simplePos='1'><wp:simplePos x='10' y='20'/></wp:anchor>");
    EXPECT_TRUE(anchor->GetSimplePos_1() && anchor->GetSimplePos()->GetY().As<long long>() == 20);
    auto levels = Read<chartex::CT_NumericDimension>("<cx:numDim type='val'><cx:lvl ptCount='1'><cx:pt idx='0'>5"
                                                     "</cx:pt></cx:lvl><cx:lvl ptCount='0'/></cx:numDim>");
    EXPECT_TRUE(levels->GetData__()->GetLvl().empty()); // without a formula the levels fill the second array
    ASSERT_EQ(levels->GetData__()->GetLvl_1().size(), 2u);
    EXPECT_EQ(levels->GetData__()->GetLvl_1()[0]->GetPt()[0]->GetValue(), 5.0);
    auto formula = Read<chartex::CT_NumericDimension>("<cx:numDim><cx:f>S!$A$1</cx:f><cx:lvl/></cx:numDim>");
    EXPECT_TRUE(formula->GetData__()->GetLvl().size() == 1 && formula->GetData__()->GetLvl_1().empty());
    // Dublin Core: only an element literally named "any" fills the first member; the terms are unknown.
    LogCapture log;
    auto core = Read<core_properties::CT_CoreProperties>("<cp:coreProperties><dc:title>T</dc:title><dc:creator/>"
                                                         "<dcterms:created>2024</dcterms:created><dc:any/>"
                                                         "</cp:coreProperties>");
    EXPECT_TRUE(core.ok && core->CheckDc_any() && core->GetDc_any()->IsNull());
    EXPECT_FALSE(core->GetDc_any_1() || core->GetDc_any_5() || core->CheckDcterms_any() || core->CheckDcterms_any_1());
    EXPECT_GE(log.Count("Invalid name: dcterms:created"), 1u);
    // The presentation's verifier is read from "ChangeVerifier", not from its schema name.
    auto verifier = Read<pml::CT_Presentation>("<p:presentation><p:ChangeVerifier spinCount='9'/></p:presentation>");
    EXPECT_TRUE(verifier->CheckModifyVerifier() && verifier->GetModifyVerifier()->GetSpinCount() == 9);
    EXPECT_FALSE(Read<pml::CT_Presentation>("<p:presentation><p:modifyVerifier/></p:presentation>")
                     ->GetModifyVerifier());
    // A member of another schema matches only in that schema's namespace: "v:fill", not the Office "o:fill".
    auto defaults = Read<vml_o::CT_ShapeDefaults>("<o:shapedefaults v:ext='edit' o:spidmax='2049'><o:fill/>"
                                                  "<v:fill color='white'/></o:shapedefaults>");
    EXPECT_TRUE(defaults->GetSpidmax() == 2049 && defaults->GetV_AG_Ext()->GetExt() == "edit");
    EXPECT_EQ(defaults->GetV_fill()->GetColor(), "white"); // the VML fill, not the Office one
    EXPECT_FALSE(Read<vml_o::CT_ShapeDefaults>("<o:shapedefaults><o:fill/></o:shapedefaults>")->CheckV_fill());
}
