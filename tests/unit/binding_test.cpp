// Members stored apart from what the XSDs alone give; names logged by readers with nothing to compare them with.
#include <type_traits>

#include "test_support.h"
#include "ooxml/all.h"

using ooxml_test::Read;

TEST(BindingStorage, NumbersTextAndVariantsWhereRealDocumentsNeedThem)
{
    // A cell's text rotation is one unsigned number: text is refused.
    static_assert(std::is_same<decltype(ooxml::sml::CT_CellAlignment().GetTextRotation()), unsigned int>::value,
                  "textRotation is an unsigned number");
    auto rotation = Read<ooxml::sml::CT_CellAlignment>("<x:alignment textRotation='255'/>");
    EXPECT_TRUE(rotation.ok && rotation->GetTextRotation() == 255u);
    EXPECT_FALSE(Read<ooxml::sml::CT_CellAlignment>("<x:alignment textRotation='up'/>").ok);
    // Paragraph margins hold a number or a measure, like the default tab size.
    auto margins = Read<ooxml::dml::CT_TextParagraphProperties>("<a:pPr marL='1in' marR='-5' defTabSz='10'/>");
    EXPECT_TRUE(margins.ok && margins->GetMarL().As<wxString>() == "1in" && margins->GetMarR().As<long long>() == -5);
    // The VML attribute groups keep Office values as text: blanks, percentages and unit-bearing numbers do not fail
    // the shape.
    auto shape = Read<ooxml::vml::CT_Shape>(
        "<v:shape o:regroupid='' o:hrpct='50%' o:dgmlayout='2' o:dgmnodekind='x' o:dgmlayoutmru='1' o:spt='75.5'>"
        "<v:stroke miterlimit='8pt'/></v:shape>");
    ASSERT_TRUE(shape.ok);
    auto* office = shape->GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes();
    ASSERT_TRUE(office && office->CheckO_regroupid());
    EXPECT_EQ(office->GetO_hrpct() + office->GetO_dgmlayout() + office->GetO_dgmnodekind(), "50%2x");
    EXPECT_EQ(shape->GetAG_AllShapeAttributes()->GetAG_OfficeShapeAttributes()->GetO_spt(), "75.5");
    ASSERT_EQ(shape->GetData__().size(), 1u);
    auto* stroke = shape->GetData__()[0]->GetEG_ShapeElements()->GetData__()->GetStroke();
    EXPECT_TRUE(stroke && stroke->GetAG_StrokeAttributes()->GetMiterlimit() == "8pt");
}

TEST(BindingStorage, RepeatedSettingsReadAgainIntoOneObject)
{
    auto settings = Read<ooxml::wml::CT_Settings>(
        "<w:settings><w:attachedSchema w:val='a'/><w:attachedSchema w:val='b'/>"
        "<w:activeWritingStyle w:lang='en-US' w:vendorID='1' w:dllVersion='2' w:checkStyle='1' w:appName='x'/>"
        "<w:smartTagType w:name='one'/><w:smartTagType w:namespaceuri='urn:two'/></w:settings>");
    ASSERT_TRUE(settings.ok && settings->GetAttachedSchema() && settings->GetActiveWritingStyle());
    EXPECT_EQ(settings->GetAttachedSchema()->GetVal(), "b");
    EXPECT_EQ(settings->GetActiveWritingStyle()->GetLang(), "en-US");
    // The second smartTagType was read into the object of the first.
    ooxml::wml::CT_SmartTagType* tags = settings->GetSmartTagType();
    EXPECT_TRUE(tags && tags->GetName() + " " + tags->GetNamespaceuri() == "one urn:two");
}

TEST(BindingStorage, UnknownNamespacesAreLoggedByReadersWithNothingToCompare)
{
    ooxml_test::LogCapture log;
    // vt:empty has neither attributes nor elements; an alignment has no elements.
    EXPECT_TRUE(Read<ooxml::vt::CT_Empty>("<vt:empty xmlns:u='urn:unknown' u:a='1' plain='3'><u:child/><vt:i4/>"
                                          "</vt:empty>").ok);
    EXPECT_TRUE(Read<ooxml::sml::CT_CellAlignment>("<x:alignment xmlns:u='urn:unknown' u:b='1' r:id='2'>"
                                                   "<u:c/><r:d/></x:alignment>").ok);
    for (const char* name : {"u:a", "u:child", "u:b", "u:c"})
        EXPECT_EQ(log.Count(wxString("Invalid name: ") + name), 1u) << name;
    // Names of namespaces the map knows are not reported.
    for (const ooxml_test::LogCapture::Record& record : log.records)
        EXPECT_TRUE(record.message.StartsWith("Invalid name: u:")) << record.message;
}
