// Part 3.1: content types and relationships.
#include "test_support.h"

#include "ooxml/aliases.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/relationships.h"

using ooxml_test::Read;
namespace ct = ooxml::content_types;
namespace rel = ooxml::relationships;

namespace
{
const char* const kTypesNs = "http://schemas.openxmlformats.org/package/2006/content-types";
const char* const kRelsNs = "http://schemas.openxmlformats.org/package/2006/relationships";

wxString Types(const wxString& children)
{
    return wxString("<Types xmlns='") + kTypesNs + "'>" + children + "</Types>";
}

wxString Relationships(const wxString& children)
{
    return wxString("<Relationships xmlns='") + kRelsNs + "'>" + children + "</Relationships>";
}
} // namespace

TEST(ContentTypes, InterleavedDefaultsAndOverridesKeepDocumentOrder)
{
    auto r = Read<ct::CT_Types>(Types("<Default Extension='xml' ContentType='application/xml'/>"
                                      "<Override PartName='/a.xml' ContentType='x/y'/>"
                                      "<Default Extension='rels' ContentType='r/s'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckData__());
    XMLPtrArray<ct::CT_TypesData__> entries = r.object->GetData__();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_TRUE(entries[0]->CheckDefault());
    EXPECT_FALSE(entries[0]->CheckOverride());
    EXPECT_EQ(entries[0]->GetOverride(), nullptr);
    EXPECT_EQ(entries[0]->GetDefault()->GetExtension(), "xml");
    EXPECT_EQ(entries[0]->GetDefault()->GetContentType(), "application/xml");
    EXPECT_TRUE(entries[1]->CheckOverride());
    EXPECT_FALSE(entries[1]->CheckDefault());
    EXPECT_EQ(entries[1]->GetOverride()->GetPartName(), "/a.xml");
    EXPECT_EQ(entries[1]->GetOverride()->GetContentType(), "x/y");
    EXPECT_TRUE(entries[2]->CheckDefault());
    EXPECT_FALSE(entries[2]->CheckOverride());
    EXPECT_EQ(entries[2]->GetDefault()->GetExtension(), "rels");
}

TEST(ContentTypes, UnknownChildIsSkipped)
{
    auto r = Read<ct::CT_Types>(Types("<Unknown a='1'><Default Extension='x'/></Unknown>"
                                      "<Default Extension='png' ContentType='image/png'/>"));
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.object->GetData__().size(), 1u);
    EXPECT_EQ(r.object->GetData__()[0]->GetDefault()->GetExtension(), "png");
}

TEST(ContentTypes, MemberOrderAndBits)
{
    // CT_Default: Extension bit 0, ContentType bit 1; CT_Override: ContentType
    // bit 0, PartName bit 1 (schema order).
    ct::CT_Default d;
    d.SetContentType("t");
    EXPECT_TRUE(d.CheckContentType());
    EXPECT_FALSE(d.CheckExtension());
    ct::CT_Override o;
    o.SetPartName("/p");
    EXPECT_TRUE(o.CheckPartName());
    EXPECT_FALSE(o.CheckContentType());
    ct::CT_TypesData__ holder;
    EXPECT_FALSE(holder.CheckDefault());
    EXPECT_FALSE(holder.CheckOverride());
    holder.SetOverride(new ct::CT_Override);
    EXPECT_TRUE(holder.CheckOverride());
    EXPECT_FALSE(holder.CheckDefault());
}

TEST(ContentTypes, HolderAcceptsOnlyDefaultAndOverride)
{
    auto document = ooxml_test::ParseXml(Types("<Default/><Override/><Other/>"));
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    EXPECT_TRUE(ct::CT_TypesData__::HasProperty("Default", &context));
    EXPECT_TRUE(ct::CT_TypesData__::HasProperty("Override", &context));
    EXPECT_FALSE(ct::CT_TypesData__::HasProperty("Other", &context));
    ct::CT_TypesData__ holder;
    EXPECT_FALSE(holder.SetProperty("Default", wxString("value"), &context)); // takes no attribute
}

TEST(ContentTypes, SecondDefaultInOneHolderReadsOverTheFirst)
{
    auto document = ooxml_test::ParseXml(Types("<Default Extension='a' ContentType='x'/><Default Extension='b'/>"));
    ASSERT_TRUE(document);
    XMLNSContext context(document.get());
    wxXmlNode* first = document->GetRoot()->GetChildren();
    ct::CT_TypesData__ holder;
    ASSERT_TRUE(holder.SetProperty(first->GetName(), first, &context));
    ct::CT_Default* object = holder.GetDefault();
    ASSERT_TRUE(holder.SetProperty(first->GetNext()->GetName(), first->GetNext(), &context));
    EXPECT_EQ(holder.GetDefault(), object);
    EXPECT_EQ(object->GetExtension(), "b");
    EXPECT_EQ(object->GetContentType(), "x");
}

TEST(Relationships, ReadsEveryAttributeAsText)
{
    auto r = Read<rel::CT_Relationships>(Relationships(
        "<Relationship Id='rId1' Type='http://t/officeDocument' Target='word/document.xml'/>"
        "<Relationship Id='rId2' Type='http://t/hyperlink' Target='http://example.com/' TargetMode='External'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.object->CheckRelationship());
    XMLPtrArray<rel::CT_Relationship> items = r.object->GetRelationship();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0]->GetId(), "rId1");
    EXPECT_EQ(items[0]->GetType(), "http://t/officeDocument");
    EXPECT_EQ(items[0]->GetTarget(), "word/document.xml");
    EXPECT_EQ(items[1]->GetTargetMode(), "External");
    EXPECT_TRUE(items[1]->CheckTargetMode());
}

TEST(Relationships, MissingTargetModeIsEmptyAndAbsent)
{
    auto r = Read<rel::CT_Relationships>(Relationships("<Relationship Id='rId1' Type='t' Target='x'/>"));
    ASSERT_TRUE(r.ok);
    rel::CT_Relationship* item = r.object->GetRelationship()[0];
    EXPECT_FALSE(item->CheckTargetMode());
    EXPECT_EQ(item->GetTargetMode(), "");
}

TEST(Relationships, TextContentIsReadButNotFlagged)
{
    auto r = Read<rel::CT_Relationships>(Relationships("<Relationship Id='rId1'>some text</Relationship>"));
    ASSERT_TRUE(r.ok);
    rel::CT_Relationship* item = r.object->GetRelationship()[0];
    EXPECT_EQ(item->GetValue(), "some text");
    EXPECT_FALSE(item->CheckValue());
    item->SetValue("other");
    EXPECT_TRUE(item->CheckValue());
}

TEST(Relationships, TextAfterACommentIsNotRead)
{
    auto r = Read<rel::CT_Relationships>(Relationships("<Relationship Id='rId1'><!--c-->text</Relationship>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetRelationship()[0]->GetValue(), "");
}

TEST(Relationships, UnknownChildIsSkipped)
{
    auto r = Read<rel::CT_Relationships>(Relationships("<Other Id='x'/><Relationship Id='rId7'/>"));
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.object->GetRelationship().size(), 1u);
    EXPECT_EQ(r.object->GetRelationship()[0]->GetId(), "rId7");
}

TEST(Relationships, AttributeOfAnotherNameIsIgnored)
{
    auto r = Read<rel::CT_Relationships>(
        Relationships("<Relationship id='lower' Identifier='x' Id='rId1' target='y'/>"));
    ASSERT_TRUE(r.ok);
    rel::CT_Relationship* item = r.object->GetRelationship()[0];
    EXPECT_EQ(item->GetId(), "rId1");
    EXPECT_FALSE(item->CheckTarget());
    EXPECT_EQ(item->GetTarget(), "");
}

TEST(Relationships, MemberOrderAndBits)
{
    // Value bit 0, TargetMode 1, Target 2, Type 3, Id 4.
    rel::CT_Relationship item;
    item.SetId("a");
    EXPECT_TRUE(item.CheckId());
    EXPECT_FALSE(item.CheckValue() || item.CheckTargetMode() || item.CheckTarget() || item.CheckType());
    rel::CT_Relationship fresh;
    EXPECT_EQ(fresh.GetTargetMode(), ""); // no default: not "Internal"
}

TEST(Relationships, NoValueIsValidated)
{
    auto r = Read<rel::CT_Relationships>(Relationships(
        "<Relationship Id='dup' Target='' TargetMode='Sideways'/><Relationship Id='dup' Target='/abs'/>"));
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.object->GetRelationship()[0]->GetTargetMode(), "Sideways");
    EXPECT_TRUE(r.object->GetRelationship()[0]->CheckTarget());
    EXPECT_EQ(r.object->GetRelationship()[1]->GetId(), "dup");
}
