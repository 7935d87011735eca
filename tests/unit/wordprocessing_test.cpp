// Parts 5.1, 5.2 and 5.3: WordprocessingML and Office Math.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/drawingml/dml.h"
#include "ooxml/package/sl.h"
#include "ooxml/wordprocessingml/math.h"
#include "ooxml/wordprocessingml/wml.h"

using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace wml = ooxml::wml;
namespace math = ooxml::math;

namespace
{
// An element of the WordprocessingML namespace with the usual declarations.
wxString W(const wxString& element)
{
    const int end = element.find_first_of(" />");
    return element.Left(end) + Xmlns("w", uri::wml) + Xmlns("r", uri::rel) + Xmlns("m", uri::math) +
           Xmlns("a", uri::dml) + element.Mid(end);
}

// The run-level group of a paragraph content entry, if it holds one.
wml::EG_RunLevelEltsData__* RunLevel(wml::EG_PContent* content)
{
    wml::EG_ContentRunContent* run = content->GetData__()->GetEG_ContentRunContent()[0];
    return run->GetData__()->GetEG_RunLevelElts()[0]->GetData__();
}
} // namespace

// -- Part 5.1: document body ------------------------------------------------------------------

TEST(Paragraphs, ChildrenKeepDocumentOrderThroughTheGroups)
{
    auto r = Read<wml::CT_P>(W("<w:p><w:r><w:t>a</w:t></w:r><w:bookmarkStart w:id='0' w:name='b'/>"
                               "<w:r><w:t>c</w:t></w:r><w:hyperlink r:id='rId4'><w:r><w:t>d</w:t></w:r></w:hyperlink></w:p>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<wml::EG_PContent> content = r.object->GetEG_PContent();
    ASSERT_EQ(content.size(), 4u);
    // r: EG_PContentData__ -> EG_ContentRunContent -> "r"
    wml::EG_ContentRunContentData__* first = content[0]->GetData__()->GetEG_ContentRunContent()[0]->GetData__();
    ASSERT_TRUE(first->CheckR());
    // bookmarkStart: ... -> EG_RunLevelElts -> EG_RangeMarkupElements -> "bookmarkStart"
    wml::EG_RangeMarkupElementsData__* mark = RunLevel(content[1])->GetEG_RangeMarkupElements()[0]->GetData__();
    ASSERT_TRUE(mark->CheckBookmarkStart());
    EXPECT_EQ(mark->GetBookmarkStart()->GetName(), "b");
    EXPECT_TRUE(content[2]->GetData__()->GetEG_ContentRunContent()[0]->GetData__()->CheckR());
    wml::EG_PContentData__* link = content[3]->GetData__();
    ASSERT_TRUE(link->CheckHyperlink());
    EXPECT_EQ(link->GetHyperlink()->GetR_id(), "rId4");
    EXPECT_EQ(link->GetHyperlink()->GetEG_PContent().size(), 1u);
}

TEST(Paragraphs, TwoParagraphPropertiesReadIntoOne)
{
    auto r = Read<wml::CT_P>(W("<w:p><w:pPr><w:rPr/></w:pPr><w:pPr><w:sectPr/></w:pPr></w:p>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetPPr(), nullptr);
    EXPECT_TRUE(r.object->GetPPr()->CheckRPr());
    EXPECT_TRUE(r.object->GetPPr()->CheckSectPr());
}

TEST(Paragraphs, DerivedParagraphPropertiesSkipTheBaseMembers)
{
    auto r = Read<wml::CT_PPr>(W("<w:pPr><w:pStyle w:val='Title'/><w:jc w:val='center'/><w:rPr><w:b/></w:rPr></w:pPr>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckRPr());
    EXPECT_FALSE(r.object->CheckJc());
    EXPECT_FALSE(r.object->CheckPStyle());
}

TEST(Paragraphs, RsidAttributesAreText)
{
    auto r = Read<wml::CT_P>(W("<w:p w:rsidR='00AB12CD' w:rsidRDefault='00AB12CD' w:rsidP='00FF0011'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetRsidR(), "00AB12CD");
    EXPECT_EQ(r.object->GetRsidP(), "00FF0011");
    EXPECT_FALSE(r.object->CheckRsidDel());
}

TEST(Text, SpacesArePreservedAndTheValueBitStaysClear)
{
    auto r = Read<wml::CT_Text>(W("<w:t xml:space='preserve'>  a  </w:t>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetValue(), "  a  ");
    EXPECT_TRUE(r.object->CheckXml_space());
    EXPECT_EQ(r.object->GetXml_space(), "preserve");
    EXPECT_FALSE(r.object->CheckValue());
}

TEST(Text, TextAfterACommentIsNotRead)
{
    auto r = Read<wml::CT_Text>(W("<w:t><!--c-->later</w:t>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetValue(), "");
}

TEST(RunProperties, RepeatedPropertyReadsIntoTheSameObject)
{
    auto r = Read<wml::CT_RPr>(W("<w:rPr><w:b w:val='0'/><w:i/><w:b/></w:rPr>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetEG_RPrBase(), nullptr);
    wml::EG_RPrBaseData__* holder = r.object->GetEG_RPrBase()->GetData__();
    ASSERT_NE(holder, nullptr);
    EXPECT_TRUE(holder->CheckB()); // bit 2
    EXPECT_TRUE(holder->CheckI()); // bit 4
    EXPECT_FALSE(holder->CheckBCs());
    EXPECT_FALSE(holder->CheckOMath()); // bit 38, in the 64-bit mask
    // The second "b" (no "val") read over the first: its "val" stays 0.
    EXPECT_EQ(holder->GetB()->GetVal().As<long long>(), 0);
}

TEST(RunProperties, OnOffValuesFollowTheUnionRule)
{
    auto bare = Read<wml::CT_OnOff>(W("<w:b/>"));
    ASSERT_TRUE(bare.ok);
    EXPECT_FALSE(bare.object->CheckVal());
    EXPECT_TRUE(bare.object->GetVal().IsNull());
    auto zero = Read<wml::CT_OnOff>(W("<w:b w:val='0'/>"));
    ASSERT_TRUE(zero.ok);
    EXPECT_TRUE(zero.object->GetVal().CheckType<long long>());
    EXPECT_EQ(zero.object->GetVal().As<long long>(), 0);
    auto text = Read<wml::CT_OnOff>(W("<w:b w:val='false'/>"));
    ASSERT_TRUE(text.ok);
    EXPECT_TRUE(text.object->GetVal().CheckType<wxString>());
    EXPECT_EQ(text.object->GetVal().As<wxString>(), "false");
}

TEST(Runs, ContentInOrderAndUnknownChildrenSkipped)
{
    auto r = Read<wml::CT_R>(W("<w:r><w:rPr><w:b/></w:rPr><w:t>a</w:t><w:unknown/><w:br w:type='page'/><w:tab/>"
                               "<w:lastRenderedPageBreak/></w:r>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetEG_RPr(), nullptr);
    EXPECT_TRUE(r.object->GetEG_RPr()->GetRPr()->GetEG_RPrBase()->GetData__()->CheckB());
    XMLPtrArray<wml::EG_RunInnerContent> items = r.object->GetEG_RunInnerContent();
    ASSERT_EQ(items.size(), 4u);
    EXPECT_TRUE(items[0]->GetData__()->CheckT());
    EXPECT_EQ(items[0]->GetData__()->GetT()->GetValue(), "a");
    EXPECT_TRUE(items[1]->GetData__()->CheckBr());
    EXPECT_EQ(items[1]->GetData__()->GetBr()->GetType(), "page");
    EXPECT_TRUE(items[2]->GetData__()->CheckTab());
    EXPECT_TRUE(items[3]->GetData__()->CheckLastRenderedPageBreak()); // bit 32
    EXPECT_FALSE(items[3]->GetData__()->CheckBr());
}

TEST(Runs, EquationInAParagraphNeedsTheMathNamespace)
{
    auto r = Read<wml::CT_P>(W("<w:p><m:oMath><m:r><m:t>x</m:t></m:r></m:oMath><w:oMath/></w:p>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<wml::EG_PContent> content = r.object->GetEG_PContent();
    ASSERT_EQ(content.size(), 1u); // the WordprocessingML-namespace "oMath" is skipped
    wml::EG_MathContentData__* math = RunLevel(content[0])->GetEG_MathContent()[0]->GetData__();
    ASSERT_TRUE(math->CheckM_oMath());
    EXPECT_EQ(math->GetM_oMath()->GetEG_OMathElements().size(), 1u);
}

TEST(Body, BlockLevelContentAndSectionProperties)
{
    auto r = Read<wml::CT_Document>(W("<w:document w:conformance='transitional'><w:background w:color='FF0000'/>"
                                      "<w:body><w:p/><w:tbl/><w:p/><w:sectPr/></w:body></w:document>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetConformance(), "transitional");
    const wml::CT_DocumentBase& base = *r.object;
    EXPECT_FALSE(base.CheckBackground()); // inherited, not read by CT_Document
    wml::CT_Body* body = r.object->GetBody();
    ASSERT_EQ(body->GetEG_BlockLevelElts().size(), 3u);
    EXPECT_TRUE(body->CheckSectPr());
    wml::EG_ContentBlockContentData__* second =
        body->GetEG_BlockLevelElts()[1]->GetData__()->GetEG_BlockLevelChunkElts()[0]->GetData__()
            ->GetEG_ContentBlockContent()[0]->GetData__();
    EXPECT_EQ(second->GetTbl().size(), 1u);
    EXPECT_TRUE(second->GetP().empty());
}

// -- Part 5.2: sections, tables, numbering, styles and settings ----------------------------------

TEST(Tables, TablePropertiesReadOnlyTheirChangeRecord)
{
    auto r = Read<wml::CT_Tbl>(W("<w:tbl><w:tblPr><w:tblStyle w:val='Grid'/><w:tblW w:w='5000' w:type='dxa'/></w:tblPr>"
                                 "<w:tblGrid><w:gridCol w:w='2500'/></w:tblGrid><w:tr><w:tc><w:p/></w:tc></w:tr></w:tbl>"));
    ASSERT_TRUE(r.ok);
    wml::CT_TblPr* properties = r.object->GetTblPr();
    ASSERT_NE(properties, nullptr);
    EXPECT_TRUE(r.object->CheckTblPr());
    EXPECT_FALSE(properties->CheckTblStyle());
    EXPECT_FALSE(properties->CheckTblW());
    EXPECT_FALSE(properties->CheckTblPrChange());
    const wml::CT_TblGridBase& grid = *r.object->GetTblGrid();
    EXPECT_FALSE(grid.CheckGridCol()); // base member of CT_TblGrid: not read
    wml::CT_Row* row = r.object->GetEG_ContentRowContent()[0]->GetData__()->GetTr()[0];
    wml::CT_Tc* cell = row->GetEG_ContentCellContent()[0]->GetData__()->GetTc()[0];
    EXPECT_EQ(cell->GetEG_BlockLevelElts().size(), 1u);
}

TEST(Tables, RowPropertiesReadOnlyTheirOwnMembers)
{
    auto r = Read<wml::CT_TrPr>(W("<w:trPr><w:cantSplit/><w:ins w:id='1' w:author='a'/></w:trPr>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckIns());
    const wml::CT_TrPrBase& base = *r.object;
    EXPECT_TRUE(base.GetData__().empty());
    EXPECT_FALSE(base.CheckData__());
}

TEST(Sections, HeaderReferencesAndContents)
{
    auto r = Read<wml::CT_SectPr>(W("<w:sectPr><w:headerReference w:type='default' r:id='rId7'/>"
                                    "<w:headerReference w:type='first' r:id='rId8'/><w:pgSz w:w='11906' w:h='16838'/>"
                                    "</w:sectPr>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<wml::EG_HdrFtrReferences> references = r.object->GetEG_HdrFtrReferences();
    ASSERT_EQ(references.size(), 2u);
    wml::CT_HdrFtrRef* first = references[0]->GetData__()->GetHeaderReference();
    EXPECT_EQ(first->GetType(), "default");
    const wml::CT_Rel& rel = *first;
    EXPECT_FALSE(rel.CheckR_id()); // inherited: not read
    wml::EG_SectPrContents* contents = r.object->GetEG_SectPrContents();
    ASSERT_NE(contents, nullptr);
    EXPECT_TRUE(contents->CheckPgSz()); // bit 3
    EXPECT_FALSE(contents->CheckType());
    EXPECT_EQ(contents->GetPgSz()->GetW().As<long long>(), 11906);
}

TEST(Settings, MathPropertiesOnlyInTheMathNamespace)
{
    auto r = Read<wml::CT_Settings>(W("<w:settings><m:mathPr><m:mathFont m:val='Cambria Math'/></m:mathPr>"
                                      "<sl:schemaLibrary" + Xmlns("sl", uri::sl) + "/></w:settings>"));
    ASSERT_TRUE(r.ok);
    ASSERT_TRUE(r.object->CheckM_mathPr());
    EXPECT_EQ(r.object->GetM_mathPr()->GetMathFont()->GetVal(), "Cambria Math");
    EXPECT_TRUE(r.object->CheckSl_schemaLibrary());

    auto wrong = Read<wml::CT_Settings>(W("<w:settings><w:mathPr/></w:settings>"));
    ASSERT_TRUE(wrong.ok);
    EXPECT_FALSE(wrong.object->CheckM_mathPr());
}

TEST(ContentControls, AliasAndDropDownList)
{
    auto r = Read<wml::CT_SdtPr>(W("<w:sdtPr><w:alias w:val='Choice'/><w:dropDownList><w:listItem w:value='1'/>"
                                   "</w:dropDownList></w:sdtPr>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckAlias());
    EXPECT_EQ(r.object->GetAlias()->GetVal(), "Choice");
    wml::CT_SdtPrData__* control = r.object->GetData__();
    ASSERT_NE(control, nullptr);
    EXPECT_TRUE(control->CheckDropDownList()); // bit 5
    EXPECT_FALSE(control->CheckComboBox());
}

TEST(Styles, StyleBitsAndTypedSetters)
{
    auto r = Read<wml::CT_Styles>(W("<w:styles><w:style w:type='paragraph' w:styleId='Title'><w:name w:val='Title'/>"
                                    "<w:qFormat/><w:tblStylePr w:type='firstRow'/><w:tblStylePr w:type='lastRow'/>"
                                    "</w:style></w:styles>"));
    ASSERT_TRUE(r.ok);
    wml::CT_Style* style = r.object->GetStyle()[0];
    EXPECT_EQ(style->GetStyleId(), "Title");
    EXPECT_TRUE(style->CheckQFormat());
    EXPECT_EQ(style->GetTblStylePr().size(), 2u);
    wml::CT_Style fresh;
    fresh.SetQFormat(new wml::CT_OnOff); // typed setter of the element member
    EXPECT_TRUE(fresh.CheckQFormat());
    EXPECT_FALSE(fresh.CheckCustomStyle()); // bit 25
    wml::CT_LsdException exception;
    exception.SetQFormat(wxAny(wxString("1"))); // the attribute's variant setter
    EXPECT_TRUE(exception.CheckQFormat());
}

TEST(Comments, CommentReadsOnlyItsContentAndInitials)
{
    auto r = Read<wml::CT_Comments>(W("<w:comments><w:comment w:id='0' w:author='Ann' w:date='2024-01-01' w:initials='A'>"
                                      "<w:p/></w:comment></w:comments>"));
    ASSERT_TRUE(r.ok);
    wml::CT_Comment* comment = r.object->GetComment()[0];
    EXPECT_EQ(comment->GetInitials(), "A");
    EXPECT_EQ(comment->GetEG_BlockLevelElts().size(), 1u);
    const wml::CT_TrackChange& base = *comment;
    EXPECT_FALSE(base.CheckAuthor());
    EXPECT_FALSE(base.CheckDate());
}

TEST(Numbering, AbstractNumbersLevelsAndInstances)
{
    auto r = Read<wml::CT_Numbering>(W("<w:numbering><w:abstractNum w:abstractNumId='0'><w:lvl w:ilvl='0'><w:start w:val='1'/>"
                                       "<w:numFmt w:val='decimal'/><w:lvlText w:val='%1.'/></w:lvl></w:abstractNum>"
                                       "<w:num w:numId='1'><w:abstractNumId w:val='0'/></w:num></w:numbering>"));
    ASSERT_TRUE(r.ok);
    wml::CT_Lvl* level = r.object->GetAbstractNum()[0]->GetLvl()[0];
    EXPECT_EQ(level->GetIlvl(), 0);
    EXPECT_EQ(level->GetLvlText()->GetVal(), "%1.");
    EXPECT_EQ(r.object->GetNum()[0]->GetAbstractNumId()->GetVal(), 0);
}

// -- Part 5.3: Office Math ---------------------------------------------------------------------

TEST(Math, EquationElementsInOrderWithFractionArguments)
{
    auto r = Read<math::CT_OMath>(W("<m:oMath><m:r><m:t>a</m:t></m:r><m:f><m:num><m:r><m:t>1</m:t></m:r></m:num>"
                                    "<m:den><m:r><m:t>2</m:t></m:r></m:den></m:f><m:r><m:t>b</m:t></m:r></m:oMath>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<math::EG_OMathElements> items = r.object->GetEG_OMathElements();
    ASSERT_EQ(items.size(), 3u);
    auto element = [](math::EG_OMathElements* e) {
        return e->GetData__()->GetEG_OMathMathElements()[0]->GetData__();
    };
    EXPECT_TRUE(element(items[0])->CheckR());
    math::CT_F* fraction = element(items[1])->GetF();
    ASSERT_NE(fraction, nullptr);
    EXPECT_EQ(fraction->GetNum()->GetEG_OMathElements().size(), 1u);
    EXPECT_EQ(fraction->GetDen()->GetEG_OMathElements().size(), 1u);
    EXPECT_TRUE(element(items[2])->CheckR());
}

TEST(Math, RunTakesWordprocessingPropertiesAndText)
{
    auto r = Read<math::CT_R>(W("<m:r><w:rPr><w:i/></w:rPr><m:t>x</m:t><w:t>y</w:t></m:r>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetW_EG_RPr(), nullptr);
    EXPECT_TRUE(r.object->GetW_EG_RPr()->CheckRPr());
    XMLPtrArray<math::CT_RData__> content = r.object->GetData__();
    ASSERT_EQ(content.size(), 2u);
    EXPECT_TRUE(content[0]->CheckT());
    EXPECT_EQ(content[0]->GetT()->GetValue(), "x");
    EXPECT_FALSE(content[0]->CheckW_EG_RunInnerContent());
    EXPECT_TRUE(content[1]->CheckW_EG_RunInnerContent()); // the WordprocessingML "t"
    EXPECT_FALSE(content[1]->CheckT());
    EXPECT_EQ(content[1]->GetW_EG_RunInnerContent()->GetData__()->GetT()->GetValue(), "y");
}

TEST(Math, RunTakesDrawingMLRunProperties)
{
    auto r = Read<math::CT_R>(W("<m:r><a:rPr lang='en-US' b='1'/><m:t>x</m:t></m:r>"));
    ASSERT_TRUE(r.ok);
    ASSERT_TRUE(r.object->CheckA_rPr());
    EXPECT_EQ(r.object->GetA_rPr()->GetB(), "1");
}

TEST(Math, DelimiterKeepsEveryArgument)
{
    auto r = Read<math::CT_D>(W("<m:d><m:dPr><m:begChr m:val='['/></m:dPr><m:e/><m:e/><m:e/></m:d>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetE().size(), 3u);
    EXPECT_EQ(r.object->GetDPr()->GetBegChr()->GetVal(), "[");
}

TEST(Math, ValueClassesHaveTheirNativeTypes)
{
    math::CT_Integer2 integer2;
    integer2.SetVal(-2);
    EXPECT_EQ(integer2.GetVal(), -2);
    math::CT_Integer255 integer255;
    integer255.SetVal(255);
    math::CT_SpacingRule rule;
    rule.SetVal(4);
    math::CT_UnSignedInteger unsignedInteger;
    unsignedInteger.SetVal(7u);
    EXPECT_EQ(unsignedInteger.GetVal(), 7u);
    math::CT_OnOff onOff;
    onOff.SetVal(wxAny(wxString("on")));
    math::CT_TwipsMeasure twips;
    twips.SetVal(wxAny(static_cast<wxLongLong_t>(1440)));
    math::CT_Char character;
    character.SetVal("∑");
    EXPECT_EQ(character.GetVal(), "∑");
    math::CT_XAlign align;
    align.SetVal("center");
    auto text = Read<math::CT_Text>(W("<m:t xml:space='preserve'> x </m:t>"));
    ASSERT_TRUE(text.ok);
    EXPECT_EQ(text.object->GetValue(), " x ");
    EXPECT_FALSE(text.object->CheckValue());
}

TEST(Math, DocumentMathSettingsWithTheWrapChoice)
{
    auto r = Read<math::CT_MathPr>(W("<m:mathPr><m:mathFont m:val='Cambria Math'/><m:wrapIndent m:val='1440'/>"
                                     "<m:intLim m:val='subSup'/></m:mathPr>"));
    ASSERT_TRUE(r.ok);
    ASSERT_NE(r.object->GetData__(), nullptr);
    EXPECT_TRUE(r.object->GetData__()->CheckWrapIndent());
    EXPECT_EQ(r.object->GetIntLim()->GetVal(), "subSup");
}
