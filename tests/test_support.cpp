// Non-template parts of the test helpers.
#include "test_support.h"
#include <cstring>
#include <wx/sstream.h>

namespace ooxml_test
{
// The usual prefixes and their URIs, relative ones under http://schemas.openxmlformats.org/.
const char* const kPrefixes[][2] = {
    {"x", "spreadsheetml/2006/main"}, {"r", "officeDocument/2006/relationships"}, {"c", "drawingml/2006/chart"},
    {"w", "wordprocessingml/2006/main"}, {"m", "officeDocument/2006/math"}, {"a", "drawingml/2006/main"},
    {"d", "drawingml/2006/diagram"}, {"p", "presentationml/2006/main"}, {"t", "package/2006/content-types"},
    {"vt", "officeDocument/2006/docPropsVTypes"}, {"cp", "package/2006/metadata/core-properties"},
    {"wp", "drawingml/2006/wordprocessingDrawing"}, {"pic", "drawingml/2006/picture"},
    {"cu", "officeDocument/2006/custom-properties"}, {"dc", "http://purl.org/dc/elements/1.1/"},
    {"dcterms", "http://purl.org/dc/terms/"}, {"v", "urn:schemas-microsoft-com:vml"},
    {"o", "urn:schemas-microsoft-com:office:office"},
    {"cx", "http://schemas.microsoft.com/office/drawing/2014/chartex"},
    {"dsp", "http://schemas.microsoft.com/office/drawing/2008/diagram"},
    {"a14", "http://schemas.microsoft.com/office/drawing/2010/main"},
    {"c15", "http://schemas.microsoft.com/office/drawing/2012/chart"}};

wxString Uri(const char* usualPrefix)
{
    for (const auto& prefix : kPrefixes)
        if (std::strcmp(prefix[0], usualPrefix) == 0)
            return wxString(std::strchr(prefix[1], ':') ? "" : "http://schemas.openxmlformats.org/") + prefix[1];
    ADD_FAILURE() << "no usual prefix " << usualPrefix;
    return "";
}

wxString Xmlns(const char* prefix, const char* usualPrefix)
{
    return " xmlns" + wxString(*prefix ? ":" : "") + prefix + "='" + Uri(usualPrefix) + "'";
}

wxString Ns(const wxString& element)
{
    wxString declarations;
    for (const auto& prefix : kPrefixes)
        declarations += Xmlns(prefix[0], prefix[0]);
    const std::size_t end = element.find_first_of(" />");
    return element.Left(end) + declarations + element.Mid(end);
}

std::unique_ptr<wxXmlDocument> ParseXml(const wxString& text)
{
    wxStringInputStream input(text);
    std::unique_ptr<wxXmlDocument> document(new wxXmlDocument);
    wxLogNull quiet; // wx logs its own parse errors
    if (document->Load(input) && document->IsOk())
        return document;
    ADD_FAILURE() << "XML does not parse: " << text.utf8_str();
    return nullptr;
}
} // namespace ooxml_test
