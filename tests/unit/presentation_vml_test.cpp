// Parts 7.1, 8.1 and 8.2: PresentationML with its 2010/2012 extensions, VML
// with its Office, Excel, Word and PowerPoint extensions.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/drawingml/dml.h"
#include "ooxml/presentationml/p14.h"
#include "ooxml/presentationml/p15.h"
#include "ooxml/presentationml/pml.h"
#include "ooxml/vml/vml.h"
#include "ooxml/vml/vml_o.h"
#include "ooxml/vml/vml_x.h"

using ooxml_test::LogCapture;
using ooxml_test::Read;
using ooxml_test::Xmlns;
namespace uri = ooxml_test::uri;
namespace pml = ooxml::pml;
namespace vml = ooxml::vml;
namespace office = ooxml::vml_o;

namespace
{
wxString P(const wxString& element)
{
    const int end = element.find_first_of(" />");
    return element.Left(end) + Xmlns("p", uri::pml) + Xmlns("a", uri::dml) + Xmlns("r", uri::rel) +
           Xmlns("p14", uri::p14) + Xmlns("p15", uri::p15) + element.Mid(end);
}
wxString V(const wxString& element)
{
    const int end = element.find_first_of(" />");
    return element.Left(end) + Xmlns("v", uri::vml) + Xmlns("o", uri::office) + Xmlns("x", uri::excel) +
           Xmlns("w10", uri::word) + element.Mid(end);
}
} // namespace

// -- Part 7.1: PresentationML ------------------------------------------------------------------

TEST(Presentation, ShapeTreeKeepsZOrderAndNesting)
{
    auto r = Read<pml::CT_GroupShape>(P("<p:spTree><p:nvGrpSpPr><p:cNvPr id='1' name=''/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>"
                                        "<p:grpSpPr/><p:sp/><p:pic/><p:sp/><p:grpSp><p:sp/><p:sp/></p:grpSp></p:spTree>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<pml::CT_GroupShapeData__> shapes = r.object->GetData__();
    ASSERT_EQ(shapes.size(), 4u);
    EXPECT_TRUE(shapes[0]->CheckSp());
    EXPECT_TRUE(shapes[1]->CheckPic());
    EXPECT_TRUE(shapes[2]->CheckSp());
    ASSERT_TRUE(shapes[3]->CheckGrpSp());
    EXPECT_EQ(shapes[3]->GetGrpSp()->GetData__().size(), 2u);
    EXPECT_EQ(r.object->GetNvGrpSpPr()->GetCNvPr()->GetId(), 1u);
}

TEST(Presentation, DefaultsOfThePresentation)
{
    pml::CT_Presentation p;
    EXPECT_EQ(p.GetServerZoom().As<wxString>(), "50%");
    EXPECT_FALSE(p.CheckServerZoom());
    EXPECT_EQ(p.GetFirstSlideNum(), 1);
    EXPECT_TRUE(p.GetShowSpecialPlsOnTitleSld());
    EXPECT_FALSE(p.GetRtl());
    EXPECT_FALSE(p.GetRemovePersonalInfoOnSave());
    EXPECT_FALSE(p.GetCompatMode());
    EXPECT_TRUE(p.GetStrictFirstAndLastChars());
    EXPECT_FALSE(p.GetEmbedTrueTypeFonts());
    EXPECT_FALSE(p.GetSaveSubsetFonts());
    EXPECT_TRUE(p.GetAutoCompressPictures());
    EXPECT_EQ(p.GetBookmarkIdSeed(), 1u);
    EXPECT_EQ(p.GetConformance(), "");
    p.SetFirstSlideNum(3);
    p.SetServerZoom(wxAny(wxString("100%")));
    EXPECT_TRUE(p.CheckFirstSlideNum());
}

TEST(Presentation, SlidesSizesAndLists)
{
    auto r = Read<pml::CT_Presentation>(P("<p:presentation saveSubsetFonts='1'><p:sldMasterIdLst><p:sldMasterId id='2147483648' "
                                          "r:id='rId1'/></p:sldMasterIdLst><p:sldIdLst><p:sldId id='256' r:id='rId2'/>"
                                          "<p:sldId id='257' r:id='rId3'/></p:sldIdLst><p:sldSz cx='9144000' cy='6858000' "
                                          "type='screen4x3'/><p:notesSz cx='6858000' cy='9144000'/></p:presentation>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<pml::CT_SlideIdListEntry> slides = r.object->GetSldIdLst()->GetSldId();
    ASSERT_EQ(slides.size(), 2u);
    EXPECT_EQ(slides[1]->GetId(), 257u);
    EXPECT_EQ(slides[1]->GetR_id(), "rId3");
    EXPECT_EQ(r.object->GetSldSz()->GetCx(), 9144000);
    EXPECT_EQ(r.object->GetSldSz()->GetType(), "screen4x3");
    EXPECT_EQ(r.object->GetNotesSz()->GetCy(), 9144000ll);
    EXPECT_TRUE(r.object->GetSaveSubsetFonts());
}

TEST(Presentation, ExtensionWithASectionListKeepsItsUriOnly)
{
    auto r = Read<pml::CT_ExtensionList>(P("<p:extLst><p:ext uri='{521415D9-36F7-43E2-AB2F-B90AF26B5E84}'>"
                                           "<p14:sectionLst><p14:section name='a' id='{1}'/></p14:sectionLst></p:ext>"
                                           "<p:ext uri='{L}'><p14:laserClr><a:srgbClr val='FF0000'/></p14:laserClr></p:ext>"
                                           "</p:extLst>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<pml::CT_Extension> items = r.object->GetEG_ExtensionList()->GetExt();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0]->GetUri(), "{521415D9-36F7-43E2-AB2F-B90AF26B5E84}");
    EXPECT_FALSE(items[0]->CheckP14_media() || items[0]->CheckP14_laserTraceLst() || items[0]->CheckP14_laserClr());
    EXPECT_TRUE(items[1]->CheckP14_laserClr());
}

TEST(Presentation, VerifierIsComparedAsChangeVerifier)
{
    auto accepted = Read<pml::CT_Presentation>(P("<p:presentation><p:ChangeVerifier cryptProviderType='rsaAES' "
                                                 "spinCount='100000'/></p:presentation>"));
    ASSERT_TRUE(accepted.ok);
    EXPECT_TRUE(accepted.object->CheckModifyVerifier());
    EXPECT_EQ(accepted.object->GetModifyVerifier()->GetSpinCount(), 100000u);
    auto standard = Read<pml::CT_Presentation>(P("<p:presentation><p:modifyVerifier spinCount='1'/></p:presentation>"));
    ASSERT_TRUE(standard.ok);
    EXPECT_FALSE(standard.object->CheckModifyVerifier());
    EXPECT_EQ(standard.object->GetModifyVerifier(), nullptr);
}

TEST(Presentation, TransitionsOfThe2010SchemaShareTheHolder)
{
    auto r = Read<pml::CT_SlideTransition>(P("<p:transition spd='slow' p14:dur='1200'><p14:prism isContent='1'/>"
                                             "<p15:prstTrans prst='curtains'/></p:transition>"));
    ASSERT_TRUE(r.ok);
    pml::CT_SlideTransitionData__* choice = r.object->GetData__();
    ASSERT_NE(choice, nullptr);
    ASSERT_TRUE(choice->CheckP14_prism());
    EXPECT_TRUE(choice->GetP14_prism()->GetIsContent());
    EXPECT_EQ(r.object->GetP14_dur(), "1200");
    EXPECT_EQ(r.object->GetSpd(), "slow");
    ASSERT_TRUE(r.object->CheckP15_prstTrans());
    EXPECT_EQ(r.object->GetP15_prstTrans()->GetPrst(), "curtains");
    EXPECT_TRUE(pml::CT_SlideTransition().GetAdvClick());
}

TEST(Presentation, TimingTreesNest)
{
    auto r = Read<pml::CT_SlideTiming>(P("<p:timing><p:tnLst><p:par><p:cTn id='1' dur='indefinite' nodeType='tmRoot'>"
                                         "<p:childTnLst><p:seq><p:cTn id='2'/></p:seq><p:set/></p:childTnLst></p:cTn></p:par>"
                                         "</p:tnLst></p:timing>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<pml::CT_TimeNodeListData__> roots = r.object->GetTnLst()->GetData__();
    ASSERT_EQ(roots.size(), 1u);
    pml::CT_TLCommonTimeNodeData* node = roots[0]->GetPar()->GetCTn();
    EXPECT_EQ(node->GetId(), 1u);
    EXPECT_EQ(node->GetDur().As<wxString>(), "indefinite");
    EXPECT_EQ(node->GetNodeType(), "tmRoot");
    XMLPtrArray<pml::CT_TimeNodeListData__> children = node->GetChildTnLst()->GetData__();
    ASSERT_EQ(children.size(), 2u);
    EXPECT_TRUE(children[0]->CheckSeq());
    EXPECT_TRUE(children[1]->CheckSet());
}

TEST(Presentation, SlideWithPlaceholdersAndText)
{
    auto r = Read<pml::CT_Slide>(P("<p:sld show='0'><p:cSld name='s'><p:spTree><p:nvGrpSpPr><p:cNvPr id='1' name=''/>"
                                   "<p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/><p:sp><p:nvSpPr><p:cNvPr id='2' "
                                   "name='Title 1'/><p:cNvSpPr/><p:nvPr><p:ph type='title'/></p:nvPr></p:nvSpPr><p:spPr/>"
                                   "<p:txBody><a:bodyPr/><a:p><a:r><a:t>Hello</a:t></a:r></a:p></p:txBody></p:sp></p:spTree>"
                                   "</p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>"));
    ASSERT_TRUE(r.ok);
    EXPECT_FALSE(r.object->GetShow());
    pml::CT_Shape* title = r.object->GetCSld()->GetSpTree()->GetData__()[0]->GetSp();
    EXPECT_EQ(title->GetNvSpPr()->GetNvPr()->GetPh()->GetType(), "title");
    EXPECT_EQ(title->GetTxBody()->GetP()[0]->GetEG_TextRun()[0]->GetData__()->GetR()->GetT(), "Hello");
    EXPECT_TRUE(r.object->GetEG_ChildSlide()->CheckClrMapOvr());
}

// -- Part 8.1: VML ---------------------------------------------------------------------------

TEST(Vml, OfficeAttributeIsFoundWhateverItsPrefix)
{
    auto r = Read<vml::CT_Shape>(wxString("<v:shape xmlns:v='") + uri::vml + "' xmlns:q='" + uri::office +
                                 "' q:spid='_x0000_s1025' spid='plain'/>");
    ASSERT_TRUE(r.ok);
    vml::AG_AllCoreAttributes* core = r.object->GetAG_AllCoreAttributes();
    ASSERT_NE(core, nullptr);
    vml::AG_OfficeCoreAttributes* office = core->GetAG_OfficeCoreAttributes();
    ASSERT_NE(office, nullptr);
    EXPECT_EQ(office->GetO_spid(), "_x0000_s1025"); // the unprefixed "spid" was skipped
}

TEST(Vml, UnprefixedSpidIsNotAnOfficeAttribute)
{
    auto r = Read<vml::CT_Shape>(V("<v:shape spid='x'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetAG_AllCoreAttributes(), nullptr);
}

TEST(Vml, StyleAndFillColourCreateTheNestedAttributeGroups)
{
    auto r = Read<vml::CT_Shape>(V("<v:shape style='position:absolute' fillcolor='red' type='#_x0000_t202'/>"));
    ASSERT_TRUE(r.ok);
    vml::AG_CoreAttributes* core = r.object->GetAG_AllCoreAttributes()->GetAG_CoreAttributes();
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(core->GetAG_Style()->GetStyle(), "position:absolute");
    EXPECT_EQ(r.object->GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes(), nullptr);
    vml::AG_ShapeAttributes* shape = r.object->GetAG_AllShapeAttributes()->GetAG_ShapeAttributes();
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->GetAG_Fill()->GetFillcolor(), "red");
    EXPECT_EQ(r.object->GetAG_Type()->GetType(), "#_x0000_t202");
}

TEST(Vml, ShapeChildrenKeepTheirOrder)
{
    auto r = Read<vml::CT_Shape>(V("<v:shape><v:fill color2='blue'/><o:lock v:ext='edit' rotation='t'/>"
                                   "<x:ClientData ObjectType='Note'><x:Row>2</x:Row></x:ClientData></v:shape>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<vml::CT_ShapeData__> children = r.object->GetData__();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0]->GetEG_ShapeElements()->GetData__()->GetFill()->GetColor2(), "blue");
    office::CT_Lock* lock = children[1]->GetEG_ShapeElements()->GetData__()->GetO_lock();
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(lock->GetRotation(), "t");
    EXPECT_EQ(lock->GetV_AG_Ext()->GetExt(), "edit");
    ooxml::vml_x::CT_ClientData* client = children[2]->GetEG_ShapeElements()->GetData__()->GetX_ClientData();
    EXPECT_EQ(client->GetObjectType(), "Note");
}

TEST(Vml, AttributeGroupRefusesElements)
{
    auto document = ooxml_test::ParseXml(V("<v:shape><v:fill/></v:shape>"));
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    vml::AG_CoreAttributes group;
    EXPECT_FALSE(group.SetProperty("v:fill", document->GetRoot()->GetChildren(), &context));
    EXPECT_TRUE(vml::AG_CoreAttributes::HasProperty("style", &context));
    EXPECT_FALSE(vml::AG_CoreAttributes::HasProperty("fillcolor", &context));
}

// -- Part 8.2: Office, Excel, Word and PowerPoint VML extensions -----------------------------------

TEST(VmlExtensions, OfficeAttributesAreBareInTheOfficeMap)
{
    auto r = Read<office::CT_ShapeDefaults>(V("<o:shapedefaults v:ext='edit' o:spidmax='2049'><v:fill color='white'/>"
                                              "<o:fill type='frame'/></o:shapedefaults>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetSpidmax(), 2049);
    EXPECT_TRUE(r.object->CheckSpidmax());
    EXPECT_EQ(r.object->GetV_AG_Ext()->GetExt(), "edit");
    ASSERT_TRUE(r.object->CheckV_fill()); // the VML "fill" child, not the Office one
    EXPECT_EQ(r.object->GetV_fill()->GetColor(), "white");
}

TEST(VmlExtensions, OfficeFillIsNotTheVmlFill)
{
    auto r = Read<office::CT_ShapeDefaults>(V("<o:shapedefaults><o:fill type='frame'/></o:shapedefaults>"));
    ASSERT_TRUE(r.ok);
    EXPECT_FALSE(r.object->CheckV_fill());
}

TEST(VmlExtensions, ClientDataKeepsEveryChildInOrder)
{
    auto r = Read<ooxml::vml_x::CT_ClientData>(V("<x:ClientData ObjectType='Note'><x:Anchor>1, 15, 0, 2, 3, 15, 3, 16</x:Anchor>"
                                                 "<x:Row>1</x:Row><x:Column>0</x:Column><x:Row>4</x:Row></x:ClientData>"));
    ASSERT_TRUE(r.ok);
    XMLPtrArray<ooxml::vml_x::CT_ClientDataData__> items = r.object->GetData__();
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0]->GetAnchor(), "1, 15, 0, 2, 3, 15, 3, 16");
    EXPECT_TRUE(items[1]->CheckRow());
    EXPECT_EQ(items[1]->GetRow(), 1);
    EXPECT_TRUE(items[2]->CheckColumn());
    EXPECT_EQ(items[3]->GetRow(), 4);
}
