// One realistic part per family, read through its root class, with values
// checked deep in the tree.  The parts are written in the style of Office's
// output (markup-compatibility attributes, extension namespaces, revision ids).
#include "test_support.h"

#include "ooxml/all.h"

using ooxml_test::LogCapture;
using ooxml_test::Read;

TEST(Smoke, Worksheet)
{
    LogCapture quiet; // x14ac and mc names are unknown to the SpreadsheetML map
    auto r = Read<ooxml::sml::CT_Worksheet>(
        "<worksheet xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main' "
        "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' "
        "xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006' mc:Ignorable='x14ac' "
        "xmlns:x14ac='http://schemas.microsoft.com/office/spreadsheetml/2009/9/ac'>"
        "<sheetPr><tabColor rgb='FF00B050'/><pageSetUpPr fitToPage='1'/></sheetPr><dimension ref='A1:C3'/>"
        "<sheetViews><sheetView tabSelected='1' zoomScale='85' zoomScaleNormal='85' workbookViewId='0'>"
        "<pane xSplit='1' ySplit='1' topLeftCell='B2' activePane='bottomRight' state='frozen'/>"
        "<selection pane='bottomRight' activeCell='C3' sqref='C3'/></sheetView></sheetViews>"
        "<sheetFormatPr defaultRowHeight='15' x14ac:dyDescent='0.25'/>"
        "<cols><col min='1' max='1' width='18.7109375' customWidth='1'/></cols>"
        "<sheetData><row r='1' spans='1:3' x14ac:dyDescent='0.25'><c r='A1' t='s'><v>0</v></c><c r='B1' s='1'><v>42</v></c>"
        "<c r='C1' t='str'><f>TEXT(B1,\"0.0\")</f><v>42.0</v></c></row>"
        "<row r='3' spans='1:3' ht='20.25' customHeight='1'><c r='C3' t='e'><f t='shared' ref='C3:C4' si='0'>1/0</f>"
        "<v>#DIV/0!</v></c></row></sheetData>"
        "<conditionalFormatting sqref='B1:B10'><cfRule type='cellIs' dxfId='0' priority='1' operator='greaterThan'>"
        "<formula>40</formula></cfRule></conditionalFormatting>"
        "<hyperlinks><hyperlink ref='A1' r:id='rId1' display='site'/></hyperlinks>"
        "<pageMargins left='0.7' right='0.7' top='0.75' bottom='0.75' header='0.3' footer='0.3'/>"
        "<pageSetup paperSize='9' orientation='landscape' r:id='rId2'/></worksheet>");
    ASSERT_TRUE(r.ok);
    const ooxml::sml::CT_Worksheet& sheet = *r.object;
    EXPECT_EQ(sheet.GetSheetPr()->GetTabColor()->GetRgb(), "FF00B050");
    EXPECT_TRUE(sheet.GetSheetPr()->GetPageSetUpPr()->GetFitToPage());
    ooxml::sml::CT_SheetView* view = sheet.GetSheetViews()->GetSheetView()[0];
    EXPECT_EQ(view->GetZoomScale(), 85u);
    EXPECT_EQ(view->GetPane()->GetState(), "frozen");
    EXPECT_EQ(view->GetPane()->GetYSplit(), 1.0);
    XMLPtrArray<ooxml::sml::CT_Row> rows = sheet.GetSheetData()->GetRow();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]->GetC()[2]->GetF()->GetValue(), "TEXT(B1,\"0.0\")");
    ooxml::sml::CT_Cell* error = rows[1]->GetC()[0];
    EXPECT_EQ(error->GetT(), "e");
    EXPECT_EQ(error->GetV(), "#DIV/0!");
    EXPECT_EQ(error->GetF()->GetT(), "shared");
    EXPECT_EQ(error->GetF()->GetSi(), 0u);
    EXPECT_EQ(rows[1]->GetHt(), 20.25);
    ooxml::sml::CT_CfRule* rule = sheet.GetConditionalFormatting()[0]->GetCfRule()[0];
    EXPECT_EQ(rule->GetOperator(), "greaterThan");
    EXPECT_EQ(rule->GetFormula(), std::vector<wxString>({"40"}));
    EXPECT_EQ(sheet.GetHyperlinks()->GetHyperlink()[0]->GetDisplay(), "site");
    EXPECT_EQ(sheet.GetPageSetup()->GetPaperSize(), 9u);
    EXPECT_EQ(sheet.GetPageMargins()->GetHeader(), 0.3);
}

TEST(Smoke, DocumentBody)
{
    LogCapture quiet;
    auto r = Read<ooxml::wml::CT_Document>(
        "<w:document xmlns:wpc='http://schemas.microsoft.com/office/word/2010/wordprocessingCanvas' "
        "xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006' "
        "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' "
        "xmlns:m='http://schemas.openxmlformats.org/officeDocument/2006/math' "
        "xmlns:wp='http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing' "
        "xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main' "
        "xmlns:w14='http://schemas.microsoft.com/office/word/2010/wordml' "
        "xmlns:a='http://schemas.openxmlformats.org/drawingml/2006/main' mc:Ignorable='w14'><w:body>"
        "<w:p w14:paraId='1A2B3C4D' w:rsidR='00A1' w:rsidRDefault='00A1'><w:pPr><w:pStyle w:val='Heading1'/></w:pPr>"
        "<w:r><w:t>Results</w:t></w:r></w:p>"
        "<w:p><w:r><w:rPr><w:b/><w:color w:val='FF0000'/><w:sz w:val='28'/></w:rPr><w:t xml:space='preserve'>Total: </w:t>"
        "</w:r><w:fldSimple w:instr=' PAGE '><w:r><w:t>1</w:t></w:r></w:fldSimple>"
        "<w:r><w:drawing><wp:inline distT='0' distB='0' distL='0' distR='0'><wp:extent cx='5486400' cy='3200400'/>"
        "<wp:docPr id='1' name='Chart 1'/><a:graphic><a:graphicData "
        "uri='http://schemas.openxmlformats.org/drawingml/2006/chart'><c:chart "
        "xmlns:c='http://schemas.openxmlformats.org/drawingml/2006/chart' r:id='rId5'/></a:graphicData></a:graphic>"
        "</wp:inline></w:drawing></w:r></w:p>"
        "<w:tbl><w:tblPr><w:tblW w:w='0' w:type='auto'/></w:tblPr><w:tblGrid><w:gridCol w:w='4675'/></w:tblGrid>"
        "<w:tr><w:tc><w:tcPr><w:tcW w:w='4675' w:type='dxa'/></w:tcPr><w:p><w:r><w:t>cell</w:t></w:r></w:p></w:tc></w:tr>"
        "</w:tbl><w:sectPr><w:pgSz w:w='12240' w:h='15840'/><w:pgMar w:top='1440' w:right='1440' w:bottom='1440' "
        "w:left='1440' w:header='720' w:footer='720' w:gutter='0'/><w:cols w:space='720'/></w:sectPr></w:body></w:document>");
    ASSERT_TRUE(r.ok);
    ooxml::wml::CT_Body* body = r.object->GetBody();
    XMLPtrArray<ooxml::wml::EG_BlockLevelElts> blocks = body->GetEG_BlockLevelElts();
    ASSERT_EQ(blocks.size(), 3u);
    auto content = [](ooxml::wml::EG_BlockLevelElts* block) {
        return block->GetData__()->GetEG_BlockLevelChunkElts()[0]->GetData__()->GetEG_ContentBlockContent()[0]->GetData__();
    };
    ooxml::wml::CT_P* heading = content(blocks[0])->GetP()[0];
    EXPECT_EQ(heading->GetRsidR(), "00A1");
    ooxml::wml::CT_P* second = content(blocks[1])->GetP()[0];
    XMLPtrArray<ooxml::wml::EG_PContent> items = second->GetEG_PContent();
    ASSERT_EQ(items.size(), 3u);
    ooxml::wml::CT_R* run = items[0]->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->GetR();
    ooxml::wml::EG_RPrBaseData__* properties = run->GetEG_RPr()->GetRPr()->GetEG_RPrBase()->GetData__();
    EXPECT_TRUE(properties->CheckB());
    EXPECT_EQ(properties->GetColor()->GetVal().As<wxString>(), "FF0000");
    EXPECT_EQ(properties->GetSz()->GetVal().As<long long>(), 28);
    EXPECT_EQ(run->GetEG_RunInnerContent()[0]->GetData__()->GetT()->GetValue(), "Total: ");
    EXPECT_EQ(items[1]->GetData__()->GetFldSimple()[0]->GetInstr(), " PAGE ");
    ooxml::wml::CT_R* drawingRun = items[2]->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->GetR();
    ooxml::wml::CT_Drawing* drawing = drawingRun->GetEG_RunInnerContent()[0]->GetData__()->GetDrawing();
    ooxml::wp::CT_Inline* inlined = drawing->GetData__()[0]->GetWp_inline();
    EXPECT_EQ(inlined->GetExtent()->GetCx(), 5486400ll);
    EXPECT_EQ(inlined->GetA_graphic()->GetGraphicData()->GetC_chart()->GetR_id(), "rId5");
    ooxml::wml::CT_Tbl* table = content(blocks[2])->GetTbl()[0];
    ooxml::wml::CT_Tc* cell = table->GetEG_ContentRowContent()[0]->GetData__()->GetTr()[0]
                                  ->GetEG_ContentCellContent()[0]->GetData__()->GetTc()[0];
    EXPECT_TRUE(cell->CheckTcPr());
    EXPECT_TRUE(body->GetSectPr()->GetEG_SectPrContents()->CheckPgMar());
}

TEST(Smoke, Slide)
{
    LogCapture quiet;
    auto r = Read<ooxml::pml::CT_Slide>(
        "<p:sld xmlns:a='http://schemas.openxmlformats.org/drawingml/2006/main' "
        "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' "
        "xmlns:p='http://schemas.openxmlformats.org/presentationml/2006/main'><p:cSld><p:spTree><p:nvGrpSpPr>"
        "<p:cNvPr id='1' name=''/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr><a:xfrm><a:off x='0' y='0'/>"
        "<a:ext cx='0' cy='0'/><a:chOff x='0' y='0'/><a:chExt cx='0' cy='0'/></a:xfrm></p:grpSpPr>"
        "<p:sp><p:nvSpPr><p:cNvPr id='4' name='Content Placeholder 3'><a:extLst><a:ext "
        "uri='{FF2B5EF4-FFF2-40B4-BE49-F238E27FC236}'><a16:creationId xmlns:a16='http://schemas.microsoft.com/office/drawing/2014/main' "
        "id='{1}'/></a:ext></a:extLst></p:cNvPr><p:cNvSpPr><a:spLocks noGrp='1'/></p:cNvSpPr><p:nvPr><p:ph idx='1'/>"
        "</p:nvPr></p:nvSpPr><p:spPr><a:xfrm><a:off x='838200' y='1825625'/><a:ext cx='10515600' cy='4351338'/></a:xfrm>"
        "</p:spPr><p:txBody><a:bodyPr><a:normAutofit fontScale='92500'/></a:bodyPr><a:lstStyle/>"
        "<a:p><a:pPr lvl='1'/><a:r><a:rPr lang='en-US' dirty='0'><a:solidFill><a:schemeClr val='accent1'><a:lumMod val='75000'/>"
        "</a:schemeClr></a:solidFill></a:rPr><a:t>Point</a:t></a:r><a:endParaRPr lang='en-US'/></a:p></p:txBody></p:sp>"
        "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id='5' name='Table'/><p:cNvGraphicFramePr/><p:nvPr/>"
        "</p:nvGraphicFramePr><p:xfrm><a:off x='0' y='0'/><a:ext cx='1' cy='1'/></p:xfrm><a:graphic><a:graphicData "
        "uri='http://schemas.openxmlformats.org/drawingml/2006/table'><a:tbl><a:tblGrid><a:gridCol w='100'/></a:tblGrid>"
        "<a:tr h='370840'><a:tc><a:txBody><a:bodyPr/><a:p><a:r><a:t>cell</a:t></a:r></a:p></a:txBody><a:tcPr/></a:tc>"
        "</a:tr></a:tbl></a:graphicData></a:graphic></p:graphicFrame></p:spTree></p:cSld>"
        "<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr><p:transition spd='med'><p:fade/></p:transition></p:sld>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<ooxml::pml::CT_GroupShapeData__> shapes = r.object->GetCSld()->GetSpTree()->GetData__();
    ASSERT_EQ(shapes.size(), 2u);
    ooxml::pml::CT_Shape* shape = shapes[0]->GetSp();
    EXPECT_EQ(shape->GetNvSpPr()->GetCNvPr()->GetName(), "Content Placeholder 3");
    EXPECT_EQ(shape->GetNvSpPr()->GetCNvPr()->GetExtLst()->GetEG_OfficeArtExtensionList()->GetExt()[0]->GetUri(),
              "{FF2B5EF4-FFF2-40B4-BE49-F238E27FC236}");
    EXPECT_EQ(shape->GetNvSpPr()->GetNvPr()->GetPh()->GetIdx(), 1u);
    EXPECT_EQ(shape->GetSpPr()->GetXfrm()->GetOff()->GetY().As<long long>(), 1825625);
    ooxml::dml::CT_TextParagraph* paragraph = shape->GetTxBody()->GetP()[0];
    EXPECT_EQ(paragraph->GetPPr()->GetLvl(), 1);
    ooxml::dml::CT_RegularTextRun* run = paragraph->GetEG_TextRun()[0]->GetData__()->GetR();
    EXPECT_EQ(run->GetT(), "Point");
    ooxml::dml::CT_SchemeColor* colour =
        run->GetRPr()->GetEG_FillProperties()->GetData__()->GetSolidFill()->GetEG_ColorChoice()->GetData__()->GetSchemeClr();
    EXPECT_EQ(colour->GetVal(), "accent1");
    EXPECT_EQ(colour->GetEG_ColorTransform()[0]->GetData__()->GetLumMod()->GetVal().As<long long>(), 75000);
    ooxml::dml::CT_Table* table = shapes[1]->GetGraphicFrame()->GetA_graphic()->GetGraphicData()->GetTbl();
    EXPECT_EQ(table->GetTr()[0]->GetTc()[0]->GetTxBody()->GetP()[0]->GetEG_TextRun()[0]->GetData__()->GetR()->GetT(), "cell");
    EXPECT_TRUE(r.object->GetTransition()->GetData__()->CheckFade());
}

TEST(Smoke, Chart)
{
    LogCapture quiet;
    auto r = Read<ooxml::chart::CT_ChartSpace>(
        "<c:chartSpace xmlns:c='http://schemas.openxmlformats.org/drawingml/2006/chart' "
        "xmlns:a='http://schemas.openxmlformats.org/drawingml/2006/main' "
        "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' "
        "xmlns:c16r2='http://schemas.microsoft.com/office/drawing/2015/06/chart'><c:date1904 val='0'/><c:lang val='en-US'/>"
        "<c:roundedCorners val='0'/><c:chart><c:title><c:tx><c:rich><a:bodyPr/><a:p><a:r><a:t>Sales</a:t></a:r></a:p></c:rich>"
        "</c:tx><c:overlay val='0'/></c:title><c:autoTitleDeleted val='0'/><c:plotArea><c:layout/><c:barChart>"
        "<c:barDir val='col'/><c:grouping val='clustered'/><c:varyColors val='0'/><c:ser><c:idx val='0'/><c:order val='0'/>"
        "<c:tx><c:strRef><c:f>Sheet1!$B$1</c:f><c:strCache><c:ptCount val='1'/><c:pt idx='0'><c:v>2024</c:v></c:pt>"
        "</c:strCache></c:strRef></c:tx><c:invertIfNegative val='0'/><c:cat><c:strRef><c:f>Sheet1!$A$2:$A$3</c:f></c:strRef>"
        "</c:cat><c:val><c:numRef><c:f>Sheet1!$B$2:$B$3</c:f><c:numCache><c:formatCode>General</c:formatCode>"
        "<c:ptCount val='2'/><c:pt idx='0'><c:v>4.3</c:v></c:pt><c:pt idx='1'><c:v>2.5</c:v></c:pt></c:numCache></c:numRef>"
        "</c:val><c:extLst><c:ext uri='{C3380CC4-5D6E-409C-BE32-E72D297353CC}'><c16:uniqueId "
        "xmlns:c16='http://schemas.microsoft.com/office/drawing/2014/chart' val='{1}'/></c:ext></c:extLst></c:ser>"
        "<c:gapWidth val='219'/><c:overlap val='-27'/><c:axId val='10'/><c:axId val='20'/></c:barChart>"
        "<c:catAx><c:axId val='10'/><c:scaling><c:orientation val='minMax'/></c:scaling><c:delete val='0'/>"
        "<c:axPos val='b'/><c:crossAx val='20'/><c:crosses val='autoZero'/></c:catAx><c:valAx><c:axId val='20'/>"
        "<c:scaling><c:orientation val='minMax'/></c:scaling><c:delete val='0'/><c:axPos val='l'/><c:crossAx val='10'/>"
        "</c:valAx></c:plotArea><c:legend><c:legendPos val='b'/></c:legend><c:plotVisOnly val='1'/></c:chart>"
        "<c:externalData r:id='rId1'><c:autoUpdate val='0'/></c:externalData></c:chartSpace>");
    ASSERT_TRUE(r.ok);
    ooxml::chart::CT_Chart* chart = r.object->GetChart();
    EXPECT_EQ(chart->GetTitle()->GetTx()->GetData__()->GetRich()->GetP()[0]->GetEG_TextRun()[0]->GetData__()->GetR()->GetT(),
              "Sales");
    ooxml::chart::CT_BarChart* bar = chart->GetPlotArea()->GetData__()[0]->GetBarChart();
    ooxml::chart::CT_BarSer* series = bar->GetEG_BarChartShared()->GetSer()[0];
    EXPECT_EQ(series->GetEG_SerShared()->GetTx()->GetData__()->GetStrRef()->GetF(), "Sheet1!$B$1");
    ooxml::chart::CT_NumRef* values = series->GetVal()->GetData__()->GetNumRef();
    EXPECT_EQ(values->GetNumCache()->GetPt()[1]->GetV(), "2.5");
    EXPECT_EQ(series->GetExtLst()->GetExt()[0]->GetUri(), "{C3380CC4-5D6E-409C-BE32-E72D297353CC}");
    EXPECT_EQ(bar->GetOverlap()->GetVal().As<long long>(), -27);
    EXPECT_EQ(chart->GetPlotArea()->GetData__1()[0]->GetCatAx()->GetEG_AxShared()->GetData__()->GetCrosses()->GetVal(),
              "autoZero");
    EXPECT_EQ(chart->GetLegend()->GetLegendPos()->GetVal(), "b");
    EXPECT_EQ(r.object->GetExternalData()->GetR_id(), "rId1");
    EXPECT_FALSE(r.object->GetExternalData()->GetAutoUpdate()->GetVal());
}

TEST(Smoke, DiagramData)
{
    auto r = Read<ooxml::dgm::CT_DataModel>(
        "<dgm:dataModel xmlns:dgm='http://schemas.openxmlformats.org/drawingml/2006/diagram' "
        "xmlns:a='http://schemas.openxmlformats.org/drawingml/2006/main'><dgm:ptLst>"
        "<dgm:pt modelId='{A1}' type='doc'><dgm:prSet loTypeId='urn:microsoft.com/office/officeart/2005/8/layout/default' "
        "loCatId='list' qsTypeId='urn:microsoft.com/office/officeart/2005/8/quickstyle/simple1' csTypeId='urn:c' "
        "csCatId='accent1' phldr='1'/><dgm:spPr/><dgm:t><a:bodyPr/><a:lstStyle/><a:p><a:endParaRPr lang='en-US'/></a:p>"
        "</dgm:t></dgm:pt><dgm:pt modelId='{B2}'><dgm:prSet phldrT='[Text]'/><dgm:spPr/><dgm:t><a:bodyPr/><a:p><a:r>"
        "<a:t>Step one</a:t></a:r></a:p></dgm:t></dgm:pt><dgm:pt modelId='{C3}' type='parTrans' cxnId='{D4}'/></dgm:ptLst>"
        "<dgm:cxnLst><dgm:cxn modelId='{D4}' srcId='{A1}' destId='{B2}' srcOrd='0' destOrd='0' parTransId='{C3}'/></dgm:cxnLst>"
        "<dgm:bg/><dgm:whole/><dgm:extLst><a:ext uri='http://schemas.microsoft.com/office/drawing/2008/diagram'>"
        "<dsp:dataModelExt xmlns:dsp='http://schemas.microsoft.com/office/drawing/2008/diagram' relId='rId6' minVer='x'/>"
        "</a:ext></dgm:extLst></dgm:dataModel>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<ooxml::dgm::CT_Pt> points = r.object->GetPtLst()->GetPt();
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[0]->GetType(), "doc");
    EXPECT_EQ(points[0]->GetPrSet()->GetLoCatId(), "list");
    EXPECT_TRUE(points[0]->GetPrSet()->GetPhldr());
    EXPECT_EQ(points[1]->GetT()->GetP()[0]->GetEG_TextRun()[0]->GetData__()->GetR()->GetT(), "Step one");
    EXPECT_EQ(points[2]->GetCxnId().As<wxString>(), "{D4}");
    ooxml::dgm::CT_Cxn* connection = r.object->GetCxnLst()->GetCxn()[0];
    EXPECT_EQ(connection->GetSrcId().As<wxString>(), "{A1}");
    EXPECT_EQ(connection->GetDestOrd(), 0u);
    ooxml::dml::CT_OfficeArtExtension* extension =
        r.object->GetExtLst()->GetEG_OfficeArtExtensionList()->GetExt()[0];
    EXPECT_EQ(extension->GetDsp_dataModelExt()->GetRelId(), "rId6");
}

TEST(Smoke, VmlDrawing)
{
    // A comment's shape as Excel writes it (vmlDrawing parts have no single
    // root class in the spec; the shapes are read one by one).
    const wxString text =
        "<xml xmlns:v='urn:schemas-microsoft-com:vml' xmlns:o='urn:schemas-microsoft-com:office:office' "
        "xmlns:x='urn:schemas-microsoft-com:office:excel'><o:shapelayout v:ext='edit'><o:idmap v:ext='edit' data='1'/>"
        "</o:shapelayout><v:shapetype id='_x0000_t202' coordsize='21600,21600' o:spt='202' path='m,l,21600r21600,l21600,xe'>"
        "<v:stroke joinstyle='miter'/><v:path gradientshapeok='t' o:connecttype='rect'/></v:shapetype>"
        "<v:shape id='_x0000_s1025' type='#_x0000_t202' style='position:absolute;margin-left:59.25pt;visibility:hidden' "
        "fillcolor='#ffffe1' o:insetmode='auto'><v:fill color2='#ffffe1'/><v:shadow on='t' color='black' obscured='t'/>"
        "<v:path o:connecttype='none'/><v:textbox style='mso-direction-alt:auto'><div style='text-align:left'></div>"
        "</v:textbox><x:ClientData ObjectType='Note'><x:MoveWithCells/><x:SizeWithCells/>"
        "<x:Anchor>1, 15, 0, 2, 3, 15, 3, 16</x:Anchor><x:AutoFill>False</x:AutoFill><x:Row>0</x:Row>"
        "<x:Column>1</x:Column></x:ClientData></v:shape></xml>";
    auto document = ooxml_test::ParseXml(text);
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    wxXmlNode* layoutNode = document->GetRoot()->GetChildren();
    wxXmlNode* typeNode = layoutNode->GetNext();
    wxXmlNode* shapeNode = typeNode->GetNext();

    ooxml::vml_o::CT_ShapeLayout layout;
    context.PushStack(layoutNode);
    ASSERT_TRUE(layout.ReadXML(layoutNode, &context));
    context.PopStack();
    EXPECT_EQ(layout.GetIdmap()->GetData(), "1");

    ooxml::vml::CT_Shapetype type;
    context.PushStack(typeNode);
    ASSERT_TRUE(type.ReadXML(typeNode, &context));
    context.PopStack();
    EXPECT_EQ(type.GetAG_AllCoreAttributes()->GetAG_CoreAttributes()->GetAG_Id()->GetId(), "_x0000_t202");
    EXPECT_EQ(type.GetAG_AllShapeAttributes()->GetAG_OfficeShapeAttributes()->GetO_spt(), 202.0f);

    ooxml::vml::CT_Shape shape;
    context.PushStack(shapeNode);
    ASSERT_TRUE(shape.ReadXML(shapeNode, &context));
    context.PopStack();
    EXPECT_EQ(shape.GetAG_AllShapeAttributes()->GetAG_ShapeAttributes()->GetAG_Fill()->GetFillcolor(), "#ffffe1");
    EXPECT_EQ(shape.GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes()->GetO_insetmode(), "auto");
    XMLPtrArray<ooxml::vml::CT_ShapeData__> children = shape.GetData__();
    ASSERT_EQ(children.size(), 5u);
    EXPECT_EQ(children[1]->GetEG_ShapeElements()->GetData__()->GetShadow()->GetObscured(), "t");
    ooxml::vml_x::CT_ClientData* client = children[4]->GetEG_ShapeElements()->GetData__()->GetX_ClientData();
    ASSERT_EQ(client->GetData__().size(), 6u);
    EXPECT_EQ(client->GetData__()[2]->GetAnchor(), "1, 15, 0, 2, 3, 15, 3, 16");
    EXPECT_EQ(client->GetData__()[5]->GetColumn(), 1);
}

TEST(Smoke, DocumentProperties)
{
    auto core = Read<ooxml::core_properties::CT_CoreProperties>(
        "<cp:coreProperties xmlns:cp='http://schemas.openxmlformats.org/package/2006/metadata/core-properties' "
        "xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:dcterms='http://purl.org/dc/terms/' "
        "xmlns:dcmitype='http://purl.org/dc/dcmitype/' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>"
        "<dc:title>Plan</dc:title><dc:creator>Ann</dc:creator><cp:lastModifiedBy>Bo</cp:lastModifiedBy>"
        "<cp:revision>12</cp:revision><dcterms:created xsi:type='dcterms:W3CDTF'>2024-03-01T09:00:00Z</dcterms:created>"
        "<cp:category>Reports</cp:category></cp:coreProperties>");
    LogCapture quiet;
    ASSERT_TRUE(core.ok);
    EXPECT_EQ(core.object->GetLastModifiedBy(), "Bo");
    EXPECT_EQ(core.object->GetRevision(), "12");
    EXPECT_EQ(core.object->GetCategory(), "Reports");

    auto app = Read<ooxml::extended_properties::CT_Properties>(
        "<Properties xmlns='http://schemas.openxmlformats.org/officeDocument/2006/extended-properties' "
        "xmlns:vt='http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes'><Template>Normal.dotm</Template>"
        "<TotalTime>12</TotalTime><Pages>3</Pages><Words>512</Words><Application>Microsoft Office Word</Application>"
        "<DocSecurity>0</DocSecurity><HeadingPairs><vt:vector size='2' baseType='variant'><vt:variant><vt:lpstr>Title</vt:lpstr>"
        "</vt:variant><vt:variant><vt:i4>1</vt:i4></vt:variant></vt:vector></HeadingPairs><Company>ACME</Company>"
        "<LinksUpToDate>false</LinksUpToDate><AppVersion>16.0000</AppVersion></Properties>");
    ASSERT_TRUE(app.ok);
    EXPECT_EQ(app.object->GetWords(), 512);
    EXPECT_EQ(app.object->GetCompany(), "ACME");
    XMLPtrArray<ooxml::vt::CT_VectorData__> pairs = app.object->GetHeadingPairs()->GetVt_vector()->GetData__();
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(pairs[0]->GetVariant()->GetData__()->GetLpstr(), "Title");
    EXPECT_EQ(pairs[1]->GetVariant()->GetData__()->GetI4(), 1);

    auto custom = Read<ooxml::custom_properties::CT_Properties>(
        "<Properties xmlns='http://schemas.openxmlformats.org/officeDocument/2006/custom-properties' "
        "xmlns:vt='http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes'>"
        "<property fmtid='{D5CDD505-2E9C-101B-9397-08002B2CF9AE}' pid='2' name='Reviewed'><vt:bool>true</vt:bool></property>"
        "<property fmtid='{D5CDD505-2E9C-101B-9397-08002B2CF9AE}' pid='3' name='Due'><vt:filetime>2024-04-01T00:00:00Z"
        "</vt:filetime></property></Properties>");
    ASSERT_TRUE(custom.ok);
    EXPECT_TRUE(custom.object->GetProperty()[0]->GetData__()->GetVt_bool());
    EXPECT_EQ(custom.object->GetProperty()[1]->GetData__()->GetVt_filetime(), "2024-04-01T00:00:00Z");
}
