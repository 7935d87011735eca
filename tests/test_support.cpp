// Non-template parts of the test helpers.
#include "test_support.h"

namespace ooxml_test
{

void ExpectKept(bool same, bool present, const char* member)
{
    EXPECT_TRUE(same) << member << " changed by reading an empty element";
    EXPECT_FALSE(present) << member << " flagged present";
}

namespace
{
struct EmptyDocument
{
    EmptyDocument() : document(ParseXml("<e/>")), context(document.get()) {}
    std::unique_ptr<wxXmlDocument> document;
    XMLNSContext context;
};

EmptyDocument& Empty()
{
    static EmptyDocument empty;
    return empty;
}
} // namespace

wxXmlNode* EmptyElement()
{
    return Empty().document->GetRoot();
}

XMLNSContext* EmptyContext()
{
    return &Empty().context;
}

bool NodeIsEmpty(const wxXmlNode* node)
{
    return node->GetChildren() == nullptr && node->GetAttributes() == nullptr;
}

void CheckLifecycle(const LifecycleResult& result)
{
    EXPECT_TRUE(result.writeResult) << "WriteXML returned false";
    EXPECT_TRUE(result.nodeUntouched) << "WriteXML changed the node";
    EXPECT_TRUE(result.readResult) << "ReadXML of an empty element returned false";
}

void CheckGroup(const GroupResult& result)
{
    EXPECT_FALSE(result.hasUnknown) << "HasProperty accepted an unknown name";
    EXPECT_FALSE(result.setUnknownElement) << "SetProperty took an unknown element";
    EXPECT_FALSE(result.setUnknownAttribute) << "SetProperty took an unknown attribute";
    EXPECT_TRUE(result.getElement) << "GetProperty (element) returned false";
    EXPECT_TRUE(result.getAttribute) << "GetProperty (attribute) returned false";
}

} // namespace ooxml_test
