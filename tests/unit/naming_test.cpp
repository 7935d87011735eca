// The naming rules of Parts 2.1, 5.1, 6.1, 6.3, 6.5 and 7.1, and the native
// types of the typed accessors the Parts give.  Most checks are compile-time:
// the test does not build if a name or a type is wrong.
#include <type_traits>

#include "test_support.h"

#include "ooxml/all.h"

namespace sml = ooxml::sml;
namespace wml = ooxml::wml;
namespace dml = ooxml::dml;
namespace pml = ooxml::pml;
namespace chart = ooxml::chart;

// Member function pointer of a setter with one parameter of type T.
template <class C, class T>
using Setter = void (C::*)(T);

// Native parameter types of setters named in the Parts.
static_assert(std::is_same<decltype(&sml::CT_SheetView::SetZoomScale), Setter<sml::CT_SheetView, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_SheetView::SetShowGridLines), Setter<sml::CT_SheetView, bool>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Pane::SetXSplit), Setter<sml::CT_Pane, double>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Row::SetOutlineLevel), Setter<sml::CT_Row, unsigned char>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Row::GetR), unsigned int (sml::CT_Row::*)() const>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Cell::GetR), wxString (sml::CT_Cell::*)() const>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Xf::SetFontId), Setter<sml::CT_Xf, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_CellAlignment::SetWrapText), Setter<sml::CT_CellAlignment, bool>>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Color::SetTint), Setter<sml::CT_Color, double>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_OnOff::SetVal), Setter<wml::CT_OnOff, wxAny>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_Text::SetValue), Setter<wml::CT_Text, wxString>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_P::SetRsidP), Setter<wml::CT_P, wxString>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_Underline::GetColor), wxAny (wml::CT_Underline::*)() const>::value, "");
static_assert(std::is_same<decltype(&wml::EG_RPrBaseData__::SetRStyle), Setter<wml::EG_RPrBaseData__, wml::CT_String*>>::value, "");
static_assert(std::is_same<decltype(&wml::EG_RPrBaseData__::SetRFonts), Setter<wml::EG_RPrBaseData__, wml::CT_Fonts*>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_R::SetEG_RPr), Setter<wml::CT_R, wml::EG_RPr*>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_Style::SetQFormat), Setter<wml::CT_Style, wml::CT_OnOff*>>::value, "");
static_assert(std::is_same<decltype(&wml::CT_LsdException::SetQFormat), Setter<wml::CT_LsdException, wxAny>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_Boolean::SetVal), Setter<chart::CT_Boolean, bool>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_Double::SetVal), Setter<chart::CT_Double, double>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_UnsignedInt::SetVal), Setter<chart::CT_UnsignedInt, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_Skip::SetVal), Setter<chart::CT_Skip, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_MarkerSize::SetVal), Setter<chart::CT_MarkerSize, unsigned char>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_GapAmount::SetVal), Setter<chart::CT_GapAmount, wxAny>>::value, "");
static_assert(std::is_same<decltype(&chart::CT_Orientation::SetVal), Setter<chart::CT_Orientation, wxString>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_Transform2D::SetRot), Setter<dml::CT_Transform2D, int>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_Transform2D::SetFlipH), Setter<dml::CT_Transform2D, bool>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_PositiveSize2D::SetCx), Setter<dml::CT_PositiveSize2D, long long>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_Point2D::SetX), Setter<dml::CT_Point2D, wxAny>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_PresetGeometry2D::SetPrst), Setter<dml::CT_PresetGeometry2D, wxString>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_BlipFillProperties::SetDpi), Setter<dml::CT_BlipFillProperties, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_TextFont::SetPitchFamily), Setter<dml::CT_TextFont, char>>::value, "");
static_assert(std::is_same<decltype(&dml::CT_TextCharacterProperties::SetB), Setter<dml::CT_TextCharacterProperties, wxString>>::value, "");
static_assert(std::is_same<decltype(&pml::CT_Presentation::SetFirstSlideNum), Setter<pml::CT_Presentation, int>>::value, "");
static_assert(std::is_same<decltype(&pml::CT_Presentation::SetServerZoom), Setter<pml::CT_Presentation, wxAny>>::value, "");
static_assert(std::is_same<decltype(&pml::CT_Slide::SetShow), Setter<pml::CT_Slide, bool>>::value, "");
static_assert(std::is_same<decltype(&pml::CT_SlideIdListEntry::SetId), Setter<pml::CT_SlideIdListEntry, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&pml::CT_SlideSize::SetCx), Setter<pml::CT_SlideSize, int>>::value, "");
static_assert(std::is_same<decltype(&ooxml::custom_properties::CT_PropertyData__::SetVt_i4),
                           Setter<ooxml::custom_properties::CT_PropertyData__, int>>::value, "");
static_assert(std::is_same<decltype(&ooxml::custom_properties::CT_PropertyData__::GetVt_bool),
                           bool (ooxml::custom_properties::CT_PropertyData__::*)() const>::value, "");
static_assert(std::is_same<decltype(&ooxml::custom_properties::CT_Property::SetPid),
                           Setter<ooxml::custom_properties::CT_Property, int>>::value, "");
static_assert(std::is_same<decltype(&ooxml::vt::CT_Vector::SetSize), Setter<ooxml::vt::CT_Vector, unsigned int>>::value, "");
static_assert(std::is_same<decltype(&ooxml::extended_properties::CT_Properties::GetPages),
                           int (ooxml::extended_properties::CT_Properties::*)() const>::value, "");
// Arrays of objects and of values.
static_assert(std::is_same<decltype(&sml::CT_Row::GetC), XMLPtrArray<sml::CT_Cell> (sml::CT_Row::*)() const>::value, "");
static_assert(std::is_same<decltype(&sml::CT_Row::GetSpans), std::vector<wxString> (sml::CT_Row::*)() const>::value, "");
static_assert(std::is_same<decltype(&ooxml::bibliography::CT_PersonType::GetLast),
                           std::vector<wxString> (ooxml::bibliography::CT_PersonType::*)() const>::value, "");
// Derived classes and the wxAny base.
static_assert(std::is_base_of<wml::CT_PPrBase, wml::CT_PPr>::value, "");
static_assert(std::is_base_of<wml::CT_DocumentBase, wml::CT_Document>::value, "");
static_assert(std::is_base_of<wml::CT_Rel, wml::CT_HdrFtrRef>::value, "");
static_assert(std::is_base_of<wxAny, ooxml::dc::SimpleLiteral>::value, "");
static_assert(std::has_virtual_destructor<sml::CT_Worksheet>::value, "");
static_assert(!std::is_polymorphic<XMLNSContext>::value, "XMLNSContext has no virtual operation");

TEST(Naming, MembersOfOtherSchemasKeepTheirCanonicalPrefix)
{
    ooxml::wp::CT_Inline inlined;
    EXPECT_EQ(inlined.GetA_graphic(), nullptr);
    ooxml::math::CT_R mathRun;
    EXPECT_EQ(mathRun.GetW_EG_RPr(), nullptr);
    EXPECT_EQ(mathRun.GetA_rPr(), nullptr);
    sml::CT_Sheet sheet;
    EXPECT_EQ(sheet.GetR_id(), "");
    wml::CT_Settings settings;
    EXPECT_EQ(settings.GetM_mathPr(), nullptr);
    EXPECT_EQ(settings.GetSl_schemaLibrary(), nullptr);
    dml::CT_GraphicalObjectData data;
    EXPECT_EQ(data.GetDgm_relIds(), nullptr);
    EXPECT_EQ(data.GetAm3d_model3d(), nullptr);
    ooxml::dgm::CT_TextProps textProps;
    EXPECT_EQ(textProps.GetA_EG_Text3D(), nullptr);
    ooxml::wp::CT_WordprocessingGroupData__ groupItem;
    EXPECT_EQ(groupItem.GetDpct_pic(), nullptr);
    wml::CT_Text text;
    EXPECT_FALSE(text.CheckXml_space());
    pml::CT_ApplicationNonVisualDrawingProps application;
    EXPECT_EQ(application.GetA_EG_Media(), nullptr);
    ooxml::p14::CT_Media media;
    EXPECT_EQ(media.GetA_AG_Blob(), nullptr);
}

TEST(Naming, SecondMemberOfOneNameTakesASuffix)
{
    sml::CT_PivotCacheDefinition definition;
    EXPECT_EQ(definition.GetTupleCache(), nullptr);
    EXPECT_FALSE(definition.GetTupleCache_1());
    ooxml::wp::CT_Anchor anchor;
    EXPECT_EQ(anchor.GetSimplePos(), nullptr);
    EXPECT_FALSE(anchor.GetSimplePos_1());
    ooxml::chartex::CT_StringDimensionData__ dimension;
    EXPECT_TRUE(dimension.GetLvl().empty());
    EXPECT_TRUE(dimension.GetLvl_1().empty());
    ooxml::core_properties::CT_CoreProperties core;
    EXPECT_EQ(core.GetDc_any(), nullptr);
    EXPECT_EQ(core.GetDc_any_5(), nullptr);
    EXPECT_EQ(core.GetDcterms_any_1(), nullptr);
}

TEST(Naming, HolderClassesAndMembers)
{
    chart::CT_PlotArea plotArea;
    EXPECT_TRUE(plotArea.GetData__().empty());
    EXPECT_TRUE(plotArea.GetData__1().empty());
    chart::CT_PlotAreaData__1 axes;
    EXPECT_FALSE(axes.CheckValAx());
    wml::CT_FFDataData__Data__ nested;
    EXPECT_FALSE(nested.CheckCheckBox());
    wml::CT_FFDataData__ outer;
    EXPECT_EQ(outer.GetData__(), nullptr);
    ooxml::wp::CT_WordprocessingShape shape;
    EXPECT_EQ(shape.GetData__(), nullptr);
    EXPECT_EQ(shape.GetData__1(), nullptr);
    chart::Group_DLbl group;
    EXPECT_EQ(group.GetLayout(), nullptr);
    ooxml::dc::elementsGroupData__ dcHolder;
    EXPECT_EQ(dcHolder.GetAny(), nullptr);
}

TEST(Naming, CustomPropertiesAccessorsNamedLikeTheChoiceOperations)
{
    ooxml::custom_properties::CT_Properties properties;
    XMLPtrArray<ooxml::custom_properties::CT_Property> items{new ooxml::custom_properties::CT_Property};
    properties.SetProperty(items);
    EXPECT_TRUE(properties.CheckProperty());
    EXPECT_EQ(properties.GetProperty().size(), 1u);
}

TEST(Naming, VmlAttributeNamesFromOtherSchemas)
{
    ooxml::vml::AG_OfficeCoreAttributes office;
    office.SetO_spid("_x0000_s1");
    EXPECT_TRUE(office.CheckO_spid());
    ooxml::vml::CT_Shape shape;
    EXPECT_EQ(shape.GetO_gfxdata(), "");
    ooxml::vml::CT_ImageData image;
    EXPECT_EQ(image.GetR_id(), "");
    EXPECT_EQ(image.GetO_relid(), "");
}
