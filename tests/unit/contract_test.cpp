// Parts 2.1 and 2.2: the anatomy of generated classes and the reading algorithm.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/namespaces.h"
#include "ooxml/drawingml/chart.h"
#include "ooxml/spreadsheetml/sml.h"
#include "ooxml/wordprocessingml/wml.h"

using ooxml_test::LogCapture;
using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace chart = ooxml::chart;
namespace sml = ooxml::sml;
namespace wml = ooxml::wml;

namespace
{
wxString ChartSpace(const wxString& children)
{
    return "<c:chartSpace" + Xmlns("c", uri::chart) + Xmlns("a", uri::dml) + Xmlns("r", uri::rel) + ">" + children +
           "</c:chartSpace>";
}
wxString Worksheet(const wxString& children)
{
    return "<worksheet" + Xmlns("", uri::sml) + Xmlns("r", uri::rel) + ">" + children + "</worksheet>";
}
} // namespace

// -- Part 2.1: anatomy ---------------------------------------------------------------------

TEST(Anatomy, DefaultOfBooleanIsTrueButNotPresent)
{
    chart::CT_Boolean b;
    EXPECT_TRUE(b.GetVal());
    EXPECT_FALSE(b.CheckVal());
}

TEST(Anatomy, SetterFlagsEvenTheDefaultValue)
{
    chart::CT_Boolean b;
    b.SetVal(true);
    EXPECT_TRUE(b.CheckVal());
    EXPECT_TRUE(b.GetVal());
}

TEST(Anatomy, ClassWithMoreThan32MembersUsesBitsAbove31)
{
    // CT_PPrBase: "pStyle" bit 0, "divId" bit 31, "cnfStyle" bit 32.
    wml::CT_PPrBase p;
    p.SetCnfStyle(new wml::CT_Cnf);
    EXPECT_TRUE(p.CheckCnfStyle());
    EXPECT_FALSE(p.CheckPStyle());
    EXPECT_FALSE(p.CheckDivId());
    p.SetPStyle(new wml::CT_String);
    EXPECT_TRUE(p.CheckPStyle());
    EXPECT_FALSE(p.CheckDivId());
    p.SetDivId(new wml::CT_DecimalNumber);
    EXPECT_TRUE(p.CheckDivId());

    auto r = Read<wml::CT_PPrBase>("<w:pPr" + Xmlns("w", uri::wml) + "><w:cnfStyle/><w:divId w:val='4'/></w:pPr>");
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckCnfStyle());
    EXPECT_TRUE(r.object->CheckDivId());
    EXPECT_FALSE(r.object->CheckPStyle());
    EXPECT_EQ(r.object->GetDivId()->GetVal(), 4);
}

TEST(Anatomy, ClassWithMoreThan64MembersKeepsEveryBit)
{
    // CT_Settings has 98 members, more than one 64-bit word holds.
    auto r = Read<wml::CT_Settings>("<w:settings" + Xmlns("w", uri::wml) +
                                    "><w:writeProtection/><w:doNotAutoCompressPictures/></w:settings>");
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckWriteProtection());                      // bit 0
    EXPECT_TRUE(r.object->CheckDoNotAutoCompressPictures());            // a bit above 64
    EXPECT_FALSE(r.object->CheckView());                                // bit 1
    EXPECT_FALSE(r.object->CheckDoNotValidateAgainstSchema());
}

TEST(Anatomy, DeletingAnArrayWithANullEntrySkipsIt)
{
    sml::CT_Row* row = new sml::CT_Row;
    row->SetC(XMLPtrArray<sml::CT_Cell>{nullptr, new sml::CT_Cell, nullptr});
    EXPECT_EQ(row->GetC().size(), 3u);
    delete row; // must neither crash nor leak (checked under the sanitizers)
}

TEST(Anatomy, MissingChildIsNullAndAbsentArrayIsEmpty)
{
    sml::CT_Row row;
    EXPECT_EQ(row.GetExtLst(), nullptr);
    EXPECT_TRUE(row.GetC().empty());
    EXPECT_TRUE(row.GetSpans().empty());
    EXPECT_FALSE(row.CheckC());
}

TEST(Anatomy, NumbersWithoutDefaultStartAtZero)
{
    sml::CT_Row row;
    EXPECT_EQ(row.GetR(), 0u);
    EXPECT_EQ(row.GetHt(), 0.0);
    EXPECT_FALSE(row.GetHidden());
}

TEST(Anatomy, CopySharesChildrenAndAssignmentOverwritesWithoutFreeing)
{
    sml::CT_Cell original;
    sml::CT_CellFormula* formula = new sml::CT_CellFormula;
    original.SetF(formula);
    original.SetR("B7");

    sml::CT_Cell copy(original);
    EXPECT_EQ(copy.GetF(), formula); // the pointer, not a clone
    EXPECT_EQ(copy.GetR(), "B7");
    EXPECT_TRUE(copy.CheckF());
    copy.SetF(nullptr); // only one of the two may free the child

    sml::CT_Cell target;
    sml::CT_CellFormula* own = new sml::CT_CellFormula;
    target.SetF(own);
    target = original;
    EXPECT_EQ(target.GetF(), formula);
    delete own; // assignment overwrote the pointer without freeing it
    target.SetF(nullptr);
}

TEST(Anatomy, SetterTakesOwnershipWithoutFreeingThePreviousChild)
{
    sml::CT_Cell cell;
    sml::CT_CellFormula* first = new sml::CT_CellFormula;
    cell.SetF(first);
    sml::CT_CellFormula* previous = cell.GetF();
    cell.SetF(new sml::CT_CellFormula);
    EXPECT_NE(cell.GetF(), previous);
    delete previous; // the caller frees what it replaced
}

TEST(Anatomy, GettersOfArraysReturnCopiesOfThePointers)
{
    auto r = Read<sml::CT_SheetData>("<sheetData" + Xmlns("", uri::sml) + "><row r='1'/><row r='2'/></sheetData>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<sml::CT_Row> rows = r.object->GetRow();
    rows.clear();
    EXPECT_EQ(r.object->GetRow().size(), 2u);
}

// -- Part 2.2: reading -----------------------------------------------------------------------

TEST(Reading, EmptyElementKeepsTheConstructorState)
{
    auto r = Read<sml::CT_SheetView>("<sheetView" + Xmlns("", uri::sml) + "/>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetZoomScale(), 100u);
    EXPECT_FALSE(r.object->CheckZoomScale());
    EXPECT_EQ(r.object->GetPane(), nullptr);
}

TEST(Reading, ValueThatDoesNotConvertFailsTheReadAndItsParents)
{
    auto alone = Read<chart::CT_Double>("<c:max" + Xmlns("c", uri::chart) + " val='abc'/>");
    EXPECT_FALSE(alone.ok);
    EXPECT_FALSE(alone.object->CheckVal());

    auto r = Read<chart::CT_Scaling>("<c:scaling" + Xmlns("c", uri::chart) +
                                     "><c:orientation val='minMax'/><c:max val='abc'/><c:min val='1'/></c:scaling>");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.object->CheckOrientation()); // read before the failure: kept
    ASSERT_NE(r.object->GetMax(), nullptr);     // the failed child stays attached
    EXPECT_FALSE(r.object->CheckMax());
    EXPECT_EQ(r.object->GetMin(), nullptr);     // never reached
}

TEST(Reading, FailureTravelsUpToTheRoot)
{
    auto r = Read<sml::CT_Worksheet>(Worksheet("<sheetData><row r='1'/><row r='x'/><row r='3'/></sheetData>"));
    EXPECT_FALSE(r.ok);
    ASSERT_NE(r.object->GetSheetData(), nullptr);
    XMLPtrArray<sml::CT_Row> rows = r.object->GetSheetData()->GetRow();
    ASSERT_EQ(rows.size(), 2u); // the failed row stays last, the third is never read
    EXPECT_EQ(rows[0]->GetR(), 1u);
    EXPECT_FALSE(rows[1]->CheckR());
}

TEST(Reading, SecondOccurrenceOfASingleChildReadsIntoTheSameObject)
{
    auto r = Read<sml::CT_SheetView>("<sheetView" + Xmlns("", uri::sml) +
                                     "><pane xSplit='2' state='frozen'/><pane xSplit='5'/></sheetView>");
    ASSERT_TRUE(r.ok);
    sml::CT_Pane* pane = r.object->GetPane();
    ASSERT_NE(pane, nullptr);
    EXPECT_EQ(pane->GetXSplit(), 5.0);      // the second overwrote the first
    EXPECT_EQ(pane->GetState(), "frozen");  // what only the first set stays
}

TEST(Reading, RepeatingChoiceKeepsOneHolderPerChildInOrder)
{
    auto r = Read<chart::CT_PlotArea>(
        "<c:plotArea" + Xmlns("c", uri::chart) +
        "><c:barChart/><c:lineChart/><c:barChart/><c:valAx/><c:catAx/></c:plotArea>");
    ASSERT_TRUE(r.ok);
    XMLPtrArray<chart::CT_PlotAreaData__> types = r.object->GetData__();
    ASSERT_EQ(types.size(), 3u);
    EXPECT_TRUE(types[0]->CheckBarChart());
    EXPECT_FALSE(types[0]->CheckLineChart());
    EXPECT_TRUE(types[1]->CheckLineChart());
    EXPECT_FALSE(types[1]->CheckBarChart());
    EXPECT_TRUE(types[2]->CheckBarChart());
    XMLPtrArray<chart::CT_PlotAreaData__1> axes = r.object->GetData__1();
    ASSERT_EQ(axes.size(), 2u);
    EXPECT_TRUE(axes[0]->CheckValAx());
    EXPECT_TRUE(axes[1]->CheckCatAx());
}

TEST(Reading, ElementOfUnknownNamespaceIsSkippedAndSiblingsRead)
{
    LogCapture log;
    auto r = Read<chart::CT_Scaling>("<c:scaling" + Xmlns("c", uri::chart) + Xmlns("z", "urn:unknown") +
                                     "><z:max val='abc'/><c:max val='2'/></c:scaling>");
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetMax(), nullptr);
    EXPECT_EQ(r.object->GetMax()->GetVal(), 2.0);
    EXPECT_EQ(log.Count("Invalid name: z:max"), 1u);
}

TEST(Reading, UnprefixedAttributeUnderForeignDefaultNamespaceIsNotMatched)
{
    LogCapture log;
    auto r = Read<chart::CT_ChartSpace>(ChartSpace("<c:style xmlns='urn:foreign' val='5'/>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetStyle(), nullptr);
    EXPECT_FALSE(r.object->GetStyle()->CheckVal());
}

TEST(Reading, UnknownAttributesAndElementsAreSkipped)
{
    auto r = Read<sml::CT_Row>("<row" + Xmlns("", uri::sml) +
                               " r='4' foo='bar'><unknown><c r='Z9'/></unknown><c r='A4'/></row>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetR(), 4u);
    ASSERT_EQ(r.object->GetC().size(), 1u);
    EXPECT_EQ(r.object->GetC()[0]->GetR(), "A4");
}

TEST(Reading, ReadingAgainOverwritesSinglesAndAppendsToArrays)
{
    auto document = ooxml_test::ParseXml("<row" + Xmlns("", uri::sml) + " r='4' ht='12'><c r='A4'/></row>");
    ASSERT_TRUE(document);
    sml::CT_Row row;
    XMLNSContext first(document.get());
    ASSERT_TRUE(row.ReadXML(document->GetRoot(), &first));
    auto second = ooxml_test::ParseXml("<row" + Xmlns("", uri::sml) + " r='5'><c r='B5'/></row>");
    XMLNSContext context(second.get());
    ASSERT_TRUE(row.ReadXML(second->GetRoot(), &context));
    EXPECT_EQ(row.GetR(), 5u);
    EXPECT_EQ(row.GetHt(), 12.0);
    ASSERT_EQ(row.GetC().size(), 2u);
    EXPECT_EQ(row.GetC()[1]->GetR(), "B5");
}

TEST(Reading, ScopeStackIsBalancedAfterSuccessAndFailure)
{
    // The failing child binds "p" to another namespace; after the read, "p"
    // must resolve as the root bound it, so every pushed scope was popped.
    const wxString text = "<c:scaling" + Xmlns("c", uri::chart) + Xmlns("p", uri::chart) +
                          "><c:orientation" + Xmlns("p", uri::rel) + " val='x'/><c:max" + Xmlns("p", uri::rel) +
                          " val='bad'/></c:scaling>";
    auto document = ooxml_test::ParseXml(text);
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    chart::CT_Scaling scaling;
    EXPECT_FALSE(scaling.ReadXML(document->GetRoot(), &context));
    EXPECT_EQ(context.MapNameSpace("p:x", schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap), "x");

    auto good = ooxml_test::ParseXml("<c:scaling" + Xmlns("c", uri::chart) + Xmlns("p", uri::chart) +
                                     "><c:max" + Xmlns("p", uri::rel) + " val='1'/></c:scaling>");
    XMLNSContext goodContext(good.get());
    chart::CT_Scaling ok;
    EXPECT_TRUE(ok.ReadXML(good->GetRoot(), &goodContext));
    EXPECT_EQ(goodContext.MapNameSpace("p:x", schemas_openxmlformats_org_drawingml_x2006_chart::NamespaceMap), "x");
}

TEST(Reading, DerivedClassReadsOnlyItsOwnMembers)
{
    auto r = Read<wml::CT_PPr>("<w:pPr" + Xmlns("w", uri::wml) + "><w:jc w:val='center'/><w:rPr/></w:pPr>");
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckRPr());
    const wml::CT_PPrBase& base = *r.object;
    EXPECT_FALSE(base.CheckJc());
    EXPECT_EQ(base.GetJc(), nullptr);
}

TEST(Reading, WriteXMLAddsNothing)
{
    auto r = Read<sml::CT_Row>("<row" + Xmlns("", uri::sml) + " r='1'><c r='A1'/></row>");
    ASSERT_TRUE(r.ok);
    wxXmlNode node(wxXML_ELEMENT_NODE, "out");
    EXPECT_TRUE(r.object->WriteXML(&node, r.context.get()));
    EXPECT_EQ(node.GetChildren(), nullptr);
    EXPECT_EQ(node.GetAttributes(), nullptr);
}

TEST(Reading, TextAndCommentNodesMatchOnlyByTheirNodeName)
{
    // wxWidgets names text nodes "text": the spreadsheet comment's member
    // "text" takes a text node that stands among the children (Part 2.2, 3.8).
    wxStringInputStream input("<comment" + Xmlns("", uri::sml) + " ref='A1'>note</comment>");
    wxXmlDocument document;
    ASSERT_TRUE(document.Load(input));
    XMLNSContext context(&document);
    sml::CT_Comment comment;
    ASSERT_TRUE(comment.ReadXML(document.GetRoot(), &context));
    EXPECT_TRUE(comment.CheckText());
    EXPECT_EQ(comment.GetRef(), "A1");
}
