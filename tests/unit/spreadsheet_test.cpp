// Parts 4.1, 4.2 and 4.3: SpreadsheetML.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/spreadsheetml/sml.h"

using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace sml = ooxml::sml;

namespace
{
// An element of the SpreadsheetML namespace, as Excel writes them (default namespace).
wxString Sml(const wxString& element)
{
    const int end = element.find_first_of(" />");
    return element.Left(end) + Xmlns("", uri::sml) + Xmlns("r", uri::rel) + element.Mid(end);
}
} // namespace

// -- Part 4.1: workbook and worksheet --------------------------------------------------------

TEST(Worksheet, CellWithoutTypeIsNumberButNotPresent)
{
    auto r = Read<sml::CT_Cell>(Sml("<c r='A1'><v>1.5</v></c>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetT(), "n");
    EXPECT_FALSE(r.object->CheckT());
}

TEST(Worksheet, SharedStringCellKeepsItsValueText)
{
    auto r = Read<sml::CT_Cell>(Sml("<c r='A1' t='s'><v>3</v></c>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetV(), "3");
    EXPECT_EQ(r.object->GetT(), "s");
    EXPECT_TRUE(r.object->CheckV());
    EXPECT_EQ(r.object->GetR(), "A1");
}

TEST(Worksheet, FormulaTextIsReadButNotFlagged)
{
    auto r = Read<sml::CT_Cell>(Sml("<c r='D2'><f>B2*C2</f><v>1.5</v></c>"));
    ASSERT_TRUE(r.ok);
    sml::CT_CellFormula* f = r.object->GetF();
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->GetValue(), "B2*C2");
    EXPECT_FALSE(f->CheckValue());
    EXPECT_EQ(f->GetT(), "normal");
    EXPECT_EQ(r.object->GetV(), "1.5");
}

TEST(Worksheet, EmptyValueElementIsPresent)
{
    auto r = Read<sml::CT_Cell>(Sml("<c r='A1'><v/></c>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckV());
    EXPECT_EQ(r.object->GetV(), "");
}

TEST(Worksheet, NewSheetViewDefaults)
{
    // The table of Part 4.1, whole.
    sml::CT_SheetView v;
    EXPECT_EQ(v.GetPane(), nullptr);
    EXPECT_TRUE(v.GetSelection().empty());
    EXPECT_TRUE(v.GetPivotSelection().empty());
    EXPECT_EQ(v.GetExtLst(), nullptr);
    EXPECT_FALSE(v.GetWindowProtection());
    EXPECT_FALSE(v.GetShowFormulas());
    EXPECT_TRUE(v.GetShowGridLines());
    EXPECT_TRUE(v.GetShowRowColHeaders());
    EXPECT_TRUE(v.GetShowZeros());
    EXPECT_FALSE(v.GetRightToLeft());
    EXPECT_FALSE(v.GetTabSelected());
    EXPECT_TRUE(v.GetShowRuler());
    EXPECT_TRUE(v.GetShowOutlineSymbols());
    EXPECT_TRUE(v.GetDefaultGridColor());
    EXPECT_TRUE(v.GetShowWhiteSpace());
    EXPECT_EQ(v.GetView(), "normal");
    EXPECT_EQ(v.GetTopLeftCell(), "");
    EXPECT_EQ(v.GetColorId(), 64u);
    EXPECT_EQ(v.GetZoomScale(), 100u);
    EXPECT_EQ(v.GetZoomScaleNormal(), 0u);
    EXPECT_EQ(v.GetZoomScaleSheetLayoutView(), 0u);
    EXPECT_EQ(v.GetZoomScalePageLayoutView(), 0u);
    EXPECT_EQ(v.GetWorkbookViewId(), 0u);
    EXPECT_FALSE(v.CheckZoomScale() || v.CheckShowGridLines() || v.CheckView());
    v.SetZoomScale(150u);
    EXPECT_TRUE(v.CheckZoomScale());
}

TEST(Worksheet, NewSelectionDefaults)
{
    sml::CT_Selection s;
    EXPECT_EQ(s.GetSqref(), std::vector<wxString>({"A1"}));
    EXPECT_EQ(s.GetPane(), "topLeft");
    EXPECT_EQ(s.GetActiveCellId(), 0u);
}

TEST(Worksheet, NewCalcPrDefaults)
{
    sml::CT_CalcPr c;
    EXPECT_EQ(c.GetIterateCount(), 100u);
    EXPECT_EQ(c.GetIterateDelta(), 0.001);
    EXPECT_EQ(c.GetCalcMode(), "auto");
    EXPECT_EQ(c.GetRefMode(), "A1");
    EXPECT_FALSE(c.GetFullCalcOnLoad());
    EXPECT_TRUE(c.GetFullPrecision());
    EXPECT_TRUE(c.GetConcurrentCalc());
}

TEST(Worksheet, RowAndCellTablesGiveBitsAndTypes)
{
    auto r = Read<sml::CT_Row>(Sml("<row r='7' spans='1:4 6:6' s='2' customFormat='1' ht='20.25' hidden='0' "
                                   "customHeight='true' outlineLevel='300' collapsed='1' thickTop='1' thickBot='0' ph='1'/>"));
    ASSERT_TRUE(r.ok);
    const sml::CT_Row& row = *r.object;
    EXPECT_EQ(row.GetR(), 7u);
    EXPECT_EQ(row.GetSpans(), std::vector<wxString>({"1:4", "6:6"}));
    EXPECT_EQ(row.GetS(), 2u);
    EXPECT_EQ(row.GetHt(), 20.25);
    EXPECT_EQ(row.GetOutlineLevel(), 44); // u8: the low 8 bits of 300
    EXPECT_TRUE(row.CheckPh());
    EXPECT_FALSE(row.CheckC());
    EXPECT_FALSE(row.CheckExtLst());

    sml::CT_Cell cell;
    EXPECT_EQ(cell.GetS(), 0u);
    EXPECT_EQ(cell.GetCm(), 0u);
    EXPECT_EQ(cell.GetVm(), 0u);
    EXPECT_FALSE(cell.GetPh());
}

TEST(Worksheet, RowsCellsAndRepeatedSingleElementsInOrder)
{
    auto r = Read<sml::CT_Worksheet>(Sml(
        "<worksheet><sheetViews><sheetView workbookViewId='0'><selection activeCell='B2' sqref='B2 C3:D4'/>"
        "</sheetView></sheetViews><cols><col min='1' max='2' width='9.5'/></cols><cols/>"
        "<sheetData><row r='1'><c r='A1'/><c r='B1'/></row></sheetData><sheetData><row r='2'/></sheetData>"
        "<mergeCells count='1'><mergeCell ref='A1:B1'/></mergeCells>"
        "<drawing r:id='rId1'/><legacyDrawing r:id='rId2'/><tableParts count='1'><tablePart r:id='rId3'/></tableParts>"
        "</worksheet>"));
    ASSERT_TRUE(r.ok);
    const sml::CT_Worksheet& sheet = *r.object;
    ASSERT_EQ(sheet.GetCols().size(), 2u); // "cols" repeats
    EXPECT_EQ(sheet.GetCols()[0]->GetCol()[0]->GetWidth(), 9.5);
    ASSERT_EQ(sheet.GetSheetData()->GetRow().size(), 2u); // a second "sheetData" reads into the first
    EXPECT_EQ(sheet.GetSheetData()->GetRow()[0]->GetC()[1]->GetR(), "B1");
    sml::CT_Selection* selection = sheet.GetSheetViews()->GetSheetView()[0]->GetSelection()[0];
    EXPECT_EQ(selection->GetSqref(), std::vector<wxString>({"B2", "C3:D4"}));
    EXPECT_EQ(sheet.GetDrawing()->GetR_id(), "rId1");
    EXPECT_EQ(sheet.GetLegacyDrawing()->GetR_id(), "rId2");
    EXPECT_EQ(sheet.GetTableParts()->GetTablePart()[0]->GetR_id(), "rId3");
    EXPECT_EQ(sheet.GetMergeCells()->GetCount(), 1u);
}

TEST(Workbook, SheetsAndDefinedNames)
{
    auto r = Read<sml::CT_Workbook>(Sml(
        "<workbook conformance='transitional'><bookViews><workbookView xWindow='-120' windowWidth='100'/></bookViews>"
        "<sheets><sheet name='One' sheetId='1' r:id='rId1'/><sheet name='Two' sheetId='2' state='hidden' r:id='rId2'/>"
        "</sheets><definedNames><definedName name='_xlnm.Print_Area' localSheetId='0'>One!$A$1:$B$2</definedName>"
        "</definedNames><calcPr calcId='191029'/></workbook>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<sml::CT_Sheet> sheets = r.object->GetSheets()->GetSheet();
    ASSERT_EQ(sheets.size(), 2u);
    EXPECT_EQ(sheets[0]->GetState(), "visible");
    EXPECT_FALSE(sheets[0]->CheckState());
    EXPECT_EQ(sheets[1]->GetState(), "hidden");
    EXPECT_EQ(sheets[1]->GetR_id(), "rId2");
    EXPECT_EQ(sheets[1]->GetSheetId(), 2u);
    sml::CT_BookView* view = r.object->GetBookViews()->GetWorkbookView()[0];
    EXPECT_EQ(view->GetXWindow(), -120);
    EXPECT_EQ(view->GetTabRatio(), 600u);
    EXPECT_TRUE(view->GetShowSheetTabs());
    sml::CT_DefinedName* name = r.object->GetDefinedNames()->GetDefinedName()[0];
    EXPECT_EQ(name->GetValue(), "One!$A$1:$B$2");
    EXPECT_EQ(name->GetLocalSheetId(), 0u);
    EXPECT_EQ(r.object->GetConformance(), "transitional");
    EXPECT_EQ(r.object->GetCalcPr()->GetCalcId(), 191029u);
}

// -- Part 4.2: styles and shared strings ----------------------------------------------------------

TEST(Styles, FontKeepsOneHolderPerChildInOrder)
{
    auto r = Read<sml::CT_Font>(Sml("<font><b/><sz val='11'/><color theme='1'/><name val='Calibri'/><family val='2'/></font>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<sml::CT_FontData__> items = r.object->GetData__();
    ASSERT_EQ(items.size(), 5u);
    EXPECT_TRUE(items[0]->CheckB());
    EXPECT_FALSE(items[0]->CheckSz() || items[0]->CheckName());
    EXPECT_TRUE(items[1]->CheckSz());
    EXPECT_EQ(items[1]->GetSz()->GetVal(), 11.0);
    EXPECT_TRUE(items[2]->CheckColor());
    EXPECT_EQ(items[2]->GetColor()->GetTheme(), 1u);
    EXPECT_TRUE(items[3]->CheckName());
    EXPECT_EQ(items[3]->GetName()->GetVal(), "Calibri");
    EXPECT_TRUE(items[4]->CheckFamily());
    EXPECT_EQ(items[4]->GetFamily()->GetVal(), 2);
}

TEST(Styles, BooleanPropertyDefaultsToTrue)
{
    auto off = Read<sml::CT_BooleanProperty>(Sml("<b val='0'/>"));
    ASSERT_TRUE(off.ok);
    EXPECT_FALSE(off.object->GetVal());
    EXPECT_TRUE(off.object->CheckVal());
    auto bare = Read<sml::CT_BooleanProperty>(Sml("<b/>"));
    ASSERT_TRUE(bare.ok);
    EXPECT_TRUE(bare.object->GetVal());
    EXPECT_FALSE(bare.object->CheckVal());
}

TEST(Styles, CountIsKeptAsGiven)
{
    auto r = Read<sml::CT_CellXfs>(Sml("<cellXfs count='3'><xf numFmtId='0' fontId='1'/><xf xfId='0'/></cellXfs>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetCount(), 3u);
    ASSERT_EQ(r.object->GetXf().size(), 2u);
    EXPECT_EQ(r.object->GetXf()[0]->GetFontId(), 1u);
    EXPECT_TRUE(r.object->GetXf()[0]->CheckFontId());
    EXPECT_FALSE(r.object->GetXf()[1]->CheckFontId());
}

TEST(Styles, BorderAndGradientDefaults)
{
    EXPECT_EQ(sml::CT_BorderPr().GetStyle(), "none");
    EXPECT_EQ(sml::CT_GradientFill().GetType(), "linear");
    EXPECT_TRUE(sml::CT_Border().GetOutline());
    EXPECT_FALSE(sml::CT_CellProtection().CheckLocked());
}

TEST(Styles, OneAttributeValueClasses)
{
    // The table of Part 4.2: types and defaults.
    EXPECT_TRUE(sml::CT_BooleanProperty().GetVal());
    EXPECT_EQ(sml::CT_UnderlineProperty().GetVal(), "single");
    EXPECT_EQ(sml::CT_FontName().GetVal(), "");
    EXPECT_EQ(sml::CT_FontScheme().GetVal(), "");
    EXPECT_EQ(sml::CT_VerticalAlignFontProperty().GetVal(), "");
    sml::CT_IntProperty charset;
    charset.SetVal(-1);
    EXPECT_EQ(charset.GetVal(), -1);
    sml::CT_FontSize size;
    size.SetVal(10.5);
    EXPECT_EQ(size.GetVal(), 10.5);
    sml::CT_FontFamily family;
    family.SetVal(3);
    EXPECT_EQ(family.GetVal(), 3);
    auto u = Read<sml::CT_UnderlineProperty>(Sml("<u/>"));
    ASSERT_TRUE(u.ok);
    EXPECT_EQ(u.object->GetVal(), "single");
}

TEST(Styles, FillHasOneHolderForAllChildren)
{
    auto r = Read<sml::CT_Fill>(Sml("<fill><patternFill patternType='solid'/><patternFill/></fill>"));
    ASSERT_TRUE(r.ok);
    sml::CT_FillData__* holder = r.object->GetData__();
    ASSERT_NE(holder, nullptr);
    EXPECT_EQ(holder->GetPatternFill()->GetPatternType(), "solid"); // the second read over the first
    EXPECT_FALSE(holder->CheckGradientFill());
}

TEST(SharedStrings, PlainAndRichItems)
{
    auto r = Read<sml::CT_Sst>(Sml("<sst count='2' uniqueCount='2'><si><t>Hello</t></si>"
                                   "<si><r><rPr><b/><sz val='9'/></rPr><t>Bold</t></r><r><t xml:space='preserve'> plain</t></r></si></sst>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetUniqueCount(), 2u);
    XMLPtrArray<sml::CT_Rst> items = r.object->GetSi();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0]->GetT(), "Hello");
    EXPECT_TRUE(items[0]->CheckT());
    EXPECT_TRUE(items[0]->GetR().empty());
    EXPECT_FALSE(items[1]->CheckT());
    ASSERT_EQ(items[1]->GetR().size(), 2u);
    EXPECT_EQ(items[1]->GetR()[0]->GetT(), "Bold");
    EXPECT_EQ(items[1]->GetR()[1]->GetT(), " plain");
    XMLPtrArray<sml::CT_RPrEltData__> properties = items[1]->GetR()[0]->GetRPr()->GetData__();
    ASSERT_EQ(properties.size(), 2u);
    EXPECT_TRUE(properties[0]->CheckB());
    EXPECT_EQ(properties[1]->GetSz()->GetVal(), 9.0);
}

// -- Part 4.3: tables, pivots and other parts ------------------------------------------------

TEST(Pivots, RecordKeepsOneHolderPerValue)
{
    auto r = Read<sml::CT_Record>(Sml("<r><n v='1.5'/><s v='text'/><x v='2'/></r>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<sml::CT_RecordData__> values = r.object->GetData__();
    ASSERT_EQ(values.size(), 3u);
    EXPECT_TRUE(values[0]->CheckN());
    EXPECT_EQ(values[0]->GetN()->GetV(), 1.5);
    EXPECT_TRUE(values[1]->CheckS());
    EXPECT_EQ(values[1]->GetS()->GetV(), "text");
    EXPECT_TRUE(values[2]->CheckX());
    EXPECT_EQ(values[2]->GetX()->GetV(), 2u);
}

TEST(Pivots, TupleCacheElementAndAttributeAreKeptApart)
{
    auto r = Read<sml::CT_PivotCacheDefinition>(Sml(
        "<pivotCacheDefinition r:id='rId1' tupleCache='1'><tupleCache/></pivotCacheDefinition>"));
    ASSERT_TRUE(r.ok);
    EXPECT_NE(r.object->GetTupleCache(), nullptr);
    EXPECT_TRUE(r.object->CheckTupleCache());
    EXPECT_TRUE(r.object->GetTupleCache_1());
    EXPECT_TRUE(r.object->CheckTupleCache_1());
}

TEST(Revisions, AlternatingKindsKeepOneHolderPerChild)
{
    auto r = Read<sml::CT_Revisions>(Sml("<revisions><rcc rId='1' sId='1'/><rrc rId='2' sId='1'/><rcc rId='3' sId='1'/></revisions>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<sml::CT_RevisionsData__> items = r.object->GetData__();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0]->GetRcc().size(), 1u);
    EXPECT_TRUE(items[0]->GetRrc().empty());
    EXPECT_EQ(items[1]->GetRrc().size(), 1u);
    EXPECT_TRUE(items[1]->GetRcc().empty());
    EXPECT_EQ(items[2]->GetRcc().size(), 1u);
    EXPECT_EQ(items[2]->GetRcc()[0]->GetAG_RevData()->GetRId(), 3u);
}

TEST(OtherParts, SpellingsOfTheSchemaAreKept)
{
    sml::CT_pivotTableDefinition pivot;
    sml::CT_MdxMemeberProp property;
    sml::CT_rowItems rows;
    sml::CT_colItems cols;
    EXPECT_EQ(pivot.GetAG_AutoFormat(), nullptr);
    (void)property;
    (void)rows;
    (void)cols;
}

TEST(OtherParts, AttributeGroupReadsItsAttributesFromTheElement)
{
    auto r = Read<sml::CT_QueryTable>(Sml("<queryTable name='q' connectionId='1' autoFormatId='16' applyNumberFormats='0'/>"));
    ASSERT_TRUE(r.ok);
    sml::AG_AutoFormat* format = r.object->GetAG_AutoFormat();
    ASSERT_NE(format, nullptr);
    EXPECT_TRUE(r.object->CheckAG_AutoFormat());
    EXPECT_EQ(format->GetAutoFormatId(), 16u);
    EXPECT_FALSE(format->GetApplyNumberFormats());
    EXPECT_EQ(r.object->GetName(), "q");
}

TEST(OtherParts, CommentsTableAndCalcChain)
{
    auto comments = Read<sml::CT_Comments>(Sml("<comments><authors><author>Ann</author><author>Bo</author></authors>"
                                               "<commentList><comment ref='B2' authorId='1'><text><t>Check</t></text>"
                                               "</comment></commentList></comments>"));
    ASSERT_TRUE(comments.ok);
    EXPECT_EQ(comments.object->GetAuthors()->GetAuthor(), std::vector<wxString>({"Ann", "Bo"}));
    sml::CT_Comment* comment = comments.object->GetCommentList()->GetComment()[0];
    EXPECT_EQ(comment->GetAuthorId(), 1u);
    EXPECT_EQ(comment->GetText()->GetT(), "Check");

    auto table = Read<sml::CT_Table>(Sml("<table id='1' name='T' displayName='T' ref='A1:B3' totalsRowShown='0'>"
                                         "<autoFilter ref='A1:B3'/><tableColumns count='2'><tableColumn id='1' name='a'/>"
                                         "<tableColumn id='2' name='b'><calculatedColumnFormula>A2*2</calculatedColumnFormula>"
                                         "</tableColumn></tableColumns><tableStyleInfo name='TableStyleMedium2'/></table>"));
    ASSERT_TRUE(table.ok);
    EXPECT_EQ(table.object->GetRef(), "A1:B3");
    EXPECT_EQ(table.object->GetTableColumns()->GetTableColumn()[1]->GetCalculatedColumnFormula()->GetValue(), "A2*2");

    auto chain = Read<sml::CT_CalcChain>(Sml("<calcChain><c r='D2' i='1'/><c r='D3'/></calcChain>"));
    ASSERT_TRUE(chain.ok);
    ASSERT_EQ(chain.object->GetC().size(), 2u);
    EXPECT_EQ(chain.object->GetC()[0]->GetI(), 1);
}
