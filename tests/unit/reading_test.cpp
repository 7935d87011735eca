// The reading algorithm of the generated classes: failures, unknown names, repeats, groups, holders, text, bits.
#include "test_support.h"
#include "ooxml/all.h"
#include "ooxml/namespaces.h"

using namespace ooxml;
using namespace ooxml_test;
namespace cu = ooxml::custom_properties;

TEST(Reading, FirstValueThatDoesNotConvertFailsUpToTheRoot)
{
    auto row = Read<sml::CT_Row>("<x:row r='5' ht='bad' s='2'><x:c/></x:row>"); // attributes in document order
    EXPECT_FALSE(row.ok || row->CheckS() || !row->GetC().empty() || row->GetR() != 5u);
    // Read before the failure: kept; the failed child: attached, its bit clear; the rest: not read.
    auto r = Read<chart::CT_Scaling>("<c:scaling><c:orientation val='minMax'/><c:max val='abc'/><c:min val='1'/>"
                                     "</c:scaling>");
    EXPECT_TRUE(!r.ok && r->CheckOrientation() && r->GetMax() && !r->CheckMax() && !r->GetMin());
    auto sheet = Read<sml::CT_Worksheet>("<x:worksheet><x:sheetData><x:row r='1'/><x:row r='x'/><x:row r='3'/>"
                                         "</x:sheetData><x:cols/></x:worksheet>");
    EXPECT_FALSE(sheet.ok || sheet->CheckSheetData() || !sheet->GetCols().empty());
    XMLPtrArray<sml::CT_Row> rows = sheet->GetSheetData()->GetRow();
    EXPECT_TRUE(rows.size() == 2 && rows[0]->CheckR() && !rows[1]->CheckR()); // the failed row stays last
    auto holders = Read<chart::CT_PlotArea>("<c:plotArea><c:barChart><c:varyColors val='bad'/></c:barChart>"
                                            "<c:lineChart/></c:plotArea>");
    EXPECT_TRUE(!holders.ok && holders->GetData__().size() == 1 && holders->GetData__()[0]->GetBarChart()); // last
    auto text = Read<cu::CT_Properties>("<cu:Properties><cu:property pid='2' name='a'><vt:i4>x</vt:i4></cu:property>"
                                        "<cu:property/></cu:Properties>");
    EXPECT_TRUE(!text.ok && text->GetProperty().size() == 1); // text content converts too
}

TEST(Reading, UnknownNamesAreSkippedAndLoggedUnprefixedAttributesTakeTheDefaultNamespace)
{
    LogCapture log;
    auto r = Read<chart::CT_Scaling>("<c:scaling xmlns:z='urn:unknown'><z:max val='abc'/><c:unknown/>"
                                     "<c:max z:val='bad' r:val='bad' Val='bad' foo='x' val='2'/></c:scaling>");
    EXPECT_TRUE(r.ok && r->GetMax()->GetVal() == 2.0);
    EXPECT_TRUE(log.Count("Invalid name: z:max") >= 1 && log.Count("Invalid name: z:val") >= 1);
    auto row = Read<sml::CT_Row>("<x:row r='4' foo='bar'><x:unknown><x:c r='Z9'/></x:unknown><x:c r='A4'/></x:row>");
    EXPECT_TRUE(row.ok && row->GetC().size() == 1 && row->GetC()[0]->GetR() == "A4");
    EXPECT_EQ(Read<sml::CT_Row>("<row" + Xmlns("", "x") + " r='4'/>")->GetR(), 4u);
    auto foreign = Read<chart::CT_ChartSpace>("<c:chartSpace><c:style xmlns='urn:foreign' val='5'/></c:chartSpace>");
    EXPECT_TRUE(foreign.ok && !foreign->GetStyle()->CheckVal()); // so is "size" of vt:vector in docProps/app.xml
    EXPECT_GE(log.Count("Invalid name: val"), 1u);
    // An attribute of another schema is found by its namespace, whatever its prefix; unprefixed it is not one.
    auto office = Read<vml::CT_Shape>("<v:shape" + Xmlns("q", "o") + " q:spid='_s1025' spid='x'/>");
    EXPECT_EQ(office->GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes()->GetO_spid(), "_s1025");
}

TEST(Reading, RepeatedSingleElementsFillTheSameObjectChoiceHoldersAndGroups)
{
    // The second pane overwrote the first; what only the first set stays.
    auto view = Read<sml::CT_SheetView>("<x:sheetView><x:pane xSplit='2' state='frozen'/><x:pane xSplit='5'/>"
                                        "</x:sheetView>");
    EXPECT_TRUE(view->GetPane()->GetXSplit() == 5.0 && view->GetPane()->GetState() == "frozen");
    auto sheet = Read<sml::CT_Worksheet>("<x:worksheet><x:cols/><x:cols/><x:sheetData><x:row r='1'/></x:sheetData>"
                                         "<x:sheetData><x:row r='2'/></x:sheetData></x:worksheet>");
    // A repeating element: one object each; a single one: read into the first.
    EXPECT_TRUE(sheet->GetCols().size() == 2 && sheet->GetSheetData()->GetRow().size() == 2);
    auto run = Read<wml::CT_RPr>("<w:rPr><w:b w:val='0'/><w:i/><w:b/></w:rPr>");
    EXPECT_EQ(run->GetEG_RPrBase()->GetData__()->GetB()->GetVal().As<long long>(), 0); // the bare "b" kept "0"
    // A repeating choice: one holder per child, in document order.
    auto plot = Read<chart::CT_PlotArea>("<c:plotArea><c:barChart/><c:lineChart/><c:barChart/><c:valAx/><c:catAx/>"
                                         "</c:plotArea>");
    XMLPtrArray<chart::CT_PlotAreaData__> t = plot->GetData__();
    ASSERT_TRUE(t.size() == 3 && plot->GetData__1().size() == 2);
    EXPECT_TRUE(t[0]->CheckBarChart() && !t[0]->CheckLineChart() && t[1]->CheckLineChart() && !t[1]->CheckBarChart());
    EXPECT_TRUE(t[2]->CheckBarChart() && plot->GetData__1()[0]->CheckValAx() && plot->GetData__1()[1]->CheckCatAx());
    // A single choice: one holder takes every alternative met.
    auto shape = Read<dml::CT_ShapeProperties>("<a:spPr><a:solidFill/><a:noFill/></a:spPr>");
    EXPECT_TRUE(shape->GetEG_FillProperties()->GetData__()->CheckSolidFill() &&
                shape->GetEG_FillProperties()->GetData__()->CheckNoFill());
    auto labels = Read<chart::CT_DLbls>("<c:dLbls><c:delete val='0'/><c:showVal val='1'/></c:dLbls>");
    chart::CT_DLblsData__* one = labels->GetData__();
    EXPECT_TRUE(one->CheckDelete() && one->CheckGroup_DLbls() &&
                one->GetGroup_DLbls()->GetEG_DLblShared()->GetShowVal()->GetVal());
    // Nested groups of a paragraph: run, bookmark (run level, range markup), hyperlink, equation.
    auto p = Read<wml::CT_P>("<w:p><w:r/><w:bookmarkStart w:id='0' w:name='b'/><w:hyperlink r:id='rId4'><w:r/>"
                             "</w:hyperlink><m:oMath/><w:oMath/></w:p>");
    XMLPtrArray<wml::EG_PContent> content = p->GetEG_PContent();
    ASSERT_EQ(content.size(), 4u); // a WordprocessingML "oMath" is no member
    EXPECT_TRUE(content[0]->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->CheckR());
    auto runLevel = [](wml::EG_PContent* c) {
        return c->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->GetEG_RunLevelElts()[0]->GetData__();
    };
    EXPECT_EQ(runLevel(content[1])->GetEG_RangeMarkupElements()[0]->GetData__()->GetBookmarkStart()->GetName(), "b");
    EXPECT_EQ(content[2]->GetData__()->GetHyperlink()->GetR_id(), "rId4");
    EXPECT_TRUE(runLevel(content[3])->GetEG_MathContent()[0]->GetData__()->CheckM_oMath());
}

TEST(Reading, GroupsRouteChildrenThroughSetPropertyAttributeGroupsReadOnlyWhenUsed)
{
    auto document = ParseXml(Ns("<t:Types><t:Default Extension='a' ContentType='x'/><t:Default Extension='b'/>"
                                "<t:Other/></t:Types>"));
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    typedef content_types::CT_TypesData__ Holder;
    EXPECT_TRUE(Holder::HasProperty("t:Default", &context) && Holder::HasProperty("t:Override", &context));
    EXPECT_FALSE(Holder::HasProperty("t:Other", &context));
    Holder holder;
    wxXmlNode* first = document->GetRoot()->GetChildren();
    EXPECT_FALSE(holder.SetProperty("t:Default", wxString("value"), &context)); // an element is no attribute
    ASSERT_TRUE(holder.SetProperty("t:Default", first, &context) && // the second reads over the first
                holder.SetProperty("t:Default", first->GetNext(), &context));
    EXPECT_EQ(holder.GetDefault()->GetExtension() + holder.GetDefault()->GetContentType(), "bx");
    EXPECT_TRUE(holder.CheckDefault() && !holder.CheckOverride());
    typedef vml::AG_CoreAttributes Attributes; // an attribute group refuses elements
    EXPECT_TRUE(Attributes::HasProperty("style", &context));
    EXPECT_FALSE(Attributes::HasProperty("fillcolor", &context) || Attributes().SetProperty("style", first, &context));
    // Attribute groups read from the element, and only when used.
    auto query = Read<sml::CT_QueryTable>("<x:queryTable name='q' autoFormatId='16' applyNumberFormats='0'/>");
    sml::AG_AutoFormat* format = query->GetAG_AutoFormat();
    EXPECT_TRUE(query->CheckAG_AutoFormat() && query->GetName() == "q" && format->GetAutoFormatId() == 16u);
    EXPECT_FALSE(format->GetApplyNumberFormats() || Read<sml::CT_QueryTable>("<x:queryTable/>")->GetAG_AutoFormat());
    auto shape = Read<vml::CT_Shape>("<v:shape style='position:absolute' fillcolor='red' type='#t202'/>");
    vml::AG_AllCoreAttributes* core = shape->GetAG_AllCoreAttributes();
    EXPECT_TRUE(!core->GetAG_OfficeCoreAttributes() && core->GetAG_CoreAttributes()->GetAG_Style()->GetStyle() ==
                                                            "position:absolute");
    EXPECT_EQ(shape->GetAG_AllShapeAttributes()->GetAG_ShapeAttributes()->GetAG_Fill()->GetFillcolor(), "red");
    EXPECT_EQ(shape->GetAG_Type()->GetType(), "#t202");
    auto each = Read<dgm::CT_ForEach>("<d:forEach axis='ch ch' st='1 2 -1' hideLastTrans='1 0'/>");
    dgm::AG_IteratorAttributes* iterator = each->GetAG_IteratorAttributes(); // a read list replaces its default
    EXPECT_TRUE(iterator->GetSt() == std::vector<int>({1, 2, -1}) && iterator->GetStep() == std::vector<int>({1}));
    EXPECT_TRUE(iterator->GetAxis().size() == 2 && iterator->GetHideLastTrans() == std::vector<bool>({true, false}));
}

TEST(Reading, DerivedClassesReadOnlyTheirOwnMembersTextPresenceBitsStayClear)
{
    auto pPr = Read<wml::CT_PPr>("<w:pPr><w:pStyle w:val='T'/><w:jc w:val='center'/><w:rPr/></w:pPr>");
    const wml::CT_PPrBase& base = *pPr.object;
    EXPECT_TRUE(pPr.ok && pPr->CheckRPr() && !base.CheckJc() && !base.CheckPStyle() && !base.GetJc());
    auto reference = Read<wml::CT_HdrFtrRef>("<w:headerReference w:type='first' r:id='rId8'/>");
    EXPECT_TRUE(reference->GetType() == "first" && !static_cast<wml::CT_Rel&>(*reference.object).CheckR_id());
    LogCapture quiet; // "xml:space": the xml prefix is never declared
    auto text = Read<wml::CT_Text>("<w:t xml:space='preserve'>  a  </w:t>");
    EXPECT_TRUE(text->GetValue() == "  a  " && !text->CheckValue() && text->GetXml_space() == "preserve");
    EXPECT_EQ(Read<wml::CT_Text>("<w:t><!--c-->later</w:t>")->GetValue(), ""); // only a first text node
    auto cell = Read<sml::CT_Cell>("<x:c r='D2'><x:f>B2*C2</x:f><x:v/></x:c>");
    EXPECT_TRUE(cell->GetF()->GetValue() == "B2*C2" && !cell->GetF()->CheckValue());
    EXPECT_TRUE(cell->CheckV() && cell->GetV().empty()); // a text-only element is a member: present
    auto cdata = Read<dml::CT_RegularTextRun>("<a:r><a:t><![CDATA[x]]></a:t></a:r>");
    EXPECT_TRUE(cdata->CheckT() && cdata->GetT().empty());
    // wxWidgets names text nodes "text": a member called "text" takes the text of its element.
    EXPECT_TRUE(Read<sml::CT_Comment>("<x:comment>note</x:comment>")->CheckText());
    auto property = Read<cu::CT_Properties>("<cu:Properties><cu:property><vt:i4/></cu:property><cu:property>"
                                            "<vt:i1>300</vt:i1></cu:property></cu:Properties>");
    ASSERT_TRUE(property.ok);
    cu::CT_PropertyData__* empty = property->GetProperty()[0]->GetData__();
    EXPECT_TRUE(empty->CheckVt_i4() && empty->GetVt_i4() == 0); // no text: the value is kept, the bit set
    EXPECT_EQ(property->GetProperty()[1]->GetData__()->GetVt_i1(), 44); // 8 bits of 300
}

TEST(Reading, PresenceBitsBeyond32And64MembersScopesBalanced)
{
    // CT_PPrBase: pStyle bit 0, divId bit 31, cnfStyle bit 32; CT_Settings has some 100 members.
    auto p = Read<wml::CT_PPrBase>("<w:pPr><w:cnfStyle/><w:divId w:val='4'/></w:pPr>");
    EXPECT_TRUE(p->CheckCnfStyle() && p->CheckDivId() && !p->CheckPStyle() && p->GetDivId()->GetVal() == 4);
    auto settings = Read<wml::CT_Settings>("<w:settings><w:writeProtection/><w:doNotAutoCompressPictures/>"
                                           "</w:settings>");
    EXPECT_TRUE(settings->CheckWriteProtection() && settings->CheckDoNotAutoCompressPictures() &&
                !settings->CheckView() && !settings->CheckDoNotValidateAgainstSchema());
    auto run = Read<wml::CT_R>("<w:r><w:t>a</w:t><w:lastRenderedPageBreak/></w:r>");
    ASSERT_EQ(run->GetEG_RunInnerContent().size(), 2u);
    wml::EG_RunInnerContentData__* last = run->GetEG_RunInnerContent()[1]->GetData__();
    EXPECT_TRUE(last->CheckLastRenderedPageBreak() && !last->CheckT()); // bit 32
    // The children bind "p" to another namespace; after a read, failed or not, "p" resolves as the root bound it.
    for (const char* max : {"bad", "1"})
    {
        auto document = ParseXml("<c:scaling" + Xmlns("c", "c") + Xmlns("p", "c") + "><c:orientation" +
                                 Xmlns("p", "r") + "/><c:max" + Xmlns("p", "r") + " val='" + max + "'/></c:scaling>");
        ASSERT_TRUE(document);
        XMLNSContext context(document.get());
        chart::CT_Scaling scaling;
        EXPECT_EQ(scaling.ReadXML(document->GetRoot(), &context), *max == '1');
        EXPECT_EQ(context.MapNameSpace("p:x", schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap), "x");
    }
}
