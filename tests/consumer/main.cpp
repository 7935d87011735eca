// Reads a content types part with the installed library: prints the number
// of entries and the first override's part name.
#include <cstdio>

#include <ooxml/all.h>
#include <wx/init.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>

int main()
{
    wxInitializer initializer;
    wxStringInputStream input(
        "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
        "<Default Extension='xml' ContentType='application/xml'/>"
        "<Override PartName='/word/document.xml' ContentType='application/vnd.test'/></Types>");
    wxXmlDocument document;
    if (!document.Load(input))
        return 1;
    XMLNSContext context(&document);
    ooxml::content_types::CT_Types types;
    if (!types.ReadXML(document.GetRoot(), &context) || types.GetData__().size() != 2)
        return 1;
    std::printf("%zu entries, first override %s\n", types.GetData__().size(),
                static_cast<const char*>(types.GetData__()[1]->GetOverride()->GetPartName().utf8_str()));
    return 0;
}
