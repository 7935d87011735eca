// The reading algorithm of every generated class, checked across classes: failures, unknown names,
// repeated elements, groups and holders, attribute groups, derived classes, text, presence bits.
#include "test_support.h"

#include "ooxml/all.h"
#include "ooxml/namespaces.h"

using namespace ooxml_test;
namespace sml = ooxml::sml;
namespace wml = ooxml::wml;
namespace chart = ooxml::chart;

TEST(Reading, FirstValueThatDoesNotConvertFailsUpToTheRoot)
{
    auto row = Read<sml::CT_Row>("<x:row r='5' ht='bad' s='2'><x:c/></x:row>"); // attributes in document order
    EXPECT_FALSE(row.ok || row.object->CheckS() || !row.object->GetC().empty());
    EXPECT_EQ(row.object->GetR(), 5u);
    auto r = Read<chart::CT_Scaling>("<c:scaling><c:orientation val='minMax'/><c:max val='abc'/><c:min val='1'/>"
                                     "</c:scaling>");
    EXPECT_TRUE(!r.ok && r.object->CheckOrientation());     // read before the failure: kept
    EXPECT_TRUE(r.object->GetMax() && !r.object->CheckMax()); // the failed child stays attached, its bit clear
    EXPECT_EQ(r.object->GetMin(), nullptr);                   // never reached
    auto sheet = Read<sml::CT_Worksheet>("<x:worksheet><x:sheetData><x:row r='1'/><x:row r='x'/><x:row r='3'/>"
                                         "</x:sheetData><x:cols/></x:worksheet>");
    EXPECT_FALSE(sheet.ok || sheet.object->CheckSheetData() || !sheet.object->GetCols().empty());
    XMLPtrArray<sml::CT_Row> rows = sheet.object->GetSheetData()->GetRow();
    ASSERT_EQ(rows.size(), 2u); // the failed row stays last, the third is never read
    EXPECT_TRUE(rows[0]->CheckR() && !rows[1]->CheckR());
    auto holders = Read<chart::CT_PlotArea>("<c:plotArea><c:barChart><c:varyColors val='bad'/></c:barChart>"
                                            "<c:lineChart/></c:plotArea>");
    ASSERT_TRUE(!holders.ok && holders.object->GetData__().size() == 1); // the failed child's holder stays last
    EXPECT_NE(holders.object->GetData__()[0]->GetBarChart(), nullptr);
    auto text = Read<ooxml::custom_properties::CT_Properties>("<cu:Properties><cu:property pid='2' name='a'><vt:i4>x"
                                                              "</vt:i4></cu:property><cu:property/></cu:Properties>");
    EXPECT_TRUE(!text.ok && text.object->GetProperty().size() == 1); // text content converts too
}

TEST(Reading, UnknownNamesAreSkippedAndLogged)
{
    LogCapture log;
    auto r = Read<chart::CT_Scaling>("<c:scaling xmlns:z='urn:unknown'><z:max val='abc'/><c:unknown/>"
                                     "<c:max z:val='bad' r:val='bad' Val='bad' foo='x' val='2'/></c:scaling>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetMax()->GetVal(), 2.0);
    EXPECT_TRUE(log.Count("Invalid name: z:max") >= 1 && log.Count("Invalid name: z:val") >= 1);
    auto row = Read<sml::CT_Row>("<x:row r='4' foo='bar'><x:unknown><x:c r='Z9'/></x:unknown><x:c r='A4'/></x:row>");
    ASSERT_TRUE(row.ok && row.object->GetC().size() == 1);
    EXPECT_EQ(row.object->GetC()[0]->GetR(), "A4");
}

TEST(Reading, UnprefixedAttributesResolveAgainstTheDefaultNamespace)
{
    LogCapture log;
    EXPECT_EQ(Read<sml::CT_Row>("<row" + Xmlns("", uri::sml) + " r='4'/>").object->GetR(), 4u);
    auto foreign = Read<chart::CT_ChartSpace>("<c:chartSpace><c:style xmlns='urn:foreign' val='5'/></c:chartSpace>");
    EXPECT_TRUE(foreign.ok && !foreign.object->GetStyle()->CheckVal()); // so is "size" of vt:vector in docProps/app.xml
    EXPECT_GE(log.Count("Invalid name: val"), 1u);
    // An attribute of another schema is found by its namespace, whatever its prefix; unprefixed it is not one.
    auto office = Read<ooxml::vml::CT_Shape>("<v:shape" + Xmlns("q", uri::office) + " q:spid='_s1025' spid='x'/>");
    EXPECT_EQ(office.object->GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes()->GetO_spid(), "_s1025");
}

TEST(Reading, RepeatedSingleElementsFillTheSameObject)
{
    auto view = Read<sml::CT_SheetView>("<x:sheetView><x:pane xSplit='2' state='frozen'/><x:pane xSplit='5'/>"
                                        "</x:sheetView>");
    EXPECT_EQ(view.object->GetPane()->GetXSplit(), 5.0);     // the second overwrote the first
    EXPECT_EQ(view.object->GetPane()->GetState(), "frozen"); // what only the first set stays
    auto sheet = Read<sml::CT_Worksheet>("<x:worksheet><x:cols/><x:cols/><x:sheetData><x:row r='1'/></x:sheetData>"
                                         "<x:sheetData><x:row r='2'/></x:sheetData></x:worksheet>");
    EXPECT_EQ(sheet.object->GetCols().size(), 2u);                // a repeating element: one object each
    EXPECT_EQ(sheet.object->GetSheetData()->GetRow().size(), 2u); // a single one: read into the first
    auto run = Read<wml::CT_RPr>("<w:rPr><w:b w:val='0'/><w:i/><w:b/></w:rPr>");
    EXPECT_EQ(run.object->GetEG_RPrBase()->GetData__()->GetB()->GetVal().As<long long>(), 0); // the bare "b" kept "0"
}

TEST(Reading, ChoiceHolders)
{
    // A repeating choice: one holder per child, in document order.
    auto plot = Read<chart::CT_PlotArea>("<c:plotArea><c:barChart/><c:lineChart/><c:barChart/><c:valAx/><c:catAx/>"
                                         "</c:plotArea>");
    XMLPtrArray<chart::CT_PlotAreaData__> types = plot.object->GetData__();
    ASSERT_EQ(types.size(), 3u);
    EXPECT_TRUE(types[0]->CheckBarChart() && !types[0]->CheckLineChart() && types[2]->CheckBarChart());
    EXPECT_TRUE(types[1]->CheckLineChart() && !types[1]->CheckBarChart());
    ASSERT_EQ(plot.object->GetData__1().size(), 2u);
    EXPECT_TRUE(plot.object->GetData__1()[0]->CheckValAx() && plot.object->GetData__1()[1]->CheckCatAx());
    // A single choice: one holder takes every alternative met.
    auto shape = Read<ooxml::dml::CT_ShapeProperties>("<a:spPr><a:solidFill/><a:noFill/></a:spPr>");
    ooxml::dml::EG_FillPropertiesData__* fill = shape.object->GetEG_FillProperties()->GetData__();
    EXPECT_TRUE(fill->CheckSolidFill() && fill->CheckNoFill());
    auto labels = Read<chart::CT_DLbls>("<c:dLbls><c:delete val='0'/><c:showVal val='1'/></c:dLbls>");
    EXPECT_TRUE(labels.object->GetData__()->CheckDelete() && labels.object->GetData__()->CheckGroup_DLbls());
    EXPECT_TRUE(labels.object->GetData__()->GetGroup_DLbls()->GetEG_DLblShared()->GetShowVal()->GetVal());
}

TEST(Reading, GroupsRouteChildrenThroughSetProperty)
{
    auto document = ParseXml(Ns("<t:Types><t:Default Extension='a' ContentType='x'/><t:Default Extension='b'/>"
                                "<t:Other/></t:Types>"));
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    typedef ooxml::content_types::CT_TypesData__ Holder;
    EXPECT_TRUE(Holder::HasProperty("t:Default", &context) && Holder::HasProperty("t:Override", &context));
    EXPECT_FALSE(Holder::HasProperty("t:Other", &context));
    Holder holder;
    wxXmlNode* first = document->GetRoot()->GetChildren();
    EXPECT_FALSE(holder.SetProperty("t:Default", wxString("value"), &context)); // an element is no attribute
    ASSERT_TRUE(holder.SetProperty("t:Default", first, &context));
    ooxml::content_types::CT_Default* object = holder.GetDefault();
    ASSERT_TRUE(holder.SetProperty("t:Default", first->GetNext(), &context));
    EXPECT_EQ(holder.GetDefault(), object); // the second reads over the first
    EXPECT_EQ(object->GetExtension() + object->GetContentType(), "bx");
    EXPECT_TRUE(holder.CheckDefault() && !holder.CheckOverride());
    typedef ooxml::vml::AG_CoreAttributes Attributes; // an attribute group refuses elements
    EXPECT_TRUE(Attributes::HasProperty("style", &context));
    EXPECT_FALSE(Attributes::HasProperty("fillcolor", &context) || Attributes().SetProperty("style", first, &context));
    // Nested groups of a paragraph: run, bookmark (run level, range markup), hyperlink, equation.
    auto p = Read<wml::CT_P>("<w:p><w:r/><w:bookmarkStart w:id='0' w:name='b'/><w:hyperlink r:id='rId4'><w:r/>"
                             "</w:hyperlink><m:oMath/><w:oMath/></w:p>");
    XMLPtrArray<wml::EG_PContent> content = p.object->GetEG_PContent();
    ASSERT_EQ(content.size(), 4u); // a WordprocessingML "oMath" is no member
    EXPECT_TRUE(content[0]->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->CheckR());
    auto runLevel = [](wml::EG_PContent* c) {
        return c->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->GetEG_RunLevelElts()[0]->GetData__();
    };
    EXPECT_EQ(runLevel(content[1])->GetEG_RangeMarkupElements()[0]->GetData__()->GetBookmarkStart()->GetName(), "b");
    EXPECT_EQ(content[2]->GetData__()->GetHyperlink()->GetR_id(), "rId4");
    EXPECT_TRUE(runLevel(content[3])->GetEG_MathContent()[0]->GetData__()->CheckM_oMath());
}

TEST(Reading, AttributeGroupsReadFromTheElementOnlyWhenUsed)
{
    auto query = Read<sml::CT_QueryTable>("<x:queryTable name='q' autoFormatId='16' applyNumberFormats='0'/>");
    EXPECT_TRUE(query.object->CheckAG_AutoFormat() && query.object->GetName() == "q");
    EXPECT_EQ(query.object->GetAG_AutoFormat()->GetAutoFormatId(), 16u);
    EXPECT_FALSE(query.object->GetAG_AutoFormat()->GetApplyNumberFormats());
    EXPECT_EQ(Read<sml::CT_QueryTable>("<x:queryTable name='q'/>").object->GetAG_AutoFormat(), nullptr);
    auto shape = Read<ooxml::vml::CT_Shape>("<v:shape style='position:absolute' fillcolor='red' type='#t202'/>");
    ooxml::vml::AG_AllCoreAttributes* core = shape.object->GetAG_AllCoreAttributes();
    EXPECT_EQ(core->GetAG_CoreAttributes()->GetAG_Style()->GetStyle(), "position:absolute");
    EXPECT_EQ(core->GetAG_OfficeCoreAttributes(), nullptr);
    EXPECT_EQ(shape.object->GetAG_AllShapeAttributes()->GetAG_ShapeAttributes()->GetAG_Fill()->GetFillcolor(), "red");
    EXPECT_EQ(shape.object->GetAG_Type()->GetType(), "#t202");
    auto each = Read<ooxml::dgm::CT_ForEach>("<d:forEach axis='ch ch' st='1 2 -1' hideLastTrans='1 0'/>");
    ooxml::dgm::AG_IteratorAttributes* iterator = each.object->GetAG_IteratorAttributes();
    EXPECT_EQ(iterator->GetSt(), std::vector<int>({1, 2, -1})); // a read list replaces its default
    EXPECT_TRUE(iterator->GetAxis().size() == 2 && iterator->GetHideLastTrans() == std::vector<bool>({true, false}));
    EXPECT_EQ(iterator->GetStep(), std::vector<int>({1}));
}

TEST(Reading, DerivedClassReadsOnlyTheMembersItDeclares)
{
    auto pPr = Read<wml::CT_PPr>("<w:pPr><w:pStyle w:val='T'/><w:jc w:val='center'/><w:rPr/></w:pPr>");
    const wml::CT_PPrBase& base = *pPr.object;
    EXPECT_TRUE(pPr.ok && pPr.object->CheckRPr() && !base.CheckJc() && !base.CheckPStyle() && !base.GetJc());
    auto reference = Read<wml::CT_HdrFtrRef>("<w:headerReference w:type='first' r:id='rId8'/>");
    EXPECT_EQ(reference.object->GetType(), "first");
    EXPECT_FALSE(static_cast<const wml::CT_Rel&>(*reference.object).CheckR_id());
}

TEST(Reading, TextContentIsReadButItsPresenceBitStaysClear)
{
    LogCapture quiet; // "xml:space": the xml prefix is never declared
    auto text = Read<wml::CT_Text>("<w:t xml:space='preserve'>  a  </w:t>");
    EXPECT_TRUE(text.object->GetValue() == "  a  " && !text.object->CheckValue());
    EXPECT_EQ(text.object->GetXml_space(), "preserve");
    EXPECT_EQ(Read<wml::CT_Text>("<w:t><!--c-->later</w:t>").object->GetValue(), ""); // only a first text node
    auto cell = Read<sml::CT_Cell>("<x:c r='D2'><x:f>B2*C2</x:f><x:v/></x:c>");
    EXPECT_TRUE(cell.object->GetF()->GetValue() == "B2*C2" && !cell.object->GetF()->CheckValue());
    EXPECT_TRUE(cell.object->CheckV() && cell.object->GetV().empty()); // a text-only element is a member: present
    auto cdata = Read<ooxml::dml::CT_RegularTextRun>("<a:r><a:t><![CDATA[x]]></a:t></a:r>");
    EXPECT_TRUE(cdata.object->CheckT() && cdata.object->GetT().empty());
    // wxWidgets names text nodes "text": a member called "text" takes the text of its element.
    EXPECT_TRUE(Read<sml::CT_Comment>("<x:comment>note</x:comment>").object->CheckText());
    auto property = Read<ooxml::custom_properties::CT_Properties>(
        "<cu:Properties><cu:property><vt:i4/></cu:property><cu:property><vt:i1>300</vt:i1></cu:property>"
        "</cu:Properties>");
    ASSERT_TRUE(property.ok);
    ooxml::custom_properties::CT_PropertyData__* empty = property.object->GetProperty()[0]->GetData__();
    EXPECT_TRUE(empty->CheckVt_i4() && empty->GetVt_i4() == 0); // no text: the value is kept, the bit set
    EXPECT_EQ(property.object->GetProperty()[1]->GetData__()->GetVt_i1(), 44); // 8 bits of 300
}

TEST(Reading, PresenceBitsBeyond32And64Members)
{
    // CT_PPrBase: pStyle bit 0, divId bit 31, cnfStyle bit 32; CT_Settings has some 100 members.
    auto p = Read<wml::CT_PPrBase>("<w:pPr><w:cnfStyle/><w:divId w:val='4'/></w:pPr>");
    EXPECT_TRUE(p.object->CheckCnfStyle() && p.object->CheckDivId() && !p.object->CheckPStyle());
    EXPECT_EQ(p.object->GetDivId()->GetVal(), 4);
    auto settings = Read<wml::CT_Settings>("<w:settings><w:writeProtection/><w:doNotAutoCompressPictures/>"
                                           "</w:settings>");
    EXPECT_TRUE(settings.object->CheckWriteProtection() && settings.object->CheckDoNotAutoCompressPictures());
    EXPECT_FALSE(settings.object->CheckView() || settings.object->CheckDoNotValidateAgainstSchema());
    auto run = Read<wml::CT_R>("<w:r><w:t>a</w:t><w:lastRenderedPageBreak/></w:r>");
    ASSERT_EQ(run.object->GetEG_RunInnerContent().size(), 2u);
    wml::EG_RunInnerContentData__* last = run.object->GetEG_RunInnerContent()[1]->GetData__();
    EXPECT_TRUE(last->CheckLastRenderedPageBreak() && !last->CheckT()); // bit 32
}

TEST(Reading, ScopesAreBalancedAfterSuccessAndFailure)
{
    // The children bind "p" to another namespace; afterwards "p" resolves as the root bound it.
    for (const char* max : {"bad", "1"})
    {
        auto document = ParseXml("<c:scaling" + Xmlns("c", uri::chart) + Xmlns("p", uri::chart) + "><c:orientation" +
                                 Xmlns("p", uri::rel) + "/><c:max" + Xmlns("p", uri::rel) + " val='" + max +
                                 "'/></c:scaling>");
        ASSERT_TRUE(document);
        XMLNSContext context(document.get());
        chart::CT_Scaling scaling;
        EXPECT_EQ(scaling.ReadXML(document->GetRoot(), &context), *max == '1');
        EXPECT_EQ(context.MapNameSpace("p:x", schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap), "x");
    }
}
