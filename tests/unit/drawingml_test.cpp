// Parts 6.1 to 6.5: DrawingML main, charts, chartex, diagrams, placement schemas.
#include <cmath>

#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/drawingml/a14.h"
#include "ooxml/drawingml/a3danim.h"
#include "ooxml/drawingml/am3d.h"
#include "ooxml/drawingml/c15.h"
#include "ooxml/drawingml/cdr.h"
#include "ooxml/drawingml/chart.h"
#include "ooxml/drawingml/chartex.h"
#include "ooxml/drawingml/dgm.h"
#include "ooxml/drawingml/dml.h"
#include "ooxml/drawingml/dsp.h"
#include "ooxml/drawingml/pic.h"
#include "ooxml/drawingml/wp.h"
#include "ooxml/drawingml/xdr.h"

using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace dml = ooxml::dml;
namespace chart = ooxml::chart;
namespace chartex = ooxml::chartex;
namespace dgm = ooxml::dgm;

namespace
{
// Declares the DrawingML family's usual prefixes on the first element.
wxString D(const wxString& element)
{
    const int end = element.find_first_of(" />");
    return element.Left(end) + Xmlns("a", uri::dml) + Xmlns("r", uri::rel) + Xmlns("c", uri::chart) +
           Xmlns("cx", uri::chartex) + Xmlns("dgm", uri::dgm) + Xmlns("c15", uri::c15) + Xmlns("a14", uri::a14) +
           Xmlns("wp", uri::wp) + Xmlns("xdr", uri::xdr) + Xmlns("am3d", uri::am3d) + Xmlns("m", uri::math) +
           element.Mid(end);
}
} // namespace

// -- Part 6.1: DrawingML main ------------------------------------------------------------

TEST(DrawingML, GraphicDataWithAPictureKeepsOnlyItsUri)
{
    auto r = Read<dml::CT_GraphicalObjectData>(D("<a:graphicData uri='http://schemas.openxmlformats.org/drawingml/2006/picture'>"
                                                 "<pic:pic xmlns:pic='http://schemas.openxmlformats.org/drawingml/2006/picture'/>"
                                                 "</a:graphicData>"));
    ASSERT_TRUE(r.ok);
    const dml::CT_GraphicalObjectData& data = *r.object;
    EXPECT_EQ(data.GetUri(), "http://schemas.openxmlformats.org/drawingml/2006/picture");
    EXPECT_FALSE(data.CheckDgm_relIds() || data.CheckC_chart() || data.CheckCx_chart() || data.CheckAm3d_model3d() ||
                 data.CheckTbl());
}

TEST(DrawingML, GraphicDataReadsTheFiveKnownChildren)
{
    auto chartData = Read<dml::CT_GraphicalObjectData>(D("<a:graphicData uri='u'><c:chart r:id='rId2'/></a:graphicData>"));
    ASSERT_TRUE(chartData.ok);
    ASSERT_NE(chartData.object->GetC_chart(), nullptr);
    EXPECT_EQ(chartData.object->GetC_chart()->GetR_id(), "rId2");
    auto diagram = Read<dml::CT_GraphicalObjectData>(
        D("<a:graphicData uri='u'><dgm:relIds r:dm='rId1' r:lo='rId2' r:qs='rId3' r:cs='rId4'/></a:graphicData>"));
    ASSERT_TRUE(diagram.ok);
    EXPECT_EQ(diagram.object->GetDgm_relIds()->GetR_cs(), "rId4");
    auto table = Read<dml::CT_GraphicalObjectData>(D("<a:graphicData uri='u'><a:tbl><a:tr h='370840'><a:tc/></a:tr>"
                                                     "</a:tbl></a:graphicData>"));
    ASSERT_TRUE(table.ok);
    EXPECT_EQ(table.object->GetTbl()->GetTr()[0]->GetH().As<long long>(), 370840);
    auto extension = Read<dml::CT_GraphicalObjectData>(D("<a:graphicData uri='u'><cx:chart r:id='rId9'/></a:graphicData>"));
    ASSERT_TRUE(extension.ok);
    EXPECT_EQ(extension.object->GetCx_chart()->GetR_id(), "rId9");
}

TEST(DrawingML, UnknownExtensionKeepsItsUriOnly)
{
    auto r = Read<dml::CT_OfficeArtExtensionList>(D("<a:extLst><a:ext uri='{28A0092B-C50C-407E-A947-70E740481C1C}'>"
                                                    "<a14:useLocalDpi val='0'/></a:ext></a:extLst>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<dml::CT_OfficeArtExtension> items = r.object->GetEG_OfficeArtExtensionList()->GetExt();
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0]->GetUri(), "{28A0092B-C50C-407E-A947-70E740481C1C}");
    EXPECT_FALSE(items[0]->CheckDsp_dataModelExt() || items[0]->CheckA3danim_embedAnim() ||
                 items[0]->CheckA3danim_posterFrame());
}

TEST(DrawingML, BoldOfRunPropertiesIsKeptAsWritten)
{
    auto r = Read<dml::CT_TextCharacterProperties>(D("<a:rPr lang='en-US' b='1' i='true' sz='1800' cap='all'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetB(), "1");
    EXPECT_EQ(r.object->GetI(), "true");
    EXPECT_EQ(r.object->GetSz(), 1800);
    EXPECT_EQ(r.object->GetCap(), "all");
    EXPECT_EQ(dml::CT_TextCharacterProperties().GetCap(), "none");
}

TEST(DrawingML, ColourTransformsKeepTheirOrder)
{
    auto r = Read<dml::CT_SchemeColor>(D("<a:schemeClr val='tx1'><a:lumMod val='75000'/><a:lumOff val='25000'/></a:schemeClr>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetVal(), "tx1");
    XMLPtrArray<dml::EG_ColorTransform> transforms = r.object->GetEG_ColorTransform();
    ASSERT_EQ(transforms.size(), 2u);
    EXPECT_TRUE(transforms[0]->GetData__()->CheckLumMod());
    EXPECT_FALSE(transforms[0]->GetData__()->CheckLumOff());
    EXPECT_TRUE(transforms[1]->GetData__()->CheckLumOff());
    EXPECT_EQ(transforms[1]->GetData__()->GetLumOff()->GetVal().As<long long>(), 25000);
}

TEST(DrawingML, ParagraphKeepsRunsAndBreaksInOrder)
{
    auto r = Read<dml::CT_TextParagraph>(D("<a:p><a:r><a:t>one</a:t></a:r><a:br/><a:r><a:t>two</a:t></a:r></a:p>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<dml::EG_TextRun> runs = r.object->GetEG_TextRun();
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_TRUE(runs[0]->GetData__()->CheckR());
    EXPECT_TRUE(runs[1]->GetData__()->CheckBr());
    EXPECT_EQ(runs[2]->GetData__()->GetR()->GetT(), "two");
}

TEST(DrawingML, EmptyRunTextIsPresentAndEmpty)
{
    auto r = Read<dml::CT_RegularTextRun>(D("<a:r><a:t/></a:r>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckT());
    EXPECT_EQ(r.object->GetT(), "");
    auto cdata = Read<dml::CT_RegularTextRun>(D("<a:r><a:t><![CDATA[x]]></a:t></a:r>"));
    ASSERT_TRUE(cdata.ok);
    EXPECT_TRUE(cdata.object->CheckT());
    EXPECT_EQ(cdata.object->GetT(), "");
}

TEST(DrawingML, TextRunGroupTakesTheMathRun)
{
    auto r = Read<dml::CT_TextParagraph>(D("<a:p><a14:m><m:oMathPara/></a14:m></a:p>"));
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.object->GetEG_TextRun().size(), 1u);
    EXPECT_TRUE(r.object->GetEG_TextRun()[0]->GetData__()->CheckA14_m());
}

TEST(DrawingML, ShapePropertiesChoicesHeldOnce)
{
    auto r = Read<dml::CT_ShapeProperties>(D("<a:spPr bwMode='auto'><a:xfrm rot='5400000' flipH='1'><a:off x='10' y='20'/>"
                                             "<a:ext cx='9144000' cy='6858000'/></a:xfrm><a:prstGeom prst='rect'><a:avLst/></a:prstGeom>"
                                             "<a:solidFill><a:srgbClr val='FF0000'/></a:solidFill><a:noFill/></a:spPr>"));
    ASSERT_TRUE(r.ok);
    dml::CT_Transform2D* xfrm = r.object->GetXfrm();
    EXPECT_EQ(xfrm->GetRot(), 5400000);
    EXPECT_TRUE(xfrm->GetFlipH());
    EXPECT_FALSE(xfrm->GetFlipV());
    EXPECT_EQ(xfrm->GetOff()->GetX().As<long long>(), 10);
    EXPECT_EQ(xfrm->GetExt()->GetCx(), 9144000ll);
    EXPECT_EQ(r.object->GetEG_Geometry()->GetData__()->GetPrstGeom()->GetPrst(), "rect");
    // Two fills in one shape: both alternatives set in the one holder.
    dml::EG_FillPropertiesData__* fill = r.object->GetEG_FillProperties()->GetData__();
    EXPECT_TRUE(fill->CheckSolidFill());
    EXPECT_TRUE(fill->CheckNoFill());
    EXPECT_EQ(r.object->GetBwMode(), "auto");
}

TEST(DrawingML, ConstructorDefaultsAndNativeTypes)
{
    dml::CT_Transform2D xfrm;
    EXPECT_EQ(xfrm.GetRot(), 0);
    EXPECT_FALSE(xfrm.GetFlipH());
    xfrm.SetRot(-1);
    dml::CT_PositiveSize2D size;
    size.SetCx(27273042316900ll);
    EXPECT_EQ(size.GetCx(), 27273042316900ll);
    dml::CT_Point2D point;
    EXPECT_TRUE(point.GetX().IsNull());
    point.SetX(wxAny(wxString("1in")));
    dml::CT_NonVisualDrawingProps properties;
    EXPECT_EQ(properties.GetDescr(), "");
    EXPECT_FALSE(properties.GetHidden());
    properties.SetId(4294967295u);
    dml::CT_TextFont font;
    EXPECT_EQ(font.GetPitchFamily(), 0);
    font.SetPitchFamily(char(34));
    dml::CT_BlipFillProperties blip;
    blip.SetDpi(96u);
    EXPECT_EQ(dml::CT_OfficeArtExtension().GetUri(), "");
    EXPECT_EQ(dml::CT_GraphicalObjectData().GetUri(), "");
}

TEST(DrawingML, ThemeColoursFontsAndFormats)
{
    auto r = Read<dml::CT_OfficeStyleSheet>(D(
        "<a:theme name='Office'><a:themeElements><a:clrScheme name='Office'><a:dk1><a:sysClr val='windowText' "
        "lastClr='000000'/></a:dk1><a:accent1><a:srgbClr val='4472C4'/></a:accent1></a:clrScheme>"
        "<a:fontScheme name='Office'><a:majorFont><a:latin typeface='Calibri Light' panose='020F0302020204030204'/>"
        "<a:font script='Jpan' typeface='Yu Gothic'/></a:majorFont></a:fontScheme><a:fmtScheme name='Office'>"
        "<a:fillStyleLst><a:solidFill><a:schemeClr val='phClr'/></a:solidFill></a:fillStyleLst></a:fmtScheme>"
        "</a:themeElements></a:theme>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetName(), "Office");
    dml::CT_BaseStyles* styles = r.object->GetThemeElements();
    EXPECT_EQ(styles->GetClrScheme()->GetAccent1()->GetEG_ColorChoice()->GetData__()->GetSrgbClr()->GetVal(), "4472C4");
    dml::CT_FontCollection* major = styles->GetFontScheme()->GetMajorFont();
    EXPECT_EQ(major->GetLatin()->GetTypeface(), "Calibri Light");
    EXPECT_EQ(major->GetFont()[0]->GetScript(), "Jpan");
    EXPECT_TRUE(styles->GetFmtScheme()->GetFillStyleLst()->GetEG_FillProperties()[0]->GetData__()->CheckSolidFill());
}

// -- Part 6.2: charts ----------------------------------------------------------------------

TEST(Charts, BooleanWithoutValueIsPresentAndTrue)
{
    auto r = Read<chart::CT_PieChart>(D("<c:pieChart><c:varyColors/></c:pieChart>"));
    ASSERT_TRUE(r.ok);
    chart::CT_Boolean* vary = r.object->GetEG_PieChartShared()->GetVaryColors();
    ASSERT_NE(vary, nullptr);
    EXPECT_TRUE(vary->GetVal());
    EXPECT_FALSE(vary->CheckVal());
}

TEST(Charts, PercentagesAreTextInTheVariant)
{
    auto r = Read<chart::CT_BarChart>(D("<c:barChart><c:overlap/></c:barChart>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetOverlap(), nullptr);
    EXPECT_EQ(r.object->GetOverlap()->GetVal().As<wxString>(), "0%");
    EXPECT_EQ(r.object->GetGapWidth(), nullptr);
    EXPECT_FALSE(r.object->CheckGapWidth());
    EXPECT_EQ(chart::CT_GapAmount().GetVal().As<wxString>(), "150%");
    auto read = Read<chart::CT_GapAmount>(D("<c:gapWidth val='219'/>"));
    ASSERT_TRUE(read.ok);
    EXPECT_EQ(read.object->GetVal().As<long long>(), 219);
}

TEST(Charts, PlotAreaSeparatesChartTypesAndAxes)
{
    auto r = Read<chart::CT_PlotArea>(D("<c:plotArea><c:layout/><c:barChart><c:barDir val='bar'/><c:axId val='1'/>"
                                        "<c:axId val='2'/></c:barChart><c:lineChart/><c:catAx><c:axId val='1'/></c:catAx>"
                                        "<c:valAx><c:axId val='2'/><c:crossesAt val='1.5'/></c:valAx></c:plotArea>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<chart::CT_PlotAreaData__> types = r.object->GetData__();
    ASSERT_EQ(types.size(), 2u);
    chart::CT_BarChart* bar = types[0]->GetBarChart();
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->GetEG_BarChartShared()->GetBarDir()->GetVal(), "bar");
    ASSERT_EQ(bar->GetAxId().size(), 2u);
    EXPECT_EQ(bar->GetAxId()[1]->GetVal(), 2u);
    EXPECT_TRUE(types[1]->CheckLineChart());
    XMLPtrArray<chart::CT_PlotAreaData__1> axes = r.object->GetData__1();
    ASSERT_EQ(axes.size(), 2u);
    EXPECT_TRUE(axes[0]->CheckCatAx());
    chart::EG_AxShared* shared = axes[1]->GetValAx()->GetEG_AxShared();
    EXPECT_EQ(shared->GetData__()->GetCrossesAt()->GetVal(), 1.5);
}

TEST(Charts, ExtensionKeepsOnlyTheKnownTitles)
{
    auto r = Read<chart::CT_ExtensionList>(D("<c:extLst><c:ext uri='{02D57815-91ED-43cb-92C2-25804820EDAC}'>"
                                             "<c15:datalabelsRange><c15:f>Sheet1!$A$1</c15:f></c15:datalabelsRange></c:ext>"
                                             "<c:ext uri='{B}'><c15:filteredSeriesTitle><c15:tx><c:v>t</c:v></c15:tx>"
                                             "</c15:filteredSeriesTitle></c:ext></c:extLst>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<chart::CT_Extension> items = r.object->GetExt();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0]->GetUri(), "{02D57815-91ED-43cb-92C2-25804820EDAC}");
    EXPECT_FALSE(items[0]->CheckC15_filteredSeriesTitle() || items[0]->CheckC15_filteredCategoryTitle());
    ASSERT_TRUE(items[1]->CheckC15_filteredSeriesTitle());
    EXPECT_EQ(items[1]->GetC15_filteredSeriesTitle()->GetTx()->GetData__()->GetV(), "t");
}

TEST(Charts, NumberPointKeepsItsTextExactly)
{
    auto r = Read<chart::CT_NumData>(D("<c:numCache><c:formatCode>General</c:formatCode><c:ptCount val='1'/>"
                                       "<c:pt idx='0'><c:v>1.5E-3</c:v></c:pt></c:numCache>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetFormatCode(), "General");
    EXPECT_EQ(r.object->GetPt()[0]->GetV(), "1.5E-3");
    EXPECT_EQ(r.object->GetPt()[0]->GetIdx(), 0u);
}

TEST(Charts, PivotSourceKeepsSeveralExtensionLists)
{
    auto r = Read<chart::CT_PivotSource>(D("<c:pivotSource><c:name>[a.xlsx]P!T</c:name><c:fmtId val='0'/>"
                                           "<c:extLst/><c:extLst/></c:pivotSource>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetExtLst().size(), 2u);
    EXPECT_EQ(r.object->GetName(), "[a.xlsx]P!T");
}

TEST(Charts, SingleValueClassesAndTheirDefaults)
{
    // The table of Part 6.2, whole: native type of "val" and default.
    auto text = [](const wxAny& any) { return any.As<wxString>(); };
    EXPECT_EQ(chart::CT_AxPos().GetVal(), "");
    chart::CT_AxisUnit unit;
    unit.SetVal(0.5);
    EXPECT_EQ(chart::CT_BarDir().GetVal(), "col");
    EXPECT_EQ(chart::CT_BarGrouping().GetVal(), "clustered");
    EXPECT_TRUE(chart::CT_Boolean().GetVal());
    EXPECT_EQ(text(chart::CT_BubbleScale().GetVal()), "100%");
    EXPECT_EQ(chart::CT_BuiltInUnit().GetVal(), "thousands");
    EXPECT_EQ(chart::CT_CrossBetween().GetVal(), "");
    EXPECT_EQ(chart::CT_Crosses().GetVal(), "");
    EXPECT_EQ(chart::CT_DLblPos().GetVal(), "");
    EXPECT_EQ(text(chart::CT_DepthPercent().GetVal()), "100%");
    EXPECT_EQ(chart::CT_DispBlanksAs().GetVal(), "zero");
    chart::CT_Double d;
    d.SetVal(1.25);
    EXPECT_EQ(chart::CT_ErrBarType().GetVal(), "both");
    EXPECT_EQ(chart::CT_ErrDir().GetVal(), "");
    EXPECT_EQ(chart::CT_ErrValType().GetVal(), "fixedVal");
    EXPECT_EQ(chart::CT_FirstSliceAng().GetVal(), 0);
    chart::CT_FirstSliceAng angle;
    angle.SetVal(static_cast<unsigned short>(360));
    EXPECT_EQ(text(chart::CT_GapAmount().GetVal()), "150%");
    EXPECT_EQ(chart::CT_Grouping().GetVal(), "standard");
    EXPECT_EQ(text(chart::CT_HPercent().GetVal()), "100%");
    EXPECT_EQ(text(chart::CT_HoleSize().GetVal()), "10%");
    EXPECT_EQ(chart::CT_LayoutMode().GetVal(), "factor");
    EXPECT_EQ(chart::CT_LayoutTarget().GetVal(), "outer");
    EXPECT_EQ(chart::CT_LblAlgn().GetVal(), "");
    EXPECT_EQ(text(chart::CT_LblOffset().GetVal()), "100%");
    EXPECT_EQ(chart::CT_LegendPos().GetVal(), "r");
    chart::CT_LogBase logBase;
    logBase.SetVal(10.0);
    EXPECT_EQ(chart::CT_MarkerSize().GetVal(), 5);
    chart::CT_MarkerSize marker;
    marker.SetVal(static_cast<unsigned char>(7));
    EXPECT_EQ(chart::CT_MarkerStyle().GetVal(), "");
    EXPECT_EQ(chart::CT_OfPieType().GetVal(), "pie");
    EXPECT_EQ(chart::CT_Order().GetVal(), 2);
    EXPECT_EQ(chart::CT_Orientation().GetVal(), "minMax");
    EXPECT_EQ(text(chart::CT_Overlap().GetVal()), "0%");
    EXPECT_EQ(chart::CT_Period().GetVal(), 2u);
    EXPECT_EQ(chart::CT_Perspective().GetVal(), 30);
    EXPECT_EQ(chart::CT_PictureFormat().GetVal(), "");
    chart::CT_PictureStackUnit stack;
    stack.SetVal(2.0);
    EXPECT_EQ(chart::CT_RadarStyle().GetVal(), "standard");
    EXPECT_EQ(chart::CT_RotX().GetVal(), 0);
    chart::CT_RotX rotX;
    rotX.SetVal(char(-90));
    EXPECT_EQ(chart::CT_RotY().GetVal(), 0);
    EXPECT_EQ(chart::CT_ScatterStyle().GetVal(), "marker");
    EXPECT_EQ(text(chart::CT_SecondPieSize().GetVal()), "75%");
    EXPECT_EQ(chart::CT_Shape().GetVal(), "box");
    EXPECT_EQ(chart::CT_SizeRepresents().GetVal(), "area");
    chart::CT_Skip skip;
    skip.SetVal(3u);
    EXPECT_EQ(chart::CT_SplitType().GetVal(), "auto");
    chart::CT_Style style;
    style.SetVal(static_cast<unsigned char>(2));
    EXPECT_EQ(chart::CT_TextLanguageID().GetVal(), "");
    EXPECT_TRUE(chart::CT_Thickness().GetVal().IsNull());
    EXPECT_EQ(chart::CT_TickLblPos().GetVal(), "nextTo");
    EXPECT_EQ(chart::CT_TickMark().GetVal(), "cross");
    EXPECT_EQ(chart::CT_TimeUnit().GetVal(), "days");
    EXPECT_EQ(chart::CT_TrendlineType().GetVal(), "linear");
    chart::CT_UnsignedInt id;
    id.SetVal(4294967295u);
    EXPECT_EQ(id.GetVal(), 4294967295u);
}

TEST(Charts, DataLabelsChoiceKeepsBothAlternatives)
{
    auto r = Read<chart::CT_DLbls>(D("<c:dLbls><c:dLbl><c:idx val='1'/><c:delete val='1'/></c:dLbl><c:delete val='0'/>"
                                     "<c:showVal val='1'/></c:dLbls>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->GetDLbl()[0]->GetData__()->CheckDelete());
    chart::CT_DLblsData__* choice = r.object->GetData__();
    EXPECT_TRUE(choice->CheckDelete());
    EXPECT_TRUE(choice->CheckGroup_DLbls());
    EXPECT_TRUE(choice->GetGroup_DLbls()->GetEG_DLblShared()->GetShowVal()->GetVal());
}

// -- Part 6.3: chartex ----------------------------------------------------------------------

TEST(Chartex, CopyrightsAreAnArrayOfTexts)
{
    auto r = Read<chartex::CT_Copyrights>(D("<cx:copyrights><cx:copyright>A</cx:copyright><cx:copyright>B</cx:copyright>"
                                            "<cx:copyright>C</cx:copyright></cx:copyrights>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetCopyright(), std::vector<wxString>({"A", "B", "C"}));
}

TEST(Chartex, SeriesAxisIdsAreNumbersInOrder)
{
    auto r = Read<chartex::CT_Series>(D("<cx:series layoutId='waterfall' uniqueId='{1}'><cx:axisId>3</cx:axisId>"
                                        "<cx:axisId>1</cx:axisId></cx:series>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetAxisId(), std::vector<unsigned int>({3, 1}));
    EXPECT_EQ(r.object->GetLayoutId(), "waterfall");
    auto subtotals = Read<chartex::CT_Subtotals>(D("<cx:subtotals><cx:idx>0</cx:idx><cx:idx>4</cx:idx></cx:subtotals>"));
    ASSERT_TRUE(subtotals.ok);
    EXPECT_EQ(subtotals.object->GetIdx(), std::vector<unsigned int>({0, 4}));
}

TEST(Chartex, GeoCacheKeepsTheBase64Text)
{
    auto r = Read<chartex::CT_GeoCache>(D("<cx:geoCache provider='{22944092-0E68-4D8A-8E8F-2A3BD1EDB0F7}'>"
                                          "<cx:binary>UEsDBBQA</cx:binary></cx:geoCache>"));
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.object->GetData__().size(), 1u);
    EXPECT_EQ(r.object->GetData__()[0]->GetBinary(), "UEsDBBQA");
}

TEST(Chartex, LevelsOnlyDimensionFillsTheSecondLevelArray)
{
    auto levels = Read<chartex::CT_NumericDimension>(D("<cx:numDim type='val'><cx:lvl ptCount='1'><cx:pt idx='0'>5</cx:pt>"
                                                       "</cx:lvl><cx:lvl ptCount='0'/></cx:numDim>"));
    ASSERT_TRUE(levels.ok);
    chartex::CT_NumericDimensionData__* data = levels.object->GetData__();
    EXPECT_TRUE(data->GetLvl().empty());
    ASSERT_EQ(data->GetLvl_1().size(), 2u);
    EXPECT_EQ(data->GetLvl_1()[0]->GetPt()[0]->GetValue(), 5.0);

    auto formula = Read<chartex::CT_NumericDimension>(D("<cx:numDim type='val'><cx:f dir='row'>Sheet1!$A$1:$A$3</cx:f>"
                                                        "<cx:lvl ptCount='3'/></cx:numDim>"));
    ASSERT_TRUE(formula.ok);
    chartex::CT_NumericDimensionData__* withFormula = formula.object->GetData__();
    EXPECT_EQ(withFormula->GetF()->GetValue(), "Sheet1!$A$1:$A$3");
    EXPECT_EQ(withFormula->GetF()->GetDir(), "row");
    EXPECT_EQ(withFormula->GetLvl().size(), 1u);
    EXPECT_TRUE(withFormula->GetLvl_1().empty());
}

TEST(Chartex, ExtensionKeepsOnlyItsUri)
{
    auto r = Read<chartex::CT_ExtensionList>(D("<cx:extLst><cx:ext uri='{A}'><cx:anything/></cx:ext></cx:extLst>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetExt()[0]->GetUri(), "{A}");
}

// -- Part 6.4: diagrams -----------------------------------------------------------------------

TEST(Diagrams, IteratorListsBecomeArrays)
{
    auto r = Read<dgm::CT_ForEach>(D("<dgm:forEach name='f' axis='ch ch' st='1 2 -1' hideLastTrans='1 0'/>"));
    ASSERT_TRUE(r.ok);
    dgm::AG_IteratorAttributes* iterator = r.object->GetAG_IteratorAttributes();
    ASSERT_NE(iterator, nullptr);
    EXPECT_EQ(iterator->GetSt(), std::vector<int>({1, 2, -1}));
    EXPECT_EQ(iterator->GetAxis(), std::vector<wxString>({"ch", "ch"}));
    EXPECT_EQ(iterator->GetHideLastTrans(), std::vector<bool>({true, false}));
    // Unread lists keep their schema defaults; a read list replaces its default.
    EXPECT_EQ(iterator->GetCnt(), std::vector<unsigned int>({0}));
    EXPECT_EQ(iterator->GetStep(), std::vector<int>({1}));
    EXPECT_EQ(dgm::AG_IteratorAttributes().GetSt(), std::vector<int>({1}));
}

TEST(Diagrams, ModelIdIsAVariant)
{
    auto guid = Read<dgm::CT_Pt>(D("<dgm:pt modelId='{5F1A0E25-6D6C-4B5B-9F63-2C0C0A5D2B14}' type='doc'/>"));
    ASSERT_TRUE(guid.ok);
    EXPECT_EQ(guid.object->GetModelId().As<wxString>(), "{5F1A0E25-6D6C-4B5B-9F63-2C0C0A5D2B14}");
    auto number = Read<dgm::CT_Pt>(D("<dgm:pt modelId='7'/>"));
    ASSERT_TRUE(number.ok);
    EXPECT_EQ(number.object->GetModelId().As<long long>(), 7);
    EXPECT_EQ(number.object->GetType(), "node");
}

TEST(Diagrams, LayoutNodeKeepsItsChildrenInOrder)
{
    auto r = Read<dgm::CT_LayoutNode>(D("<dgm:layoutNode name='root'><dgm:alg type='lin'/><dgm:shape/><dgm:presOf/>"
                                        "<dgm:constrLst/><dgm:forEach><dgm:layoutNode/></dgm:forEach></dgm:layoutNode>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<dgm::CT_LayoutNodeData__> items = r.object->GetData__();
    ASSERT_EQ(items.size(), 5u);
    EXPECT_EQ(items[0]->GetAlg()->GetType(), "lin");
    EXPECT_TRUE(items[1]->CheckShape());
    EXPECT_TRUE(items[2]->CheckPresOf());
    EXPECT_TRUE(items[3]->CheckConstrLst());
    EXPECT_EQ(items[4]->GetForEach()->GetData__().size(), 1u);
}

TEST(Diagrams, NumericRuleDefaultsAreNaN)
{
    dgm::CT_NumericRule rule;
    EXPECT_TRUE(std::isnan(rule.GetVal()));
    EXPECT_TRUE(std::isnan(rule.GetFact()));
    EXPECT_TRUE(std::isnan(rule.GetMax()));
    EXPECT_FALSE(rule.CheckVal());
}

TEST(Diagrams, PreRenderedDrawingKeepsItsShapes)
{
    auto r = Read<ooxml::dsp::CT_Drawing>(
        "<dsp:drawing xmlns:dsp='http://schemas.microsoft.com/office/drawing/2008/diagram'" + Xmlns("a", uri::dml) +
        "><dsp:spTree><dsp:nvGrpSpPr><dsp:cNvPr id='0' name=''/><dsp:cNvGrpSpPr/></dsp:nvGrpSpPr><dsp:grpSpPr/>"
        "<dsp:sp modelId='{1}'><dsp:txBody><a:bodyPr/><a:p/></dsp:txBody></dsp:sp><dsp:grpSp/></dsp:spTree></dsp:drawing>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<ooxml::dsp::CT_GroupShapeData__> shapes = r.object->GetSpTree()->GetData__();
    ASSERT_EQ(shapes.size(), 2u);
    EXPECT_EQ(shapes[0]->GetSp()->GetModelId().As<wxString>(), "{1}");
    EXPECT_TRUE(shapes[1]->CheckGrpSp());
}

// -- Part 6.5: placement and picture schemas ----------------------------------------------------

TEST(Placement, AnchorKeepsSimplePosElementAndAttributeApart)
{
    auto r = Read<ooxml::wp::CT_Anchor>(D("<wp:anchor simplePos='1' distT='0' behindDoc='0' locked='0' layoutInCell='1' "
                                          "allowOverlap='1' relativeHeight='251659264'><wp:simplePos x='10' y='20'/>"
                                          "<wp:positionH relativeFrom='column'><wp:posOffset>-5</wp:posOffset></wp:positionH>"
                                          "<wp:positionV relativeFrom='paragraph'><wp:align>top</wp:align></wp:positionV>"
                                          "<wp:wrapSquare wrapText='bothSides'/><a:graphic><a:graphicData uri='u'/></a:graphic>"
                                          "</wp:anchor>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->GetSimplePos_1());
    EXPECT_TRUE(r.object->CheckSimplePos_1());
    ASSERT_NE(r.object->GetSimplePos(), nullptr);
    EXPECT_EQ(r.object->GetSimplePos()->GetY().As<long long>(), 20);
    EXPECT_EQ(r.object->GetPositionH()->GetData__()->GetPosOffset(), -5);
    EXPECT_EQ(r.object->GetPositionV()->GetData__()->GetAlign(), "top");
    EXPECT_TRUE(r.object->GetEG_WrapType()->GetData__()->CheckWrapSquare());
    EXPECT_EQ(r.object->GetA_graphic()->GetGraphicData()->GetUri(), "u");
    EXPECT_EQ(r.object->GetRelativeHeight(), 251659264u);
}

TEST(Placement, SpreadsheetAnchorsKeepTheirOrder)
{
    auto r = Read<ooxml::xdr::CT_Drawing>(D("<xdr:wsDr><xdr:twoCellAnchor editAs='oneCell'><xdr:from><xdr:col>1</xdr:col>"
                                            "<xdr:colOff>0</xdr:colOff><xdr:row>2</xdr:row><xdr:rowOff>19050</xdr:rowOff></xdr:from>"
                                            "<xdr:to><xdr:col>3</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>4</xdr:row>"
                                            "<xdr:rowOff>0</xdr:rowOff></xdr:to><xdr:sp/><xdr:clientData/></xdr:twoCellAnchor>"
                                            "<xdr:absoluteAnchor><xdr:pos x='0' y='0'/><xdr:ext cx='1' cy='1'/>"
                                            "<xdr:graphicFrame/><xdr:clientData/></xdr:absoluteAnchor></xdr:wsDr>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<ooxml::xdr::EG_Anchor> anchors = r.object->GetEG_Anchor();
    ASSERT_EQ(anchors.size(), 2u);
    ooxml::xdr::CT_TwoCellAnchor* two = anchors[0]->GetData__()->GetTwoCellAnchor();
    ASSERT_NE(two, nullptr);
    EXPECT_EQ(two->GetFrom()->GetRow(), 2);
    EXPECT_EQ(two->GetFrom()->GetRowOff().As<long long>(), 19050);
    EXPECT_TRUE(two->GetEG_ObjectChoices()->GetData__()->CheckSp());
    EXPECT_TRUE(anchors[1]->GetData__()->CheckAbsoluteAnchor());
}

TEST(Placement, ModelLightsKeepTheirOrder)
{
    auto r = Read<ooxml::am3d::CT_Model3D>(D("<am3d:model3d r:embed='rId1'><am3d:spPr/><am3d:camera/><am3d:trans/>"
                                             "<am3d:winViewport/><am3d:ptLight/><am3d:spotLight/><am3d:spotLight/></am3d:model3d>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->GetData__()->CheckWinViewport());
    XMLPtrArray<ooxml::am3d::CT_Model3DData__1> lights = r.object->GetData__1();
    ASSERT_EQ(lights.size(), 3u);
    EXPECT_TRUE(lights[0]->CheckPtLight());
    EXPECT_TRUE(lights[1]->CheckSpotLight());
    EXPECT_TRUE(lights[2]->CheckSpotLight());
    EXPECT_EQ(r.object->GetA_AG_Blob()->GetR_embed(), "rId1");
}

TEST(Placement, ModelMemberOrderOfPart65)
{
    // spPr 0, camera 1, trans 2, raster 3, attrSrcUrl 4, ambientLight 5,
    // Data__ 6, Data__1 7, extLst 8: setting "raster" flags bit 3 only.
    ooxml::am3d::CT_Model3D model;
    model.SetRaster(new ooxml::am3d::CT_Model3DRaster);
    EXPECT_TRUE(model.CheckRaster());
    EXPECT_FALSE(model.CheckAttrSrcUrl());
    model.SetAttrSrcUrl(new ooxml::am3d::CT_PictureAttributionSourceURL);
    EXPECT_TRUE(model.CheckAttrSrcUrl());
}

TEST(Placement, ChartDrawingMarkersAreFractions)
{
    auto r = Read<ooxml::cdr::CT_RelSizeAnchor>(
        "<cdr:relSizeAnchor xmlns:cdr='http://schemas.openxmlformats.org/drawingml/2006/chartDrawing'>"
        "<cdr:from><cdr:x>0.25</cdr:x><cdr:y>0.5</cdr:y></cdr:from></cdr:relSizeAnchor>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetFrom()->GetX(), 0.25);
}

TEST(Placement, AnimationAndPosterFrameThroughExtensions)
{
    auto r = Read<dml::CT_OfficeArtExtension>(
        D("<a:ext uri='{E}' xmlns:a3danim='http://schemas.microsoft.com/office/drawing/2018/animation/model3d'>"
          "<a3danim:posterFrame animId='2' frame='0.5'/></a:ext>"));
    ASSERT_TRUE(r.ok);
    ASSERT_TRUE(r.object->CheckA3danim_posterFrame());
    EXPECT_EQ(r.object->GetA3danim_posterFrame()->GetAnimId(), 2u);
    EXPECT_EQ(r.object->GetA3danim_posterFrame()->GetFrame().As<double>(), 0.5);
}
