// Members whose storage the binding sets apart from what the XSDs alone would
// give, and the logging of names that a reader has nothing to compare with.
#include "test_support.h"

#include <type_traits>

#include "ooxml/aliases.h"
#include "ooxml/drawingml/dml.h"
#include "ooxml/package/vt.h"
#include "ooxml/spreadsheetml/sml.h"
#include "ooxml/vml/vml.h"
#include "ooxml/wordprocessingml/wml.h"

namespace
{

using ooxml_test::Read;

TEST(BindingStorage, NumbersTextAndVariantsWhereRealDocumentsNeedThem)
{
    // A cell's text rotation is one unsigned number: text is refused.
    static_assert(std::is_same<decltype(ooxml::sml::CT_CellAlignment().GetTextRotation()), unsigned int>::value,
                  "textRotation is an unsigned number");
    auto rotation = Read<ooxml::sml::CT_CellAlignment>("<x:alignment textRotation='255'/>");
    ASSERT_TRUE(rotation.ok);
    EXPECT_EQ(rotation.object->GetTextRotation(), 255u);
    EXPECT_FALSE(Read<ooxml::sml::CT_CellAlignment>("<x:alignment textRotation='up'/>").ok);

    // Paragraph margins hold a number or a measure, like the default tab size.
    auto margins = Read<ooxml::dml::CT_TextParagraphProperties>("<a:pPr marL='1in' marR='-5' defTabSz='10'/>");
    ASSERT_TRUE(margins.ok);
    EXPECT_EQ(margins.object->GetMarL().As<wxString>(), "1in");
    EXPECT_EQ(margins.object->GetMarR().As<long long>(), -5);

    // The VML attribute groups keep Office values as text: blanks, percentages
    // and unit-bearing numbers do not fail the shape.
    auto shape = Read<ooxml::vml::CT_Shape>(
        "<v:shape o:regroupid='' o:hrpct='50%' o:dgmlayout='2' o:dgmnodekind='x' o:dgmlayoutmru='1' o:spt='75.5'>"
        "<v:stroke miterlimit='8pt'/></v:shape>");
    ASSERT_TRUE(shape.ok);
    auto* office = shape.object->GetAG_AllCoreAttributes()->GetAG_OfficeCoreAttributes();
    ASSERT_NE(office, nullptr);
    EXPECT_TRUE(office->CheckO_regroupid());
    EXPECT_EQ(office->GetO_hrpct(), "50%");
    EXPECT_EQ(office->GetO_dgmlayout(), "2");
    EXPECT_EQ(office->GetO_dgmnodekind(), "x");
    EXPECT_EQ(shape.object->GetAG_AllShapeAttributes()->GetAG_OfficeShapeAttributes()->GetO_spt(), "75.5");
    ASSERT_EQ(shape.object->GetData__().size(), 1u);
    auto* stroke = shape.object->GetData__()[0]->GetEG_ShapeElements()->GetData__()->GetStroke();
    ASSERT_NE(stroke, nullptr);
    EXPECT_EQ(stroke->GetAG_StrokeAttributes()->GetMiterlimit(), "8pt");
}

TEST(BindingStorage, RepeatedSettingsReadAgainIntoOneObject)
{
    auto settings = Read<ooxml::wml::CT_Settings>(
        "<w:settings><w:attachedSchema w:val='a'/><w:attachedSchema w:val='b'/>"
        "<w:activeWritingStyle w:lang='en-US' w:vendorID='1' w:dllVersion='2' w:checkStyle='1' w:appName='x'/>"
        "<w:smartTagType w:name='one'/><w:smartTagType w:namespaceuri='urn:two'/></w:settings>");
    ASSERT_TRUE(settings.ok);
    ooxml::wml::CT_String* schema = settings.object->GetAttachedSchema();
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->GetVal(), "b");
    ASSERT_NE(settings.object->GetActiveWritingStyle(), nullptr);
    EXPECT_EQ(settings.object->GetActiveWritingStyle()->GetLang(), "en-US");
    // The second smartTagType was read into the object of the first.
    ooxml::wml::CT_SmartTagType* tags = settings.object->GetSmartTagType();
    ASSERT_NE(tags, nullptr);
    EXPECT_EQ(tags->GetName(), "one");
    EXPECT_EQ(tags->GetNamespaceuri(), "urn:two");
}

TEST(BindingStorage, UnknownNamespacesAreLoggedByReadersWithNothingToCompare)
{
    ooxml_test::LogCapture log;
    // vt:empty has neither attributes nor elements; an alignment has no elements.
    EXPECT_TRUE(Read<ooxml::vt::CT_Empty>("<vt:empty xmlns:u='urn:unknown' u:a='1' plain='3'><u:child/><vt:i4/>"
                                          "</vt:empty>").ok);
    EXPECT_TRUE(Read<ooxml::sml::CT_CellAlignment>("<x:alignment xmlns:u='urn:unknown' u:b='1' r:id='2'>"
                                                   "<u:c/><r:d/></x:alignment>").ok);
    EXPECT_EQ(log.Count("Invalid name: u:a"), 1u);
    EXPECT_EQ(log.Count("Invalid name: u:child"), 1u);
    EXPECT_EQ(log.Count("Invalid name: u:b"), 1u);
    EXPECT_EQ(log.Count("Invalid name: u:c"), 1u);
    // Names of namespaces the map knows are not reported.
    for (const ooxml_test::LogCapture::Record& record : log.records)
        EXPECT_TRUE(record.message.StartsWith("Invalid name: u:")) << record.message;
}

} // namespace
